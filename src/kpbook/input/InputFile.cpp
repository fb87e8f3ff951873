#include "kpbook/input/InputFile.h"

#include <cerrno>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "platform/Input.h"

namespace kpTables::kpbook::input {

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? Message("standard input") : path),
      descriptor_(path == "-" ? platform::kStandardInput : platform::OpenInput(path)) {
    if (descriptor_ < 0) throw CommandError(Message("{1}: cannot be opened: {2}", name_, SystemMessage(errno)));
}

InputFile::~InputFile() {
    if (descriptor_ != platform::kStandardInput) platform::CloseInput(descriptor_);
}

std::size_t InputFile::Read(char* buffer, std::size_t size) {
    const auto count = platform::ReadInput(descriptor_, buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    const int reason = errno;
    ThrowIfInterrupted();
    throw CommandError(Message("{1}: cannot be read: {2}", name_, SystemMessage(reason)));
}

}  // namespace kpTables::kpbook::input
