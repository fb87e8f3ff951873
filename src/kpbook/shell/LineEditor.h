// Lines typed at a terminal, with editing, history and completion.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kpbook/shell/Completer.h"

namespace kpTables::kpbook::shell {

class LineEditor {
public:
    /// complete: what may stand for the end of the text before the cursor. Null when the library is not installed.
    static std::unique_ptr<LineEditor> Make(std::function<Completion(const std::string& before)> complete);
    virtual ~LineEditor() = default;

    /// Nothing at the end of the input. Interrupted when Ctrl-C is typed.
    virtual std::optional<std::string> Read(const std::string& prompt) = 0;
    virtual void Remember(const std::string& line) = 0;
};

}  // namespace kpTables::kpbook::shell
