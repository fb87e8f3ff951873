// kpTables.Connection: a book with the members of ADO's connection.
#pragma once

#include "com/HostObject.h"
#include "com/Scriptable.h"
#include "kpTables/Book.h"

namespace kpTables::com {

class ConnectionObject final : public Scriptable, public INative {
public:
    explicit ConnectionObject(BookPtr book = nullptr);
    ~ConnectionObject() override;

    ULONG STDMETHODCALLTYPE AddRef() override { return Scriptable::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Scriptable::Release(); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    /// A connection that keeps this object alive.
    void STDMETHODCALLTYPE GetNative(HINSTANCE caller, ObjectPtr* object) override;

    /// Error 3704 while it is not open.
    Book& Opened() const;
    /// The book; null while it is not open.
    const BookPtr& Shared() const noexcept { return book_; }

    // The members, as ADO has them.
    Variant Open(Arguments arguments);
    Variant Close(Arguments arguments);
    Variant State(Arguments arguments);
    Variant Execute(Arguments arguments);
    Variant BeginTrans(Arguments arguments);
    Variant CommitTrans(Arguments arguments);
    Variant RollbackTrans(Arguments arguments);
    Variant ConnectionString(Arguments arguments);
    Variant SetConnectionString(Arguments arguments);
    // Beyond ADO's.
    Variant IsSql(Arguments arguments);
    Variant SetIsSql(Arguments arguments);

private:
    BookPtr book_;
    std::string url_;
    int level_ = 0;  ///< of transactions begun here
};

}  // namespace kpTables::com
