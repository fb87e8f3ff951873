#include "postgres/CuttingProxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace kpTables::test {

namespace {

constexpr std::size_t kLengthBytes = 4;
constexpr int kMilliseconds = 5;

sockaddr_un AddressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) throw std::runtime_error("the socket's path is too long: " + path);
    std::memcpy(address.sun_path, path.data(), path.size());
    return address;
}

std::string SocketIn(const std::string& folder) { return folder + "/.s.PGSQL.5432"; }

[[noreturn]] void RaiseSystem(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

/// The length that a message gives itself, without its type.
std::size_t LengthAt(std::string_view bytes) {
    std::uint32_t length = 0;
    for (std::size_t i = 0; i < kLengthBytes; ++i) length = length << 8U | static_cast<unsigned char>(bytes[i]);
    return length;
}

/// The first whole message, with its type unless it is a connection's first; "" when there is none yet.
std::string_view FirstMessage(std::string_view bytes, bool hasType) {
    const std::size_t head = hasType ? 1 : 0;
    if (bytes.size() < head + kLengthBytes) return {};
    const std::size_t whole = head + LengthAt(bytes.substr(head));
    return bytes.size() < whole ? std::string_view() : bytes.substr(0, whole);
}

/// A query, the preparation of a statement, or the execution of a prepared one.
bool IsStatement(std::string_view message) { return message[0] == 'Q' || message[0] == 'P' || message[0] == 'E'; }

bool SendAll(int socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool Receive(int socket, std::string& bytes) {
    std::array<char, 65536> piece{};
    const ssize_t got = recv(socket, piece.data(), piece.size(), 0);
    if (got <= 0) return false;
    bytes.append(piece.data(), static_cast<std::size_t>(got));
    return true;
}

}  // namespace

CuttingProxy::CuttingProxy(const std::string& server, const std::string& folder) : serverAddress_(SocketIn(server)) {
    listener_ = socket(AF_UNIX, SOCK_STREAM, 0);
    const sockaddr_un address = AddressOf(SocketIn(folder));
    if (listener_ < 0 || bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listener_, SOMAXCONN) != 0) {
        RaiseSystem("the proxy's socket");
    }
    thread_ = std::thread([this] { Serve(); });
}

CuttingProxy::~CuttingProxy() {
    ends_ = true;
    thread_.join();
    close(listener_);
}

void CuttingProxy::CutAt(int statement, Cut cut) {
    cutAt_ = 0;
    statements_ = 0;
    hasCut_ = false;
    cut_ = cut;
    cutAt_ = statement;
}

void CuttingProxy::DropAll() {
    dropsAll_ = true;
    while (dropsAll_) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void CuttingProxy::Serve() {
    while (!ends_) {
        std::vector<pollfd> sockets{{listener_, POLLIN, 0}};
        for (const Pair& pair : pairs_) {
            sockets.push_back({pair.client, POLLIN, 0});
            sockets.push_back({pair.server, POLLIN, 0});
        }
        poll(sockets.data(), sockets.size(), kMilliseconds);
        const bool drops = dropsAll_;
        for (std::size_t i = 0; i < pairs_.size(); ++i) {
            Pair& pair = pairs_[i];
            const bool goesOn = !drops && (sockets[2 * i + 1].revents == 0 || PassToServer(pair)) &&
                                (sockets[2 * i + 2].revents == 0 || PassToClient(pair));
            if (!goesOn) Close(pair);
        }
        std::erase_if(pairs_, [](const Pair& pair) { return pair.client < 0; });
        if (drops) dropsAll_ = false;
        if ((sockets[0].revents & POLLIN) != 0) Accept();
    }
    for (Pair& pair : pairs_) Close(pair);
}

void CuttingProxy::Accept() {
    Pair pair;
    pair.client = accept(listener_, nullptr, nullptr);
    pair.server = socket(AF_UNIX, SOCK_STREAM, 0);
    const sockaddr_un address = AddressOf(serverAddress_);
    if (connect(pair.server, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) return Close(pair);
    pairs_.push_back(pair);
}

bool CuttingProxy::PassToServer(Pair& pair) {
    if (!Receive(pair.client, pair.fromClient)) return false;
    std::string onward;
    return TakeMessages(pair, onward) && SendAll(pair.server, onward);
}

bool CuttingProxy::TakeMessages(Pair& pair, std::string& onward) {
    for (std::string_view message = FirstMessage(pair.fromClient, pair.started); !message.empty();
         message = FirstMessage(pair.fromClient, pair.started)) {
        if (pair.started && IsStatement(message) && ++statements_ == cutAt_) {
            hasCut_ = true;
            if (cut_ == Cut::Before) return false;
            pair.swallows = true;
        }
        pair.started = true;
        onward += message;
        pair.fromClient.erase(0, message.size());
    }
    return true;
}

bool CuttingProxy::PassToClient(Pair& pair) {
    std::string bytes;
    if (!Receive(pair.server, bytes)) return false;
    if (!pair.swallows) return SendAll(pair.client, bytes);
    // Until the server says that it is ready for the next statement.
    pair.fromServer += bytes;
    for (std::string_view message = FirstMessage(pair.fromServer, true); !message.empty();
         message = FirstMessage(pair.fromServer, true)) {
        if (message[0] == 'Z') return false;
        pair.fromServer.erase(0, message.size());
    }
    return true;
}

void CuttingProxy::Close(Pair& pair) {
    close(pair.client);
    close(pair.server);
    pair.client = -1;
}

}  // namespace kpTables::test
