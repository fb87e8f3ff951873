#include "com/RecordsetObject.h"

#include <utility>
#include <vector>

#include "com/FieldObjects.h"
#include "com/Ids.h"
#include "kpTables/Connection.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

enum AdoState : std::int32_t { kClosed = 0, kOpen = 1 };
constexpr std::int32_t kLockReadOnly = 1;

template <class T, class Convert>
T Given(const Variant& argument, T otherwise, Convert convert) {
    return argument.IsMissing() ? otherwise : convert(argument);
}

/// A list of fields: one name or position, or an array of them.
std::vector<Variant> ListOf(const Variant& value) {
    if (const auto* array = value.If<std::shared_ptr<VariantArray>>()) return (*array)->items;
    return {value};
}

int PositionOf(const Recordset& rows, const Variant& field) {
    if (field.Type() == VarType::String) return rows.FieldIndex(*field.If<std::string>());
    const std::int32_t index = CLng(field);
    rows.FieldAt(index);
    return index;
}

/// The source's kind: as the options say, else a text when it begins as a query does.
SourceKind KindOf(const std::string& source, std::int32_t options) {
    if (options == static_cast<std::int32_t>(SourceKind::Text)) return SourceKind::Text;
    if (options == static_cast<std::int32_t>(SourceKind::Table)) return SourceKind::Table;
    return source.find(' ') == source.npos ? SourceKind::Table : SourceKind::Text;
}

RecordsetPtr OpenRows(Connection& connection, const std::string& source, SourceKind kind, std::int32_t lock) {
    if (lock != kLockReadOnly) return connection.Open(source, kind);
    if (kind == SourceKind::Text) return connection.Execute(source);
    if (source.find(']') != source.npos) Raise(ErrorNumber::InvalidArgument, "no table has this name: " + source);
    return connection.Execute("Select * From [" + source + "]");
}

const Interface& RecordsetInterface() {
    using R = RecordsetObject;
    static const Interface members(
        kRecordsetClass, "Recordset",
        {
            Get<&R::FieldsObject>("Fields", DISPID_VALUE),
            Method<&R::Open>("Open", 1, {"Source?", "ActiveConnection?!", "CursorType?", "LockType?", "Options?"}),
            Method<&R::Close>("Close", 2),
            Get<&R::State>("State", 3),
            Get<&R::Eof>("EOF", 4),
            Get<&R::Bof>("BOF", 5),
            Get<&R::RecordCount>("RecordCount", 6),
            Get<&R::AbsolutePosition>("AbsolutePosition", 7),
            Get<&R::CacheSize>("CacheSize", 8),
            Let<&R::SetCacheSize>("CacheSize", 8),
            Method<&R::MoveFirst>("MoveFirst", 9),
            Method<&R::MoveNext>("MoveNext", 10),
            Method<&R::Find>("Find", 11, {"Criteria", "SkipRecords?", "SearchDirection?", "Start?"}),
            Get<&R::Sort>("Sort", 12),
            Let<&R::SetSort>("Sort", 12),
            Method<&R::AddNew>("AddNew", 13, {"FieldList?", "Values?"}),
            Method<&R::Update>("Update", 14, {"Fields?", "Values?"}),
            Method<&R::GetRows>("GetRows", 15, {"Rows?", "Start?", "Fields?"}),
        });
    return members;
}

}  // namespace

RecordsetObject::RecordsetObject(RecordsetPtr rows) : Scriptable(RecordsetInterface()), rows_(std::move(rows)) {}

HRESULT RecordsetObject::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (iid == kNativeIid) return Answer(static_cast<INative*>(this), object);
    return Scriptable::QueryInterface(iid, object);
}

Recordset& RecordsetObject::Rows() const {
    if (!rows_) Raise(ErrorNumber::ObjectClosed);
    return *rows_;
}

Variant RecordsetObject::FieldsObject(Arguments) { return FieldsOf(*this); }

Variant RecordsetObject::Open(Arguments arguments) {
    constexpr std::int32_t kIsOpen = 3705;
    if (rows_) throw Error(kIsOpen, "Operation is not allowed when the object is open");
    const auto* const object = arguments[1].If<ObjectPtr>();
    const auto connection = object ? std::dynamic_pointer_cast<Connection>(*object) : nullptr;
    if (!connection) Raise(ErrorNumber::InvalidArgument, "Open needs a source and an open connection");
    const std::string source = CStr(arguments[0]);
    const std::int32_t lock = Given(arguments[3], kLockReadOnly, CLng);
    rows_ = OpenRows(*connection, source, KindOf(source, Given(arguments[4], std::int32_t{-1}, CLng)), lock);
    order_.clear();
    return {};
}

Variant RecordsetObject::Close(Arguments) {
    Rows().Close();
    rows_.reset();
    return {};
}

Variant RecordsetObject::State(Arguments) { return rows_ ? kOpen : kClosed; }

Variant RecordsetObject::Eof(Arguments) { return Rows().Eof(); }

Variant RecordsetObject::Bof(Arguments) { return Rows().Eof() && Rows().RecordCount() == 0; }

Variant RecordsetObject::RecordCount(Arguments) { return Rows().RecordCount(); }

Variant RecordsetObject::AbsolutePosition(Arguments) { return Rows().AbsolutePosition(); }

Variant RecordsetObject::CacheSize(Arguments) { return Rows().CacheSize(); }

Variant RecordsetObject::SetCacheSize(Arguments arguments) {
    Rows().SetCacheSize(CLng(arguments[0]));
    return {};
}

Variant RecordsetObject::MoveFirst(Arguments) {
    Rows().MoveFirst();
    return {};
}

Variant RecordsetObject::MoveNext(Arguments) {
    Rows().MoveNext();
    return {};
}

Variant RecordsetObject::Find(Arguments arguments) {
    constexpr std::int32_t kFromCurrent = 0;
    constexpr std::int32_t kFromFirst = 1;
    const std::int32_t start = Given(arguments[3], kFromCurrent, CLng);
    if (start != kFromCurrent && start != kFromFirst)
        Raise(ErrorNumber::InvalidArgument, "Start may be 0 (the current row) or 1 (the first)");
    if (start == kFromFirst && Rows().RecordCount() != 0) Rows().MoveFirst();
    Rows().Find(CStr(arguments[0]), Given(arguments[1], std::int32_t{0}, CLng),
                Given(arguments[2], static_cast<std::int32_t>(SearchForward), CLng));
    return {};
}

Variant RecordsetObject::Sort(Arguments) { return order_; }

Variant RecordsetObject::SetSort(Arguments arguments) {
    std::string order = CStr(arguments[0]);
    Rows().Sort(order);
    order_ = std::move(order);
    return {};
}

void RecordsetObject::SetFields(const Variant& fields, const Variant& values) {
    const std::vector<Variant> names = ListOf(fields);
    const std::vector<Variant> items = ListOf(values);
    if (names.size() != items.size()) Raise(ErrorNumber::InvalidArgument, "as many values as fields are needed");
    for (std::size_t i = 0; i < names.size(); ++i) Rows().SetValue(PositionOf(Rows(), names[i]), items[i]);
}

Variant RecordsetObject::AddNew(Arguments arguments) {
    Rows().AddNew();
    if (arguments[0].IsMissing()) return {};
    SetFields(arguments[0], arguments[1]);
    Rows().Update();
    return {};
}

Variant RecordsetObject::Update(Arguments arguments) {
    if (!arguments[0].IsMissing()) SetFields(arguments[0], arguments[1]);
    Rows().Update();
    return {};
}

Variant RecordsetObject::GetRows(Arguments arguments) {
    Recordset& rows = Rows();
    const std::int32_t most = Given(arguments[0], std::int32_t{-1}, CLng);
    if (!arguments[1].IsMissing() && CLng(arguments[1]) == 1 && rows.RecordCount() != 0) rows.MoveFirst();
    if (rows.Eof()) Raise(ErrorNumber::NoCurrentRecord);
    std::vector<int> columns;
    if (arguments[2].IsMissing()) {
        for (int i = 0; i < rows.FieldCount(); ++i) columns.push_back(i);
    } else {
        for (const Variant& field : ListOf(arguments[2])) columns.push_back(PositionOf(rows, field));
    }
    std::vector<std::vector<Variant>> read(columns.size());
    std::int32_t count = 0;
    for (; !rows.Eof() && (most < 0 || count < most); rows.MoveNext(), ++count)
        for (std::size_t i = 0; i < columns.size(); ++i) read[i].push_back(rows.GetValue(columns[i]));
    auto array = std::make_shared<VariantArray>();
    array->bounds = {{0, static_cast<std::int32_t>(columns.size())}, {0, count}};
    for (auto& column : read)
        for (Variant& value : column) array->items.push_back(std::move(value));
    return array;
}

Pointer<IDispatch> MakeRecordset(RecordsetPtr rows) {
    return Pointer<IDispatch>(static_cast<IDispatch*>(Make<RecordsetObject>(std::move(rows)).Get()));
}

}  // namespace kpTables::com
