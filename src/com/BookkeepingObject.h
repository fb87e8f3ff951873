// kpTables.Bookkeeping: what a careful host does with a book, for scripts.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "com/ConnectionObject.h"
#include "com/Scriptable.h"
#include "kpTables/Host.h"
#include "kpTables/bookkeeping/ActingOperator.h"

namespace kpTables::com {

/// Every step changes the book wholly or not at all, and raises error 5 when it refuses. A book that demands an
/// operator is changed after LogIn only; then the operator's rights decide, and the log says what was done.
class BookkeepingObject final : public Scriptable {
public:
    BookkeepingObject();
    ~BookkeepingObject() override;

    // Rows of values are arrays: Array("商品编号=01001", "商品名称=水泥").
    Variant NewBook(Arguments arguments);
    Variant Open(Arguments arguments);
    Variant Close(Arguments arguments);
    Variant Cnn(Arguments arguments);
    Variant LogIn(Arguments arguments);
    Variant Answer(Arguments arguments);
    Variant SetAnswer(Arguments arguments);
    Variant AddMaster(Arguments arguments);
    Variant EnterOpening(Arguments arguments);
    Variant EnterBill(Arguments arguments);
    Variant CloseMonth(Arguments arguments);
    Variant ReopenMonth(Arguments arguments);
    Variant Check(Arguments arguments);

private:
    class ScriptHost;

    /// Error 91 while no book is open.
    const BookPtr& Opened() const;
    void Require(const std::string& right) const;
    void Log(const std::string& what) const;
    std::optional<std::int32_t> WarehouseOf(const Variant& argument) const;

    Pointer<ConnectionObject> connection_;
    std::shared_ptr<ScriptHost> host_;
    std::optional<bookkeeping::ActingOperator> acting_;
};

}  // namespace kpTables::com
