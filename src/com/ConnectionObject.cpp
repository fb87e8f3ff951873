#include "com/ConnectionObject.h"

#include <utility>

#include "com/Ids.h"
#include "com/RecordsetObject.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

enum AdoConnectionState : std::int32_t { kDisconnected = 0, kConnected = 1 };

/// The connection as the component sees it: the object's book, whichever it has open.
class BookConnection final : public Connection, public HostReference {
public:
    explicit BookConnection(Pointer<ConnectionObject> object) : object_(std::move(object)) {}

    IDispatch* Dispatch() const noexcept override { return object_.Get(); }
    RecordsetPtr Execute(std::string_view text) override { return object_->Opened().Execute(text); }
    RecordsetPtr Execute(std::string_view text, const NamedValues& values) override {
        return object_->Opened().Execute(text, values);
    }
    RecordsetPtr Open(std::string_view source, SourceKind kind) override {
        return object_->Opened().Open(source, kind);
    }
    SqlDialect Dialect() const override { return object_->Opened().Dialect(); }
    void Dialect(SqlDialect dialect) override { object_->Opened().Dialect(dialect); }
    int BeginTrans() override { return object_->Opened().BeginTrans(); }
    void CommitTrans() override { object_->Opened().CommitTrans(); }
    void RollbackTrans() override { object_->Opened().RollbackTrans(); }

private:
    Pointer<ConnectionObject> object_;
};

const Interface& ConnectionInterface() {
    using C = ConnectionObject;
    static const Interface members(
        kConnectionClass, "Connection",
        {
            Get<&C::ConnectionString>("ConnectionString", DISPID_VALUE),
            Let<&C::SetConnectionString>("ConnectionString", DISPID_VALUE),
            Method<&C::Open>("Open", 1, {"ConnectionString?", "UserID?", "Password?", "Options?"}),
            Method<&C::Close>("Close", 2),
            Get<&C::State>("State", 3),
            Method<&C::Execute>("Execute", 4, {"CommandText", "RecordsAffected?&", "Options?"}),
            Method<&C::BeginTrans>("BeginTrans", 5),
            Method<&C::CommitTrans>("CommitTrans", 6),
            Method<&C::RollbackTrans>("RollbackTrans", 7),
            Get<&C::IsSql>("isSQL", 8),
            Let<&C::SetIsSql>("isSQL", 8),
        });
    return members;
}

}  // namespace

ConnectionObject::ConnectionObject(BookPtr book)
    : Scriptable(ConnectionInterface()), book_(std::move(book)), url_(book_ ? book_->Url() : "") {}

ConnectionObject::~ConnectionObject() = default;

HRESULT ConnectionObject::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (iid == kNativeIid) return Answer(static_cast<INative*>(this), object);
    return Scriptable::QueryInterface(iid, object);
}

void ConnectionObject::GetNative(HINSTANCE caller, ObjectPtr* object) {
    if (caller == Module()) *object = std::make_shared<BookConnection>(Pointer<ConnectionObject>(this));
}

Book& ConnectionObject::Opened() const {
    if (!book_) Raise(ErrorNumber::ObjectClosed);
    return *book_;
}

Variant ConnectionObject::Open(Arguments arguments) {
    constexpr std::int32_t kIsOpen = 3705;
    if (book_) throw Error(kIsOpen, "Operation is not allowed when the object is open");
    if (!arguments[0].IsMissing()) url_ = CStr(arguments[0]);
    book_ = OpenBook(url_);
    return {};
}

Variant ConnectionObject::Close(Arguments) {
    constexpr std::int32_t kInTransaction = 3246;
    Opened();
    if (level_ > 0) throw Error(kInTransaction, "Connection object cannot be closed while in a transaction");
    book_->FlushRows();
    book_.reset();
    return {};
}

Variant ConnectionObject::State(Arguments) { return book_ ? kConnected : kDisconnected; }

Variant ConnectionObject::Execute(Arguments arguments) {
    const RecordsetPtr rows = Opened().Execute(CStr(arguments[0]));
    if (!arguments[1].IsMissing())
        arguments[1] = rows ? std::int32_t{-1} : static_cast<std::int32_t>(book_->RecordsAffected());
    // ADO answers every statement with a recordset; one that has no rows to give is not open.
    if (rows) return Variant(rows);
    return Give(Make<RecordsetObject>());
}

Variant ConnectionObject::BeginTrans(Arguments) { return static_cast<std::int32_t>(level_ = Opened().BeginTrans()); }

Variant ConnectionObject::CommitTrans(Arguments) {
    Opened().CommitTrans();
    --level_;
    return {};
}

Variant ConnectionObject::RollbackTrans(Arguments) {
    Opened().RollbackTrans();
    --level_;
    return {};
}

Variant ConnectionObject::ConnectionString(Arguments) { return url_; }

Variant ConnectionObject::SetConnectionString(Arguments arguments) {
    if (book_) Raise(ErrorNumber::InvalidCall, "the connection is open");
    url_ = CStr(arguments[0]);
    return {};
}

Variant ConnectionObject::IsSql(Arguments) { return Opened().Dialect() == SqlDialect::SqlServer; }

Variant ConnectionObject::SetIsSql(Arguments arguments) {
    Opened().Dialect(CBool(arguments[0]) ? SqlDialect::SqlServer : SqlDialect::Jet);
    return {};
}

}  // namespace kpTables::com
