#include "engines/FakeDriver.h"

#include <utility>

#include "engines/common/LiteralBinding.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::test {

namespace {

constexpr TextOrder kBytes = {
    [](std::string_view left, std::string_view right) noexcept { return left.compare(right); },
    [](std::string_view) noexcept { return std::optional<std::uint64_t>(); },
};

/// Logs bound values as "1=7".
struct Bound {
    std::string text;

    void Note(int parameter, const std::string& value) {
        text.append(text.empty() ? "" : " ").append(std::to_string(parameter)).append("=").append(value);
    }
    void BindNull(int parameter) { Note(parameter, "Null"); }
    void BindInteger(int parameter, std::int64_t value) { Note(parameter, std::to_string(value)); }
    void BindReal(int parameter, double value) { Note(parameter, Text(Variant(value))); }
    void BindBoolean(int parameter, bool value) { Note(parameter, value ? "True" : "False"); }
    void BindCurrency(int parameter, Currency value) { Note(parameter, value.ToText()); }
    void BindCurrencyBound(int parameter, double value) { BindReal(parameter, value); }
    void BindDate(int parameter, Date value) { Note(parameter, value.ToIso()); }
    void BindText(int parameter, std::string_view value) { Note(parameter, std::string(value)); }
    void BindTextCopy(int parameter, std::string_view value) { BindText(parameter, value); }
};

/// What the journal calls a statement: "select k n", "pivot values", "cross-tab" or "change".
std::string Summary(std::string_view text) {
    if (!text.starts_with("SELECT ")) return "change";
    if (text.starts_with("SELECT DISTINCT ")) return "pivot values";
    if (text.find(" FILTER (") != text.npos) return "cross-tab";
    std::string summary = "select";
    const std::string_view items = text.substr(0, text.find(" FROM "));
    constexpr std::string_view kBefore = ".\"";
    for (auto at = items.find(kBefore); at != items.npos; at = items.find(kBefore, at + 1)) {
        const auto begin = at + kBefore.size();
        summary.append(" ").append(items.substr(begin, items.find('"', begin) - begin));
    }
    return summary;
}

class FakeStatement final : public engines::Statement {
public:
    FakeStatement(FakeDatabase& database, std::string_view text) : database_(database), text_(text) {}

    void Bind(const std::vector<sql::Parameter>& parameters, const std::vector<sql::LiteralValue>& literals,
              std::string_view shown) override {
        Bound bound;
        engines::BindLiterals(bound, parameters, literals, shown);
        bound_ = bound.text;
    }

    std::unique_ptr<recordset::RowStore> ReadRows(recordset::FieldsPtr fields, std::string_view /*shown*/) override {
        database_.journal.push_back("read " + text_ + " [" + bound_ + "]");
        auto store = std::make_unique<recordset::RowStore>(fields);
        for (const auto& [id, row] : database_.rows) {
            store->BeginRow();
            for (std::size_t i = 0; i < fields->size(); ++i) {
                store->PutValue(static_cast<int>(i), ValueOf((*fields)[i].name, id, row));
            }
        }
        return store;
    }

    std::int64_t Run(std::string_view /*shown*/) override {
        database_.journal.push_back("run " + text_ + " [" + bound_ + "]");
        return static_cast<std::int64_t>(database_.rows.size());
    }

    bool TakeSchemaChange() noexcept override { return std::exchange(database_.schemaChanged, false); }

private:
    static Variant ValueOf(std::string_view field, std::int64_t id, const FakeDatabase::Row& row) {
        if (field.empty()) return Currency::FromScaled(id);
        // A query of pivot values returns those of k, and each of them heads a column of n.
        return row.at(field == "k" || field == "Expr1000" ? 0 : field == "x" ? 2 : 1);
    }

    FakeDatabase& database_;
    std::string text_;
    std::string bound_;
};

class FakeWriter final : public engines::RowWriter {
public:
    FakeWriter(FakeDatabase& database, engines::WrittenTable table)
        : RowWriter(std::move(table)), database_(database) {}

    std::int64_t CountRows() override {
        database_.journal.push_back("count");
        return static_cast<std::int64_t>(database_.rows.size());
    }

private:
    std::int64_t InsertRow(const engines::ColumnSet& set, engines::WrittenValues values) override {
        const std::int64_t id = database_.nextRowId++;
        FakeDatabase::Row row = {static_cast<std::int32_t>(id), std::int32_t{5}, Variant::Null()};
        Write("insert", row, set, values);
        database_.rows[id] = std::move(row);
        return id;
    }

    void ChangeRow(const engines::RowKey& key, const engines::ColumnSet& set, engines::WrittenValues values) override {
        Write("change " + std::to_string(key.id), database_.rows.at(key.id), set, values);
    }

    void DeleteRow(std::int64_t rowId) override {
        database_.journal.push_back("delete " + std::to_string(rowId));
        database_.rows.erase(rowId);
    }

    void Write(std::string entry, FakeDatabase::Row& row, const engines::ColumnSet& set,
               engines::WrittenValues values) {
        if (auto refusal = std::exchange(database_.refuse, std::nullopt)) {
            database_.open = false;
            throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), *refusal);
        }
        auto value = values.begin();
        for (std::size_t i = 0; i < Table().columns.size(); ++i) {
            if (!set.Has(static_cast<int>(i))) continue;
            entry += " " + Table().columns[i].name + "=" + Text(**value);
            row.at(i) = **value++;
        }
        database_.journal.push_back(entry);
    }

    FakeDatabase& database_;
};

}  // namespace

std::string FakeDatabase::TakeJournal() {
    std::string text;
    for (const std::string& entry : std::exchange(journal, {})) text += (text.empty() ? "" : "; ") + entry;
    return text;
}

void FakeTransaction::Start(Use use) {
    database_.journal.push_back(use == Use::Write ? "start to write" : "start");
    database_.open = true;
}

void FakeTransaction::Save() {
    database_.journal.push_back("save");
    if (refuseSave) throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Locked), "in use");
    database_.open = false;
}

void FakeTransaction::Undo() {
    database_.journal.push_back("undo");
    database_.open = false;
}

void FakeTransaction::Abandon() noexcept {
    database_.journal.push_back("abandon");
    database_.open = false;
}

std::optional<sql::CatalogTable> FakeCatalog::ReadTable(std::string_view name) const {
    database_.journal.push_back("look at " + std::string(name));
    if (name != "T" && name != "t") return std::nullopt;
    sql::CatalogTable table{"T", {{"k", sql::Type::Long, true}, {"n", sql::Type::Long}, {"x", sql::Type::Text}}};
    table.columns[2].length = 5;
    return table;
}

TableInfo FakeCatalog::Describe(std::string_view /*table*/) const {
    return {"T",
            {{"k", VarType::Long, Variant::Null(), false, true},
             {"n", VarType::Long, std::int32_t{5}, false, false},
             {"x", VarType::String, Variant::Null(), false, false}}};
}

struct FakeDriver::Parts {
    explicit Parts(FakeDatabase& database) : catalog(database), transaction(database) {}

    FakeCatalog catalog;
    FakeTransaction transaction;
};

FakeDriver::FakeDriver(FakeDatabase& database) : database_(database), parts_(std::make_unique<Parts>(database)) {}
FakeDriver::~FakeDriver() = default;

engines::Catalog& FakeDriver::GetCatalog() noexcept { return parts_->catalog; }
engines::Transaction& FakeDriver::GetTransaction() noexcept { return parts_->transaction; }
const TextOrder& FakeDriver::Texts() const noexcept { return kBytes; }

std::unique_ptr<engines::Statement> FakeDriver::Prepare(std::string_view text) {
    const std::string summary = Summary(text);
    database_.journal.push_back("prepare " + summary);
    return std::make_unique<FakeStatement>(database_, summary);
}

std::shared_ptr<engines::RowWriter> FakeDriver::MakeWriter(engines::WrittenTable table) {
    return std::make_shared<FakeWriter>(database_, std::move(table));
}

void FakeDriver::BackUp(const std::string& path) { database_.journal.push_back("back up to " + path); }

// The printed text is SQLite's; the driver processes it in its own way.
const sql::print::Engine& FakeDriver::Dialect() const noexcept { return sql::print::sqlite::SqliteEngine(); }

}  // namespace kpTables::test
