#include "AdoDouble.h"

#include <gtest/gtest.h>

#include <utility>

#include "com/Classes.h"
#include "com/HostObject.h"
#include "com/Ids.h"
#include "com/RecordsetObject.h"
#include "com/Scriptable.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables::test {
namespace {

using com::Arguments;
using com::Interface;

/// The double's class, to which the test's prefix redirects ADODB.Recordset.
constexpr CLSID kDoubleClass = {0x5f1f3a52, 0x9f1d, 0x4c38, {0x9a, 0x51, 0x6e, 0x0d, 0x2b, 0x7c, 0x11, 0x42}};
constexpr IID kNoInterface = {};

class ConnectionDouble final : public com::Scriptable, public com::INative {
public:
    explicit ConnectionDouble(ConnectionPtr connection) : Scriptable(Members()), connection_(std::move(connection)) {}

    ULONG STDMETHODCALLTYPE AddRef() override { return Scriptable::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Scriptable::Release(); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid == com::kNativeIid) return com::Answer(static_cast<com::INative*>(this), object);
        return Scriptable::QueryInterface(iid, object);
    }
    /// For the recordsets' double, which opens itself on it; the server is another module.
    void STDMETHODCALLTYPE GetNative(HINSTANCE caller, ObjectPtr* object) override {
        if (caller == com::Module()) *object = connection_;
    }

    Variant Execute(Arguments arguments) {
        EXPECT_TRUE(arguments[1].IsMissing());
        EXPECT_TRUE(arguments[2].Is(-1));
        const RecordsetPtr rows = connection_->Execute(CStr(arguments[0]));
        return rows ? Variant(rows) : Variant(nullptr);
    }
    Variant BeginTrans(Arguments) { return static_cast<std::int32_t>(connection_->BeginTrans()); }
    Variant CommitTrans(Arguments) {
        connection_->CommitTrans();
        return {};
    }
    Variant RollbackTrans(Arguments) {
        connection_->RollbackTrans();
        return {};
    }

private:
    static const Interface& Members() {
        using C = ConnectionDouble;
        static const Interface members(
            kNoInterface, "Connection",
            {com::Method<&C::Execute>("Execute", 1, {"CommandText", "RecordsAffected?&", "Options?"}),
             com::Method<&C::BeginTrans>("BeginTrans", 2), com::Method<&C::CommitTrans>("CommitTrans", 3),
             com::Method<&C::RollbackTrans>("RollbackTrans", 4)});
        return members;
    }

    ConnectionPtr connection_;
};

class GridDouble final : public com::Scriptable {
public:
    explicit GridDouble(GridPtr grid) : Scriptable(Members()), grid_(std::move(grid)) {}

    Variant Cols(Arguments) { return grid_->Cols(); }
    Variant SetCols(Arguments arguments) {
        return Done([&] { grid_->SetCols(CLng(arguments[0])); });
    }
    Variant Rows(Arguments) { return grid_->Rows(); }
    Variant FixedRows(Arguments) { return grid_->FixedRows(); }
    Variant ColKey(Arguments arguments) { return grid_->ColKey(CLng(arguments[0])); }
    Variant SetColKey(Arguments arguments) {
        return Done([&] { grid_->SetColKey(CLng(arguments[0]), CStr(arguments[1])); });
    }
    Variant ColIndex(Arguments arguments) { return grid_->ColIndex(CStr(arguments[0])); }
    Variant SetColPosition(Arguments arguments) {
        return Done([&] { grid_->SetColPosition(CLng(arguments[0]), CLng(arguments[1])); });
    }
    Variant ColHidden(Arguments arguments) { return grid_->ColHidden(CLng(arguments[0])); }
    Variant SetColHidden(Arguments arguments) {
        return Done([&] { grid_->SetColHidden(CLng(arguments[0]), CBool(arguments[1])); });
    }
    Variant ColWidth(Arguments arguments) { return grid_->ColWidth(CLng(arguments[0])); }
    Variant SetColWidth(Arguments arguments) {
        return Done([&] { grid_->SetColWidth(CLng(arguments[0]), CDbl(arguments[1])); });
    }
    Variant TextMatrix(Arguments arguments) { return grid_->TextMatrix(CLng(arguments[0]), CLng(arguments[1])); }
    Variant SetTextMatrix(Arguments arguments) {
        return Done([&] { grid_->SetTextMatrix(CLng(arguments[0]), CLng(arguments[1]), CStr(arguments[2])); });
    }
    Variant ValueMatrix(Arguments arguments) { return grid_->ValueMatrix(CLng(arguments[0]), CLng(arguments[1])); }

private:
    template <class Action>
    static Variant Done(Action action) {
        action();
        return {};
    }
    static const Interface& Members() {
        using G = GridDouble;
        static const Interface members(
            kNoInterface, "Grid",
            {com::Get<&G::Cols>("Cols", 1), com::Let<&G::SetCols>("Cols", 1), com::Get<&G::Rows>("Rows", 2),
             com::Get<&G::FixedRows>("FixedRows", 3), com::Get<&G::ColKey>("ColKey", 4, {"col"}),
             com::Let<&G::SetColKey>("ColKey", 4, {"col", "value"}), com::Method<&G::ColIndex>("ColIndex", 5, {"key"}),
             com::Let<&G::SetColPosition>("ColPosition", 6, {"col", "value"}),
             com::Get<&G::ColHidden>("ColHidden", 7, {"col"}),
             com::Let<&G::SetColHidden>("ColHidden", 7, {"col", "value"}),
             com::Get<&G::ColWidth>("ColWidth", 8, {"col"}), com::Let<&G::SetColWidth>("ColWidth", 8, {"col", "value"}),
             com::Get<&G::TextMatrix>("TextMatrix", 9, {"row", "col"}),
             com::Let<&G::SetTextMatrix>("TextMatrix", 9, {"row", "col", "value"}),
             com::Get<&G::ValueMatrix>("ValueMatrix", 10, {"row", "col"})});
        return members;
    }

    GridPtr grid_;
};

class BarDouble final : public com::Scriptable {
public:
    explicit BarDouble(std::shared_ptr<ProgressBar> bar) : Scriptable(Members()), bar_(std::move(bar)) {}

    Variant SetVisible(Arguments arguments) {
        bar_->SetVisible(CBool(arguments[0]));
        return {};
    }
    Variant SetValue(Arguments arguments) {
        bar_->SetValue(CDbl(arguments[0]));
        return {};
    }

private:
    static const Interface& Members() {
        using B = BarDouble;
        static const Interface members(kNoInterface, "ProgressBar",
                                       {com::Let<&B::SetVisible>("Visible", 1), com::Let<&B::SetValue>("Value", 2)});
        return members;
    }

    std::shared_ptr<ProgressBar> bar_;
};

template <class T, class Native>
com::Pointer<IDispatch> MakeDouble(Native native) {
    return com::Pointer<IDispatch>(static_cast<IDispatch*>(com::Make<T>(std::move(native)).Get()));
}

}  // namespace

com::Pointer<IDispatch> MakeConnectionDouble(ConnectionPtr connection) {
    return MakeDouble<ConnectionDouble>(std::move(connection));
}

com::Pointer<IDispatch> MakeGridDouble(GridPtr grid) { return MakeDouble<GridDouble>(std::move(grid)); }

com::Pointer<IDispatch> MakeBarDouble(std::shared_ptr<ProgressBar> bar) {
    return MakeDouble<BarDouble>(std::move(bar));
}

Variant HostsOwn(const Variant& value) {
    const auto* const object = value.If<ObjectPtr>();
    if (!object) return value;
    if (auto grid = std::dynamic_pointer_cast<Grid>(*object)) return com::Give(MakeGridDouble(std::move(grid)));
    if (auto bar = std::dynamic_pointer_cast<ProgressBar>(*object)) return com::Give(MakeBarDouble(std::move(bar)));
    return value;
}

AdoRecordsetClass::AdoRecordsetClass() {
    const auto factory = com::FactoryOf(com::kRecordsetClass);
    EXPECT_EQ(CoRegisterClassObject(kDoubleClass, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_),
              S_OK);
}

AdoRecordsetClass::~AdoRecordsetClass() { CoRevokeClassObject(cookie_); }

}  // namespace kpTables::test
