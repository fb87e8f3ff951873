// The open book of a shell, and what its statements and commands do.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kpTables/Script.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"

namespace kpTables::kpbook::shell {

/// No failure of a statement or a command leaves these functions; it is told on standard error.
class Session {
public:
    Session(const std::string& book, const GlobalOptions& global);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// inScript: errors say the line of the input.
    void RunStatement(const ScriptStatement& statement, bool inScript);
    /// A line that begins with a point. False when it ends the shell.
    bool RunCommand(const std::string& line);
    void Tell(const std::string& failure);

    /// For completion; nothing when the book cannot say.
    std::vector<TableInfo> Tables();
    bool HasFailed() const noexcept { return hasFailed_; }
    /// Undoes a transaction that is still open, and says so; false when there is none.
    bool RollBackRest();

private:
    void Guarded(const std::function<void()>& action);
    void Run(const std::string& text);
    void Perform(const std::vector<std::string>& words);
    void Call(const std::vector<std::string>& words);
    void ShowTables();
    void ShowSchema(const std::string& table);
    void SetMode(const std::string& mode);
    void SetDialect(const std::string& dialect);

    GlobalOptions global_;
    std::shared_ptr<ConsoleHost> host_;
    Workspace workspace_;
    bool hasLostRest_ = false;  ///< an open transaction could not be rolled back
    bool hasFailed_ = false;
};

}  // namespace kpTables::kpbook::shell
