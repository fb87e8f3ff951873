#include "kpbook/output/Output.h"

#include <cerrno>
#include <utility>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Terminal.h"
#include "platform/Input.h"
#include "platform/Terminal.h"

namespace kpTables::kpbook::output {

Output::Output(const std::string& path) : path_(path) {
    if (path.empty()) return;
    if (platform::IsReplaceable(path)) draft_.emplace(path);
    file_ = platform::OpenFile(draft_ ? draft_->Path() : path, "wb");
    if (!file_) Fail();
}

Output::~Output() {
    if (file_) std::fclose(file_);
}

void Output::Write(std::string_view text) {
    ThrowIfInterrupted();
    const bool isWritten = file_ ? std::fwrite(text.data(), 1, text.size(), file_) == text.size()
                                 : platform::WriteText(platform::Stream::Output, text);
    if (!isWritten) Fail();
}

void Output::Emphasize(bool on) {
    if (path_.empty() && OutputHasColours()) Write(on ? "\033[1m" : "\033[0m");
}

void Output::Flush() {
    if (file_ ? std::fflush(file_) != 0 : !platform::FlushText(platform::Stream::Output)) Fail();
}

void Output::Close() {
    Finish();
    Keep();
}

void Output::Finish() {
    Flush();
    std::FILE* const file = std::exchange(file_, nullptr);
    if (file && std::fclose(file) != 0) Fail();
}

void Output::Keep() {
    if (draft_) draft_->Keep();
}

void Output::Fail() const {
    const int reason = errno;
    if (path_.empty() && reason == EPIPE) throw ClosedPipe();
    throw CommandError(Message("{1}: cannot be written: {2}", path_.empty() ? Message("standard output") : path_,
                               SystemMessage(reason)));
}

}  // namespace kpTables::kpbook::output
