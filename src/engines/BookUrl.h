// The parts of a book's URL.
#pragma once

#include <string>

namespace kpTables::engines {

struct BookUrl {
    std::string scheme;   ///< in lower case
    std::string address;  ///< what follows the colon; of a file, its path
};

/// A text without a scheme is a file's path, and so is one whose scheme is a single letter (a drive). A file's URL may
/// be percent-encoded; DatabaseError when it names another host, has a query or is badly encoded.
BookUrl ParseBookUrl(const std::string& url);

}  // namespace kpTables::engines
