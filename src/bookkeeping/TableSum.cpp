#include "bookkeeping/TableSum.h"

#include <bit>
#include <cmath>
#include <string>
#include <string_view>

namespace kpTables::bookkeeping {

namespace {

/// FNV-1a over the bytes of the values, each behind a byte that tells its kind.
class RowDigest {
public:
    void Add(const Variant& value) {
        if (const auto* text = value.If<std::string>()) return AddText(*text);
        if (const auto* number = value.If<double>()) {
            // Not every engine keeps the sign of a zero.
            return AddNumber('d', std::bit_cast<std::uint64_t>(*number == 0 ? 0.0 : *number));
        }
        if (const auto* amount = value.If<Currency>()) return AddNumber('c', Bits(amount->Scaled()));
        if (const auto* date = value.If<Date>()) {
            constexpr double kSecondsOfDay = 86400;
            return AddNumber('t', Bits(std::llround(date->Serial() * kSecondsOfDay)));
        }
        if (const auto* whole = value.If<std::int32_t>()) return AddNumber('i', Bits(*whole));
        if (const auto* whole = value.If<std::int16_t>()) return AddNumber('i', Bits(*whole));
        if (const auto* flag = value.If<bool>()) return AddNumber('b', *flag ? 1 : 0);
        AddByte('n');
    }

    /// Mixed once more, since the digests of a table are added up.
    std::uint64_t Mixed() const noexcept {
        std::uint64_t mixed = digest_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }

private:
    static std::uint64_t Bits(std::int64_t number) noexcept { return static_cast<std::uint64_t>(number); }

    void AddByte(char byte) noexcept {
        constexpr std::uint64_t kPrime = 1099511628211U;
        digest_ = (digest_ ^ static_cast<unsigned char>(byte)) * kPrime;
    }

    /// The lowest byte first, on every machine.
    void AddNumber(char kind, std::uint64_t bits) noexcept {
        constexpr unsigned kBits = 8;
        AddByte(kind);
        for (unsigned i = 0; i < sizeof bits; ++i) AddByte(static_cast<char>(bits >> (i * kBits) & 0xFFU));
    }

    void AddText(std::string_view text) noexcept {
        AddNumber('s', text.size());
        for (const char byte : text) AddByte(byte);
    }

    std::uint64_t digest_ = 14695981039346656037U;
};

}  // namespace

std::uint64_t RowChecksum(const Recordset& rows) {
    RowDigest digest;
    for (int column = 0; column < rows.FieldCount(); ++column) digest.Add(rows.GetValue(column));
    return digest.Mixed();
}

}  // namespace kpTables::bookkeeping
