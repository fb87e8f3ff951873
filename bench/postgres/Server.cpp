#include "Server.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace kpTables::bench {

namespace {

double Wall() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

double SecondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// Of this process and of children that have ended.
double ClientSeconds() {
    double seconds = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(static_cast<__rusage_who>(who), &usage);
        seconds += SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime);
    }
    return seconds;
}

/// What stands behind a process's name in its record.
std::string StatOf(int process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    const auto end = line.rfind(')');
    return end == std::string::npos ? std::string() : line.substr(end + 2);
}

/// The user and system time of a process's ended children.
double TicksOf(int process, int& parent) {
    std::istringstream fields(StatOf(process));
    std::string state;
    fields >> state >> parent;
    double value = 0;
    double ticks = 0;
    constexpr int kEndedChildrensUser = 16;
    constexpr int kEndedChildrensSystem = 17;
    for (int field = 5; field <= kEndedChildrensSystem && fields >> value; ++field) {
        if (field >= kEndedChildrensUser) ticks += value;
    }
    return ticks;
}

int Postmaster() {
    static const int process = [] {
        int parent = 0;
        TicksOf(Server(ServerAddress()).ProcessId(), parent);
        return parent;
    }();
    return process;
}

/// Of a process that runs, in finer steps than its ticks.
double NanosecondsOf(int process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/schedstat");
    double nanoseconds = 0;
    file >> nanoseconds;
    return nanoseconds;
}

/// Of the server's processes: those that run, and those that have ended.
double ServerSeconds() {
    const int postmaster = Postmaster();
    int parent = 0;
    double ended = TicksOf(postmaster, parent);
    for (;;) {
        double nanoseconds = NanosecondsOf(postmaster);
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            const std::string name = entry.path().filename().string();
            if (name.find_first_not_of("0123456789") != std::string::npos) continue;
            const int process = std::stoi(name);
            TicksOf(process, parent);
            if (parent == postmaster) nanoseconds += NanosecondsOf(process);
        }
        // One that ends meanwhile, as that of a connection closed just now, would be found nowhere.
        const double before = std::exchange(ended, TicksOf(postmaster, parent));
        if (before == ended) return ended / static_cast<double>(sysconf(_SC_CLK_TCK)) + nanoseconds * 1e-9;
    }
}

}  // namespace

Server::Server(const std::string& url, const std::string& book) : connection_(PQconnectdb(url.c_str())) {
    if (PQstatus(connection_.get()) != CONNECTION_OK) throw std::runtime_error(PQerrorMessage(connection_.get()));
    Run("SET client_min_messages = error; SET jit = off");
    if (!book.empty()) Run("SET search_path = \"" + book + "\"");
}

ServerRows Server::Checked(PGresult* result) const {
    ServerRows rows(result);
    const auto status = PQresultStatus(result);
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && status != PGRES_COPY_IN)
        throw std::runtime_error(PQerrorMessage(connection_.get()));
    return rows;
}

ServerRows Server::Run(const std::string& text) const { return Checked(PQexec(connection_.get(), text.c_str())); }

void Server::Prepare(const std::string& name, const std::string& text) const {
    Checked(PQprepare(connection_.get(), name.c_str(), text.c_str(), 0, nullptr));
}

ServerRows Server::Ask(const std::string& name, const std::vector<std::string>& parameters, bool binary) const {
    std::vector<const char*> values;
    values.reserve(parameters.size());
    for (const std::string& parameter : parameters) values.push_back(parameter.c_str());
    return Checked(PQexecPrepared(connection_.get(), name.c_str(), static_cast<int>(values.size()), values.data(),
                                  nullptr, nullptr, binary ? 1 : 0));
}

void Server::CopyIn(const std::string& text, std::string_view bytes) const {
    Run(text);
    constexpr std::size_t kPiece = 1 << 16;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(kPiece, bytes.size()))) {
        if (PQputCopyData(connection_.get(), bytes.data(), static_cast<int>(std::min(kPiece, bytes.size()))) != 1)
            throw std::runtime_error(PQerrorMessage(connection_.get()));
    }
    PQputCopyEnd(connection_.get(), nullptr);
    while (PGresult* const result = PQgetResult(connection_.get())) Checked(result);
}

std::string ServerAddress() {
    const char* const address = std::getenv("KPTABLES_SERVER");
    if (!address) throw std::runtime_error("KPTABLES_SERVER names no server: bench/run --engine postgres starts one");
    return address;
}

std::string BookAddress(const std::string& book) { return ServerAddress() + "&book=" + book; }

CostMeter::CostMeter() : seconds_(0), client_(0), server_(ServerSeconds()) {
    client_ = ClientSeconds();
    seconds_ = Wall();
}

Cost CostMeter::Read() const {
    const double seconds = Wall() - seconds_;
    const double client = ClientSeconds() - client_;
    return {seconds, client, ServerSeconds() - server_};
}

}  // namespace kpTables::bench
