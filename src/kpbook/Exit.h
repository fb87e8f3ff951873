// How the program ends: its exit codes, and the exceptions that end it.
#pragma once

#include <exception>
#include <stdexcept>

namespace kpTables::kpbook {

enum ExitCode : int { kSucceeded = 0, kFailed = 1, kWrongUsage = 2 };

/// A command cannot continue; the text says why.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A command was asked for something that it refuses to do; the text says what to do instead.
class UsageError : public CommandError {
public:
    using CommandError::CommandError;
};

/// The reader of standard output has gone (head, less): the program ends quietly.
class ClosedPipe : public std::exception {
public:
    const char* what() const noexcept override { return "the reader of standard output has gone"; }
};

}  // namespace kpTables::kpbook
