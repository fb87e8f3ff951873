// A file that is made beside its place and gets its name when it is whole.
#pragma once

#include <string>

#include "platform/NewFile.h"

namespace kpTables::engines::sqlite {

/// An empty hidden file .NAME.new-XXXXXXXX in the folder of its place, which only its owner may read and write. Without
/// Publish it is removed again; what a killed program has left of the same place is removed by the next draft for it. A
/// failure is a DatabaseError "The book '...' cannot be made".
class NewBookFile {
public:
    /// Refuses a place that is taken, and one beside which a log of an earlier book would be read into the new one.
    explicit NewBookFile(const std::string& place);

    const std::string& Path() const noexcept { return path_; }
    /// Brings the file to the disk and gives it its name, unless another file has taken that meanwhile.
    void Publish();

private:
    bool Take();

    std::string place_;
    std::string path_;
    platform::NewFile file_;
};

}  // namespace kpTables::engines::sqlite
