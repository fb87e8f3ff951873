// A CSV file of opening stock.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "kpTables/bookkeeping/Opening.h"
#include "kpbook/input/TableFile.h"

namespace kpTables::kpbook::input {

class OpeningFile {
public:
    struct Fault {
        std::int64_t line = 0;
        std::string column;  ///< "": the whole row
        std::string reason;
    };

    /// Reads all of a file; "-" is standard input. The first line names the columns 仓库, 商品编号, 数量 and 金额, in
    /// any order. A CommandError says why the file or its first line cannot be read.
    explicit OpeningFile(const std::string& path);

    /// For messages.
    const std::string& Name() const noexcept { return file_.Name(); }
    /// Those that have the right fields; a figure that cannot be read is among the faults.
    const std::vector<bookkeeping::OpeningRow>& Rows() const noexcept { return rows_; }
    /// On which a row begins, counted from 1.
    std::int64_t Line(std::size_t row) const { return lines_[row]; }
    const std::vector<Fault>& Faults() const noexcept { return faults_; }

private:
    static constexpr std::array kColumns{"仓库", "商品编号", "数量", "金额"};
    enum Column : std::size_t { kWarehouse, kProduct, kQuantity, kAmount };

    void ReadHeader();
    void ReadRow();
    /// A figure; other when it cannot be read, which is a fault.
    Variant Figure(Column column, VarType type, const Variant& other);
    std::string Text(Column column);
    void AddFault(const std::string& column, const std::string& reason) {
        faults_.push_back({csv_.Line(), column, reason});
    }

    TableFile file_;
    RowReader& csv_;
    std::size_t fields_ = 0;                            ///< of each row
    std::array<std::size_t, kColumns.size()> place_{};  ///< of each column
    std::vector<bookkeeping::OpeningRow> rows_;
    std::vector<std::int64_t> lines_;
    std::vector<Fault> faults_;
};

}  // namespace kpTables::kpbook::input
