#include "engines/postgres/BinaryCell.h"

#include <array>
#include <bit>
#include <chrono>
#include <utility>

#include "engines/common/ValueSink.h"
#include "kpTables/Error.h"

namespace kpTables::engines::postgres {

static_assert(engines::ValueSink<BinaryCell>);

namespace {

/// Microseconds since 2000.
std::int64_t TimestampOf(Date date) {
    using namespace std::chrono;
    const Date::Parts parts = date.ToParts();
    const sys_days day = year(parts.year) / month(static_cast<unsigned>(parts.month)) /
                         std::chrono::day(static_cast<unsigned>(parts.day));
    const auto time = day.time_since_epoch() + hours(parts.hour) + minutes(parts.minute) + seconds(parts.second);
    constexpr sys_days kEpoch = year(2000) / January / 1;
    return microseconds(time - kEpoch.time_since_epoch()).count();
}

[[noreturn]] void RaiseElement(DatabaseErrorNumber number, ErrorNumber text) {
    throw DatabaseError(static_cast<std::int32_t>(number), ErrorText(text));
}

}  // namespace

ServerType ElementOf(sql::Type type) noexcept {
    switch (type) {
        case sql::Type::Boolean:
        case sql::Type::Short:
            return kInteger2;
        case sql::Type::Long:
            return kInteger4;
        case sql::Type::Currency:
            return kInteger8;
        case sql::Type::Double:
            return kReal8;
        case sql::Type::Date:
            return kTimestamp;
        default:
            return kText;
    }
}

template <class Whole>
void BinaryCell::Put(Whole value) {
    constexpr std::size_t kLength = sizeof(std::int32_t);
    std::array<char, kLength + sizeof(Whole)> cell;
    WriteWhole(cell.data(), static_cast<std::int32_t>(sizeof(Whole)));
    WriteWhole(cell.data() + kLength, value);
    bytes_.append(cell.data(), cell.size());
}

void BinaryCell::BindNull(int /*parameter*/) {
    constexpr std::int32_t kNull = -1;
    AppendWhole(bytes_, kNull);
}

void BinaryCell::BindInteger(int parameter, std::int64_t value) {
    switch (element_) {
        case kInteger2:
            if (!std::in_range<std::int16_t>(value)) RaiseElement(DatabaseErrorNumber::Overflow, ErrorNumber::Overflow);
            return Put(static_cast<std::int16_t>(value));
        case kInteger4:
            if (!std::in_range<std::int32_t>(value)) RaiseElement(DatabaseErrorNumber::Overflow, ErrorNumber::Overflow);
            return Put(static_cast<std::int32_t>(value));
        case kInteger8:
            return Put(value);
        case kTransaction:
            return Put(static_cast<std::uint32_t>(value));
        case kReal8:
            return BindReal(parameter, static_cast<double>(value));
        default:
            RaiseElement(DatabaseErrorNumber::TypeMismatch, ErrorNumber::TypeMismatch);
    }
}

void BinaryCell::BindReal(int /*parameter*/, double value) {
    if (element_ != kReal8) RaiseElement(DatabaseErrorNumber::TypeMismatch, ErrorNumber::TypeMismatch);
    Put(std::bit_cast<std::int64_t>(value));
}

void BinaryCell::BindDate(int /*parameter*/, Date value) {
    if (element_ != kTimestamp) RaiseElement(DatabaseErrorNumber::TypeMismatch, ErrorNumber::TypeMismatch);
    Put(TimestampOf(value));
}

void BinaryCell::BindText(int /*parameter*/, std::string_view text) {
    if (element_ != kText) RaiseElement(DatabaseErrorNumber::TypeMismatch, ErrorNumber::TypeMismatch);
    AppendWhole(bytes_, static_cast<std::int32_t>(text.size()));
    bytes_ += text;
}

}  // namespace kpTables::engines::postgres
