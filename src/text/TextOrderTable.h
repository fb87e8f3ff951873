// The tables behind the order of texts.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kpTables::text {

// A character's entry is, from the lowest bit,
//   21 bits  primary weight: which letter it is, 0 for one that is not ordered as a letter, such as an accent
//    9 bits  secondary weight: which accent, 0 for the common one, or kExpansion
//    1 bit   kStarts: texts of kContractions begin with it
//    1 bit   kJoins: it goes on in texts of kContractions
// An entry without flags is a weight. With kExpansion, the lower bits are the place of its weights in kExpansions and,
// in the lowest 5 bits, their number; no weights stand for a character that is not listed. Entry 0 is ignored.
inline constexpr int kSecondaryShift = 21;
inline constexpr std::uint32_t kPrimaryMask = (1U << kSecondaryShift) - 1;
inline constexpr std::uint32_t kExpansion = 0x1FFU << kSecondaryShift;
inline constexpr std::uint32_t kStarts = 1U << 30;
inline constexpr std::uint32_t kJoins = 1U << 31;
inline constexpr int kExpansionLengthBits = 5;
/// Primary weight of the first character that is not listed: these come last, by code point.
inline constexpr std::uint32_t kFirstUnlisted = 0x40000;

/// The common secondary weight's place among the others.
extern const std::uint32_t kCommonSecondary;
extern const std::uint32_t kExpansions[];
/// The weights of a Hangul syllable's vowel and last letter, for each combination; of the latter 0 when there is none.
extern const std::uint32_t kHangulEndings[];

/// Characters that share a weight: 2, or 3 when the last one is not 0.
struct Contraction {
    char32_t text[3];
    std::uint32_t expansion;  ///< place and number of its weights, as in an entry
};
/// In ascending order of the texts.
extern const Contraction kContractions[];
extern const std::size_t kContractionCount;

// A plane's index has the number of a block of entries for each 64 characters. The blocks of ASCII come first, in
// order.
inline constexpr int kBlockBits = 6;
extern const std::uint16_t kBasicPlaneIndex[];
extern const std::uint32_t kBasicPlane[];
extern const std::uint16_t kOtherPlanesIndex[];
extern const std::uint32_t kOtherPlanes[];

}  // namespace kpTables::text
