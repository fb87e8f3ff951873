// A recordset held in memory, bound to no table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Recordset.h"

namespace kpTables {

namespace recordset {
class RowStore;
}

/// How the texts of a store compare when Find looks for one and Sort orders them.
struct TextOrder {
    /// Negative, 0 or positive.
    int (*compare)(std::string_view left, std::string_view right) noexcept;
    /// Equal for texts that compare equal; nothing for a text that may equal one with another key.
    std::optional<std::uint64_t> (*key)(std::string_view text) noexcept;
    /// Appends numbers, at most so many, that compare like the text: the first that differs decides between two texts,
    /// a missing one counting as 0, and compare does where none differs. Null where there are none.
    void (*weigh)(std::string_view text, std::size_t most, std::vector<std::uint64_t>& numbers) = nullptr;
};

/// A client-side recordset with given fields: a host or a report builds it row by row with AddNew, SetValue and Update,
/// and engines return it as a query's result (then read-only).
class MemoryRecordset : public Recordset {
public:
    /// An empty, editable recordset.
    explicit MemoryRecordset(std::vector<FieldInfo> fields);
    /// A recordset over the rows of a store, positioned on the first; read-only unless editable. Without a given order,
    /// texts compare ignoring the case of ASCII letters and trailing blanks.
    explicit MemoryRecordset(std::unique_ptr<recordset::RowStore> rows, bool editable = false,
                             const TextOrder* texts = nullptr);
    ~MemoryRecordset() override;

    int FieldCount() const override;
    const FieldInfo& FieldAt(int index) const override;
    int FieldIndex(std::string_view name) const override;
    Variant GetValue(int index) const override;
    void SetValue(int index, const Variant& value) override;
    std::int32_t RecordCount() const override;
    std::int32_t AbsolutePosition() const override;
    bool Eof() const override;
    void MoveFirst() override;
    void MoveNext() override;
    void Find(std::string_view criteria, std::int32_t skip = 0, int direction = 1) override;
    void Sort(std::string_view order) override;
    void AddNew() override;
    void Update() override;
    void Close() override;

    /// The value that SetValue has given a field of the current row and Update has not yet written; null if none.
    const Variant* PendingValue(int index) const;

private:
    struct State;
    /// Error 3704 after Close.
    State& Opened() const;

    std::unique_ptr<State> state_;  ///< null after Close
};

}  // namespace kpTables
