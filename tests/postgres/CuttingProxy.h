// A server's socket that loses connections when a test wants it.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

namespace kpTables::test {

/// Listens on a socket of its own, passes on what clients and the server say, and cuts a connection at a statement. One
/// client at a time is cut; several may be served.
class CuttingProxy {
public:
    /// What becomes of the statement at which the connection is cut.
    enum class Cut {
        Before,  ///< the server never gets it
        After,   ///< the server has done it, the client never hears of it
    };

    /// server: the folder of the server's socket. folder: that of the proxy's own.
    CuttingProxy(const std::string& server, const std::string& folder);
    ~CuttingProxy();
    CuttingProxy(const CuttingProxy&) = delete;
    CuttingProxy& operator=(const CuttingProxy&) = delete;

    /// Counts from now on, and cuts at the statement of that number, once; 0: never.
    void CutAt(int statement, Cut cut = Cut::Before);
    /// Messages that make the server do something, since CutAt.
    int Statements() const noexcept { return statements_; }
    bool HasCut() const noexcept { return hasCut_; }
    /// Drops all connections.
    void DropAll();

private:
    struct Pair {
        int client = -1;
        int server = -1;
        std::string fromClient = {};  ///< not yet a whole message
        std::string fromServer = {};  ///< while an answer is waited for that is not passed on
        bool started = false;         ///< the message without a type, with which a connection begins, has passed
        bool swallows = false;
    };

    void Serve();
    void Accept();
    /// False when the pair is to be closed.
    bool PassToServer(Pair& pair);
    bool PassToClient(Pair& pair);
    /// The whole messages of the client that go on; false when the connection is cut before one of them.
    bool TakeMessages(Pair& pair, std::string& onward);
    static void Close(Pair& pair);

    std::string serverAddress_;
    int listener_ = -1;
    std::atomic<int> statements_ = 0;
    std::atomic<int> cutAt_ = 0;
    std::atomic<Cut> cut_ = Cut::Before;
    std::atomic<bool> hasCut_ = false;
    std::atomic<bool> dropsAll_ = false;
    std::atomic<bool> ends_ = false;
    std::vector<Pair> pairs_;
    std::thread thread_;
};

}  // namespace kpTables::test
