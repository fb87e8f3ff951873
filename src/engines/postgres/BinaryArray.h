// Values of one column for many rows, as the server takes an array of them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/ValueSink.h"
#include "engines/postgres/BinaryCell.h"
#include "engines/postgres/ServerType.h"
#include "kpTables/Variant.h"

namespace kpTables::engines::postgres {

/// The array's type, as a statement names it: "bigint[]".
std::string_view ArrayName(ServerType element) noexcept;

/// Values in binary form as an array.
std::string ArrayOf(ServerType element, std::string_view cells, std::size_t count);

class BinaryArray {
public:
    explicit BinaryArray(ServerType element) noexcept : element_(element) {}

    /// A value that the element cannot hold is a DatabaseError.
    void Add(const Variant& value) {
        BinaryCell cell = Next();
        engines::BindValue(cell, 0, value);
    }
    void AddWhole(std::int64_t value) { Next().BindInteger(0, value); }

    std::size_t Size() const noexcept { return starts_.size(); }
    /// Bytes held.
    std::size_t Bytes() const noexcept { return cells_.size(); }
    /// Drops all values behind so many.
    void Cut(std::size_t size) noexcept;
    /// Some of the values as an array in binary form.
    std::string Slice(std::size_t first, std::size_t count) const;

private:
    BinaryCell Next() {
        starts_.push_back(cells_.size());
        return {element_, cells_};
    }

    ServerType element_;
    std::string cells_;
    std::vector<std::size_t> starts_;
};

}  // namespace kpTables::engines::postgres
