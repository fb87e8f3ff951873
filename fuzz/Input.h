// The bytes of one run, taken apart, and what a fuzzer does when a property does not hold.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace kpTables::fuzz {

/// Answers zeros and empty texts when the bytes are used up.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool AtEnd() const { return rest_.empty(); }
    std::uint8_t Byte() { return Raw<std::uint8_t>(); }
    /// From 0 to below the end, which is not above 256.
    std::size_t Below(std::size_t end) { return Byte() % end; }
    bool Flag() { return (Byte() & 1) != 0; }
    template <class Number>
    Number Raw() {
        Number value{};
        const std::size_t size = std::min(sizeof value, rest_.size());
        std::memcpy(&value, rest_.data(), size);
        rest_.remove_prefix(size);
        return value;
    }
    std::string_view Text(std::size_t size) {
        const std::string_view text = rest_.substr(0, size);
        rest_.remove_prefix(text.size());
        return text;
    }
    /// Up to a newline, or to the end.
    std::string_view Line() {
        const std::string_view line = Text(std::min(rest_.find('\n'), rest_.size()));
        Text(1);
        return line;
    }
    std::string_view Rest() { return Text(rest_.size()); }

private:
    std::string_view rest_;
};

/// Ends the run as a finding when the property does not hold.
inline void Require(bool holds, std::string_view property, std::string_view about = {}) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %.*s: %.*s\n", static_cast<int>(property.size()), property.data(),
                 static_cast<int>(about.size()), about.data());
    std::abort();
}

}  // namespace kpTables::fuzz
