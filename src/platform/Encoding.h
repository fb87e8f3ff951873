// Texts in other encodings, as UTF-8.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kpTables::platform {

class EncodingReader {
public:
    /// Null when the system does not know an encoding of that name.
    static std::unique_ptr<EncodingReader> Open(const std::string& encoding);
    virtual ~EncodingReader() = default;

    struct Result {
        std::size_t taken;      ///< bytes, before the first that is no text
        bool isCutOff = false;  ///< the rest may be the beginning of a character
    };
    /// Converts from the beginning of the bytes as far as they are text, and appends it.
    virtual Result Read(std::string_view bytes, std::string& text) = 0;
};

}  // namespace kpTables::platform
