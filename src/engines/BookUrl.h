// The URL of a book, taken apart.
#pragma once

#include <string>

namespace kpTables::engines {

struct BookUrl {
    std::string scheme;   ///< in small letters
    std::string address;  ///< what stands behind the colon; of a file, its path
};

/// A text without a scheme is the path of a file, and so is one whose scheme is a single letter, a drive. A file's URL
/// may be percent-encoded; DatabaseError when it names another computer, has a query or is badly encoded.
BookUrl ParseBookUrl(const std::string& url);

}  // namespace kpTables::engines
