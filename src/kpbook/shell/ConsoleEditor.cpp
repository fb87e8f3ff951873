#include <string>
#include <utility>

#include "kpbook/Interruption.h"
#include "kpbook/shell/LineEditor.h"
#include "platform/Input.h"
#include "platform/Terminal.h"

namespace kpTables::kpbook::shell {

namespace {

/// The console edits lines itself and remembers those of the session.
class ConsoleEditor : public LineEditor {
public:
    explicit ConsoleEditor(std::unique_ptr<platform::UserTerminal> console) : console_(std::move(console)) {}

    std::optional<std::string> Read(const std::string& prompt) override {
        console_->Write(prompt);
        std::string line;
        while (!line.ends_with('\n')) {
            char piece[1 << 10];
            const auto count = platform::ReadInput(platform::kStandardInput, piece, sizeof piece);
            ThrowIfInterrupted();
            if (count <= 0) break;
            line.append(piece, static_cast<std::size_t>(count));
        }
        if (line.empty()) return std::nullopt;
        if (line.ends_with('\n')) line.pop_back();
        return line;
    }
    void Remember(const std::string& /*line*/) override {}

private:
    std::unique_ptr<platform::UserTerminal> console_;
};

}  // namespace

std::unique_ptr<LineEditor> LineEditor::Make(std::function<Completion(const std::string& before)> /*complete*/) {
    auto console = platform::UserTerminal::Open();
    return console ? std::make_unique<ConsoleEditor>(std::move(console)) : nullptr;
}

}  // namespace kpTables::kpbook::shell
