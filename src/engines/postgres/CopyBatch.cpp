#include "engines/postgres/CopyBatch.h"

#include <cstdint>
#include <utility>

#include "engines/common/ValueSink.h"
#include "engines/postgres/BinaryArray.h"
#include "engines/postgres/BinaryCell.h"
#include "engines/postgres/RowReader.h"

namespace kpTables::engines::postgres {

namespace {

// What is sent once costs two waits for the server: bounded by the bytes that are held rather than by the rows.
constexpr std::size_t kCopiedRows = 10'000;
constexpr std::size_t kCopiedBytes = std::size_t{1} << 20;

}  // namespace

CopyBatch::CopyBatch(engines::ColumnSet set, const std::vector<ServerType>& columns) : set_(std::move(set)) {
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (set_.Has(static_cast<int>(i))) elements_.push_back(columns[i]);
}

bool CopyBatch::IsFull() const noexcept { return starts_.size() >= kCopiedRows || bytes_.size() >= kCopiedBytes; }

void CopyBatch::Add(engines::WrittenValues values) {
    const std::size_t start = bytes_.size();
    try {
        AppendWhole(bytes_, static_cast<std::int16_t>(values.size()));
        auto element = elements_.begin();
        for (const Variant* value : values) {
            BinaryCell cell(*element++, bytes_);
            engines::BindValue(cell, 0, *value);
        }
        starts_.push_back(start);
    } catch (...) {
        bytes_.resize(start);
        throw;
    }
}

std::string_view CopyBatch::Slice(std::size_t first, std::size_t count) const {
    const std::size_t begin = starts_[first];
    const std::size_t end = first + count < starts_.size() ? starts_[first + count] : bytes_.size();
    return std::string_view(bytes_).substr(begin, end - begin);
}

Parameters CopyBatch::ParametersOf(std::size_t row) const {
    std::string_view cells = Slice(row, 1).substr(sizeof(std::int16_t));
    Parameters parameters;
    int number = 0;
    for (const ServerType element : elements_) {
        const auto length = WholeOf<std::int32_t>(cells);
        const std::size_t size = sizeof length + (length > 0 ? static_cast<std::size_t>(length) : 0);
        parameters.BindBytes(++number, ArrayOf(element, cells.substr(0, size), 1));
        cells.remove_prefix(size);
    }
    return parameters;
}

}  // namespace kpTables::engines::postgres
