#include "text/TextFormat.h"

#include <algorithm>
#include <cstddef>

#include "text/CaseMapping.h"
#include "text/FormatPattern.h"
#include "text/Utf8.h"

namespace kpTables::text {

namespace {

struct Places {
    std::size_t count = 0;
    bool fromLeft = false;
    char letterCase = 0;  ///< the last < or >, 0 when there is none
};

Places PlacesOf(std::string_view pattern) {
    Places places;
    for (std::size_t at = 0; at < pattern.size();) {
        if (TakeLiteral(pattern, at)) continue;
        const char sign = pattern[at++];
        if (sign == '@' || sign == '&') ++places.count;
        if (sign == '!') places.fromLeft = true;
        if (sign == '<' || sign == '>') places.letterCase = sign;
    }
    return places;
}

std::string InCase(std::string_view text, char letterCase) {
    if (letterCase == '<') return LowerCase(text);
    return letterCase == '>' ? UpperCase(text) : std::string(text);
}

}  // namespace

std::string TextByPattern(std::string_view text, std::string_view pattern) {
    const auto parts = PartsOf(pattern);
    const std::string_view part = text.empty() && parts.size() > 1 ? parts[1] : parts[0];
    const Places places = PlacesOf(part);
    const std::string value = InCase(text, places.letterCase);
    const bool whole = places.count == 0 && places.letterCase != 0;
    const std::size_t length = CountCharacters(value);
    std::size_t blanks = places.count - std::min(places.count, length);
    std::size_t next = 0;
    std::string out;
    const auto take = [&](std::size_t characters) {
        const std::string_view rest = std::string_view(value).substr(next);
        const std::size_t size = OffsetOfCharacter(rest, characters);
        out += rest.substr(0, size);
        next += size;
    };
    std::size_t place = 0;
    for (std::size_t at = 0; at < part.size();) {
        if (const auto literal = TakeLiteral(part, at)) {
            out += *literal;
            continue;
        }
        const char sign = part[at++];
        if (sign == '@' || sign == '&') {
            const bool blank = places.fromLeft ? place >= length : place < blanks;
            // Characters without a place go before the first one, or after the last one.
            if (place == 0 && !places.fromLeft && length > places.count) take(length - places.count);
            if (!blank) take(1);
            if (blank && sign == '@') out += ' ';
            if (++place == places.count && places.fromLeft) take(length);
        } else if (sign != '<' && sign != '>' && sign != '!') {
            out += sign;
        }
    }
    if (whole) take(length);
    return out;
}

}  // namespace kpTables::text
