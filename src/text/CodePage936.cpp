#include "text/CodePage936.h"

#include <array>
#include <cstddef>
#include <iterator>

#include "text/CodePage936Cells.h"
#include "text/CodePage936Table.h"
#include "text/Utf8.h"

namespace kpTables::text {

namespace {

constexpr std::uint32_t kFirstLead = 0x81;
constexpr std::uint32_t kLastLead = 0xFE;
constexpr std::uint32_t kFirstTrail = 0x40;
constexpr std::uint32_t kNoTrail = 0x7F;
constexpr std::uint32_t kLastTrail = 0xFE;
constexpr std::size_t kTrails = kLastTrail - kFirstTrail;
constexpr std::size_t kCells = std::size(kCells936) - 1;
static_assert(kCells == (kLastLead - kFirstLead + 1) * kTrails);

// The two single-byte characters beyond ASCII.
constexpr std::uint16_t kEuroCode = 0x80;
constexpr char32_t kEuro = U'€';
constexpr std::uint16_t kLastByte = 0xFF;
constexpr char32_t kOfLastByte = 0xF8F5;

constexpr std::size_t kBasicPlaneSize = 0x10000;

/// The code of each character; 0 for none.
constexpr std::array<std::uint16_t, kBasicPlaneSize> MakeCodes() {
    std::array<std::uint16_t, kBasicPlaneSize> codes{};
    std::size_t cell = 0;
    for (std::uint32_t lead = kFirstLead; lead <= kLastLead; ++lead) {
        for (std::uint32_t trail = kFirstTrail; trail <= kLastTrail; ++trail) {
            if (trail != kNoTrail) codes[kCells936[cell++]] = static_cast<std::uint16_t>(lead << 8 | trail);
        }
    }
    codes[kEuro] = kEuroCode;
    codes[kOfLastByte] = kLastByte;
    return codes;
}
constexpr auto kCodes = MakeCodes();

char32_t CharacterOfByte(std::uint32_t byte) noexcept {
    if (byte <= kLastAscii) return byte;
    if (byte == kEuroCode) return kEuro;
    return byte == kLastByte ? kOfLastByte : kReplacement;
}

}  // namespace

bool IsDoubleByte936(char32_t character) noexcept {
    constexpr unsigned kBits = 64;
    if (character > 0xFFFF) return false;
    return (kDoubleByte936[character / kBits] >> (character % kBits)) & 1;
}

std::uint16_t CodeOf936(char32_t character) noexcept {
    if (character <= kLastAscii) return static_cast<std::uint16_t>(character);
    const std::uint16_t code = character < kCodes.size() ? kCodes[character] : std::uint16_t{0};
    return code != 0 ? code : std::uint16_t{'?'};
}

char32_t CharacterOf936(std::uint16_t code) noexcept {
    const std::uint32_t lead = code >> 8;
    const std::uint32_t trail = code & 0xFF;
    if (lead == 0) return CharacterOfByte(trail);
    const bool isLead = lead >= kFirstLead && lead <= kLastLead;
    if (!isLead || trail < kFirstTrail || trail > kLastTrail || trail == kNoTrail) return CharacterOfByte(lead);
    return kCells936[(lead - kFirstLead) * kTrails + trail - kFirstTrail - (trail > kNoTrail ? 1 : 0)];
}

}  // namespace kpTables::text
