// The terminal, or the console, at which a user sits.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kpTables::platform {

enum class Stream { Input = 0, Output = 1, Error = 2 };

/// Before anything is written: what is written stays as it is, in UTF-8, and a reader that goes away fails a write
/// instead of ending the program.
void PrepareStreams() noexcept;
/// Writes a text of whole characters to standard output, which shows it at FlushText at the latest, or to standard
/// error. False with the reason in errno.
bool WriteText(Stream stream, std::string_view text) noexcept;
bool FlushText(Stream stream) noexcept;
bool IsTerminal(Stream stream) noexcept;
/// Whether a terminal shows colours.
bool ShowsColours(Stream stream) noexcept;

/// The user, wherever the standard streams lead.
class UserTerminal {
public:
    /// Null when there is no terminal.
    static std::unique_ptr<UserTerminal> Open();
    virtual ~UserTerminal() = default;

    virtual void Write(const std::string& text) = 0;
    /// A line without its end; nothing at the end of the input, or when Ctrl-C is typed.
    virtual std::optional<std::string> ReadLine() = 0;
    /// From now on, until the terminal is closed, what is typed is not shown. False when the terminal cannot do that.
    virtual bool HideInput() = 0;
};

}  // namespace kpTables::platform
