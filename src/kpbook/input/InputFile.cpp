#include "kpbook/input/InputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"

namespace kpTables::kpbook::input {

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? Message("standard input") : path),
      descriptor_(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) throw CommandError(Message("{1}: cannot be opened: {2}", name_, SystemMessage(errno)));
}

InputFile::~InputFile() {
    if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
}

std::size_t InputFile::Read(char* buffer, std::size_t size) {
    for (;;) {
        WaitToRead(descriptor_);
        const auto count = ::read(descriptor_, buffer, size);
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) throw CommandError(Message("{1}: cannot be read: {2}", name_, SystemMessage(errno)));
    }
}

}  // namespace kpTables::kpbook::input
