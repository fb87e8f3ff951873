#include "kpTables/text/Message.h"

namespace kpTables {

namespace {

/// What a program that works with files may meet, in the system's own words.
[[maybe_unused]] constexpr const char* kKnown[] = {
    Translatable("Operation not permitted"),
    Translatable("No such file or directory"),
    Translatable("Interrupted system call"),
    Translatable("Input/output error"),
    Translatable("Bad file descriptor"),
    Translatable("Resource temporarily unavailable"),
    Translatable("Cannot allocate memory"),
    Translatable("Permission denied"),
    Translatable("Device or resource busy"),
    Translatable("File exists"),
    Translatable("Invalid cross-device link"),
    Translatable("Not a directory"),
    Translatable("Is a directory"),
    Translatable("Invalid argument"),
    Translatable("Too many open files in system"),
    Translatable("Too many open files"),
    Translatable("Text file busy"),
    Translatable("File too large"),
    Translatable("No space left on device"),
    Translatable("Illegal seek"),
    Translatable("Read-only file system"),
    Translatable("Too many links"),
    Translatable("Broken pipe"),
    Translatable("File name too long"),
    Translatable("Too many levels of symbolic links"),
    Translatable("Disk quota exceeded"),
};

}  // namespace

std::string SystemMessage(int error) { return SystemMessage(std::error_code(error, std::generic_category())); }

std::string SystemMessage(const std::error_code& error) { return Translated(error.message().c_str()); }

}  // namespace kpTables
