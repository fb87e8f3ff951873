#include "recordset/RowStore.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>

#include "kpTables/Error.h"

namespace kpTables::recordset {

namespace {

constexpr std::size_t kCellsPerBlock = 65536;
constexpr std::size_t kBytesOfCell = sizeof(std::uint64_t) + sizeof(std::uint8_t);
constexpr std::size_t kLargestArena = std::size_t{1} << 20;

std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }
std::uint64_t Bits(std::int64_t value) { return static_cast<std::uint64_t>(value); }
double ToDouble(std::uint64_t bits) { return std::bit_cast<double>(bits); }
std::int64_t ToWhole(std::uint64_t bits) { return static_cast<std::int64_t>(bits); }

template <class T>
bool Fits(std::int64_t value) {
    return value >= std::numeric_limits<T>::min() && value <= std::numeric_limits<T>::max();
}

// A text's record is its length and then its bytes; the empty text has none.
std::string_view TextOf(std::uint64_t payload) {
    const auto* record = reinterpret_cast<const char*>(static_cast<std::uintptr_t>(payload));
    if (!record) return {};
    std::uint32_t size = 0;
    std::memcpy(&size, record, sizeof size);
    return {record + sizeof size, size};
}

}  // namespace

RowStore::RowStore(FieldsPtr fields) : fields_(std::move(fields)) {
    const std::size_t rows = kCellsPerBlock / (fields_->empty() ? 1 : fields_->size());
    rowShift_ = static_cast<unsigned>(std::bit_width(rows < 64 ? std::size_t{64} : rows) - 1);
    rowMask_ = (std::size_t{1} << rowShift_) - 1;
}

RowStore::RowStore(std::vector<FieldInfo> fields) : RowStore(ShareFields(std::move(fields))) {}

std::size_t RowStore::Bytes() const noexcept {
    std::size_t bytes = sizeof *this + arenaBytes_ + blocks_.capacity() * sizeof(Block);
    for (const Block& block : blocks_) {
        bytes += block.payload.capacity() * sizeof(std::uint64_t) + block.types.capacity();
    }
    return bytes;
}

void RowStore::Reserve(std::size_t rows) {
    if (rows == 0) return;
    blocks_.reserve((rows >> rowShift_) + 1);
    if (blocks_.empty()) {
        const std::size_t cells = std::min(rows, rowMask_ + 1) * fields_->size();
        blocks_.emplace_back();
        blocks_.back().payload.reserve(cells);
        blocks_.back().types.reserve(cells);
    }
}

void RowStore::BeginRow() {
    const std::size_t block = rows_ >> rowShift_;
    if (block == blocks_.size()) AddBlock();
    const std::size_t cells = ((rows_ & rowMask_) + 1) * fields_->size();
    blocks_[block].payload.resize(cells);
    blocks_[block].types.resize(cells, static_cast<std::uint8_t>(VarType::Null));
    current_ = rows_++;
}

void RowStore::AddBlock() {
    const bool first = blocks_.empty();
    const std::size_t cells = (rowMask_ + 1) * fields_->size();
    if (!first) RequireRoomFor(Bytes() + cells * kBytesOfCell);
    blocks_.emplace_back();
    // The first block grows as needed: most results are small.
    if (first) return;
    blocks_.back().payload.reserve(cells);
    blocks_.back().types.reserve(cells);
}

void RowStore::DropLastRow() noexcept {
    --rows_;
    Block& block = blocks_[rows_ >> rowShift_];
    const std::size_t cells = (rows_ & rowMask_) * fields_->size();
    block.payload.resize(cells);
    block.types.resize(cells);
}

void RowStore::EditRow(std::size_t row) { current_ = row; }

void RowStore::Put(int column, VarType type, std::uint64_t payload) {
    Block& block = blocks_[current_ >> rowShift_];
    const std::size_t cell = CellIndex(current_, column);
    block.payload[cell] = payload;
    block.types[cell] = static_cast<std::uint8_t>(type);
}

void RowStore::PutNull(int column) { Put(column, VarType::Null, 0); }

void RowStore::PutBoolean(int column, bool value) { Put(column, VarType::Boolean, value ? 1 : 0); }

void RowStore::PutLong(int column, std::int64_t value) {
    switch ((*fields_)[static_cast<std::size_t>(column)].type) {
        case VarType::Boolean:
            return PutBoolean(column, value != 0);
        case VarType::Double:
            return PutDouble(column, static_cast<double>(value));
        case VarType::Currency:
            if (Fits<std::int32_t>(value)) return PutCurrency(column, value * Currency::kScale);
            return PutDouble(column, static_cast<double>(value));
        case VarType::Integer:
            if (Fits<std::int16_t>(value)) return Put(column, VarType::Integer, Bits(value));
            break;
        default:
            break;
    }
    if (Fits<std::int32_t>(value)) return Put(column, VarType::Long, Bits(value));
    PutDouble(column, static_cast<double>(value));
}

void RowStore::PutDouble(int column, double value) { Put(column, VarType::Double, Bits(value)); }

void RowStore::PutCurrency(int column, std::int64_t scaled) { Put(column, VarType::Currency, Bits(scaled)); }

void RowStore::PutDate(int column, double serial) { Put(column, VarType::Date, Bits(serial)); }

void RowStore::PutText(int column, std::string_view text) {
    // Listings repeat names from row to row; the previous row's copy is shared.
    if (current_ > 0 && TypeAt(current_ - 1, column) == VarType::String && TextAt(current_ - 1, column) == text) {
        return Put(column, VarType::String, BlockOf(current_ - 1).payload[CellIndex(current_ - 1, column)]);
    }
    if (text.empty()) return Put(column, VarType::String, 0);
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) Raise(ErrorNumber::Overflow);
    const auto size = static_cast<std::uint32_t>(text.size());
    char* record = Allocate(sizeof size + text.size());
    std::memcpy(record, &size, sizeof size);
    std::memcpy(record + sizeof size, text.data(), text.size());
    Put(column, VarType::String, reinterpret_cast<std::uintptr_t>(record));
}

void RowStore::PutValue(int column, const Variant& value) {
    switch (value.Type()) {
        case VarType::Empty:
        case VarType::Null:
            return PutNull(column);
        case VarType::Boolean:
            return PutBoolean(column, *value.If<bool>());
        case VarType::Integer:
            return Put(column, VarType::Integer, Bits(std::int64_t{*value.If<std::int16_t>()}));
        case VarType::Long:
            return Put(column, VarType::Long, Bits(std::int64_t{*value.If<std::int32_t>()}));
        case VarType::Double:
            return PutDouble(column, *value.If<double>());
        case VarType::Currency:
            return PutCurrency(column, value.If<Currency>()->Scaled());
        case VarType::Date:
            return PutDate(column, value.If<Date>()->Serial());
        case VarType::String:
            return PutText(column, *value.If<std::string>());
        case VarType::Object:
        case VarType::Missing:
        case VarType::Array:
            break;
    }
    Raise(ErrorNumber::TypeMismatch);
}

void RowStore::Arrange(std::vector<std::uint32_t> order) {
    const std::size_t columns = fields_->size();
    std::vector<std::uint64_t> payload(columns);
    std::vector<std::uint8_t> types(columns);
    // Each cycle of places begins with its first row set aside.
    for (std::uint32_t first = 0; first < rows_; ++first) {
        if (order[first] == first) continue;
        std::copy_n(PayloadOf(first), columns, payload.data());
        std::copy_n(TypesOf(first), columns, types.data());
        std::uint32_t place = first;
        while (order[place] != first) {
            const std::uint32_t from = std::exchange(order[place], place);
            std::copy_n(PayloadOf(from), columns, PayloadOf(place));
            std::copy_n(TypesOf(from), columns, TypesOf(place));
            place = from;
        }
        order[place] = place;
        std::copy_n(payload.data(), columns, PayloadOf(place));
        std::copy_n(types.data(), columns, TypesOf(place));
    }
}

void RowStore::DropLastColumns(int count) {
    const std::size_t columns = fields_->size();
    const std::size_t kept = columns - static_cast<std::size_t>(count);
    for (Block& block : blocks_) {
        const std::size_t rows = block.types.size() / columns;
        for (std::size_t row = 1; row < rows; ++row) {
            std::copy_n(block.payload.data() + row * columns, kept, block.payload.data() + row * kept);
            std::copy_n(block.types.data() + row * columns, kept, block.types.data() + row * kept);
        }
        block.payload.resize(rows * kept);
        block.types.resize(rows * kept);
    }
    fields_ = ShareFields({fields_->begin(), fields_->begin() + static_cast<std::ptrdiff_t>(kept)});
}

void RowStore::RequireRoomFor(std::size_t bytes) {
    if (bytes > limit_ && laterLimit_) Limit(std::max(limit_, laterLimit_()));
    if (bytes > limit_) throw StoreFull{limit_};
}

char* RowStore::Allocate(std::size_t bytes) {
    if (bytes > arenaLeft_) {
        const std::size_t size = std::max(bytes, nextArenaSize_);
        RequireRoomFor(arenaBytes_ + size);
        arena_.emplace_back(new char[size]);
        arenaBytes_ += size;
        if (nextArenaSize_ < kLargestArena) nextArenaSize_ *= 2;
        arenaAt_ = arena_.back().get();
        arenaLeft_ = size;
    }
    char* at = arenaAt_;
    arenaAt_ += bytes;
    arenaLeft_ -= bytes;
    return at;
}

Variant RowStore::GetValue(std::size_t row, int column) const {
    const std::uint64_t payload = BlockOf(row).payload[CellIndex(row, column)];
    switch (TypeAt(row, column)) {
        case VarType::Boolean:
            return payload != 0;
        case VarType::Integer:
            return static_cast<std::int16_t>(ToWhole(payload));
        case VarType::Long:
            return static_cast<std::int32_t>(ToWhole(payload));
        case VarType::Double:
            return ToDouble(payload);
        case VarType::Currency:
            return Currency::FromScaled(ToWhole(payload));
        case VarType::Date:
            return Date::FromSerial(ToDouble(payload));
        case VarType::String:
            return TextOf(payload);
        default:
            return Variant::Null();
    }
}

VarType RowStore::TypeAt(std::size_t row, int column) const noexcept {
    return static_cast<VarType>(BlockOf(row).types[CellIndex(row, column)]);
}

double RowStore::NumberAt(std::size_t row, int column) const noexcept {
    const std::uint64_t payload = BlockOf(row).payload[CellIndex(row, column)];
    switch (TypeAt(row, column)) {
        case VarType::Boolean:
            return payload != 0 ? -1 : 0;
        case VarType::Integer:
        case VarType::Long:
            return static_cast<double>(ToWhole(payload));
        case VarType::Double:
        case VarType::Date:
            return ToDouble(payload);
        case VarType::Currency:
            return Currency::FromScaled(ToWhole(payload)).ToDouble();
        default:
            return 0;
    }
}

std::string_view RowStore::TextAt(std::size_t row, int column) const noexcept {
    if (TypeAt(row, column) != VarType::String) return {};
    return TextOf(BlockOf(row).payload[CellIndex(row, column)]);
}

}  // namespace kpTables::recordset
