#include "engines/postgres/BinaryArray.h"

#include <bit>
#include <chrono>
#include <type_traits>
#include <utility>

#include "engines/common/ValueSink.h"
#include "kpTables/Error.h"

namespace kpTables::engines::postgres {

static_assert(engines::ValueSink<BinaryArray>);

namespace {

template <class Whole>
void Append(std::string& bytes, Whole value) {
    const auto bits = static_cast<std::make_unsigned_t<Whole>>(value);
    constexpr unsigned kByte = 8;
    for (unsigned shift = sizeof(Whole) * kByte; shift > 0; shift -= kByte)
        bytes += static_cast<char>(bits >> (shift - kByte) & 0xFFU);
}

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

std::string_view ArrayName(ServerType element) noexcept {
    switch (element) {
        case kInteger2:
            return "smallint[]";
        case kInteger4:
            return "integer[]";
        case kInteger8:
            return "bigint[]";
        case kTransaction:
            return "xid[]";
        case kReal8:
            return "float8[]";
        case kTimestamp:
            return "timestamp[]";
        default:
            return "bpchar[]";
    }
}

void BinaryArray::Begin(std::int32_t bytes) {
    starts_.push_back(cells_.size());
    Append(cells_, bytes);
}

template <class Whole>
void BinaryArray::Put(Whole value) {
    Begin(sizeof(Whole));
    Append(cells_, value);
}

void BinaryArray::BindNull(int /*parameter*/) {
    constexpr std::int32_t kNull = -1;
    Begin(kNull);
    hasNulls_ = true;
}

void BinaryArray::BindInteger(int parameter, std::int64_t value) {
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

void BinaryArray::BindReal(int /*parameter*/, double value) {
    if (element_ != kReal8) RaiseElement(DatabaseErrorNumber::TypeMismatch, ErrorNumber::TypeMismatch);
    Put(std::bit_cast<std::int64_t>(value));
}

void BinaryArray::BindDate(int /*parameter*/, Date value) {
    if (element_ != kTimestamp) RaiseElement(DatabaseErrorNumber::TypeMismatch, ErrorNumber::TypeMismatch);
    Put(TimestampOf(value));
}

void BinaryArray::BindText(int /*parameter*/, std::string_view text) {
    if (element_ != kText) RaiseElement(DatabaseErrorNumber::TypeMismatch, ErrorNumber::TypeMismatch);
    Begin(static_cast<std::int32_t>(text.size()));
    cells_ += text;
}

void BinaryArray::Cut(std::size_t size) noexcept {
    if (size >= starts_.size()) return;
    cells_.resize(starts_[size]);
    starts_.resize(size);
}

std::string BinaryArray::Slice(std::size_t first, std::size_t count) const {
    const std::size_t begin = starts_[first];
    const std::size_t end = first + count < starts_.size() ? starts_[first + count] : cells_.size();
    constexpr std::size_t kHead = 20;
    std::string bytes;
    bytes.reserve(kHead + end - begin);
    Append(bytes, std::int32_t{1});  // dimensions
    Append(bytes, std::int32_t{hasNulls_});
    Append(bytes, static_cast<std::uint32_t>(element_));
    Append(bytes, static_cast<std::int32_t>(count));
    Append(bytes, std::int32_t{1});  // the first index
    return bytes.append(cells_, begin, end - begin);
}

}  // namespace kpTables::engines::postgres
