// A file that takes its place only when it is whole.
#pragma once

#include <string>

#include "platform/Replacement.h"

namespace kpTables::kpbook::output {

/// Until Keep is called the target stays as it was, and nothing is left of a draft that is abandoned.
class ReplacementFile {
public:
    /// Follows symbolic links. A CommandError says why the target cannot be written.
    explicit ReplacementFile(const std::string& target);

    /// A path that opens the draft, for libraries that write files by name.
    std::string Path() const { return file_.Path(); }
    /// Flushes the draft to the disk and puts it in the target's place, with the mode of the file that it replaces.
    void Keep();

private:
    void Check(int code) const;

    platform::Replacement file_;
};

}  // namespace kpTables::kpbook::output
