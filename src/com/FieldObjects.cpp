#include "com/FieldObjects.h"

#include <oleauto.h>

#include <memory>
#include <vector>

#include "com/AdoTypes.h"
#include "com/Enumerator.h"
#include "com/Failure.h"
#include "com/Value.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

class FieldObject final : public Scriptable {
public:
    FieldObject(Pointer<RecordsetObject> recordset, int index)
        : Scriptable(FieldInterface()), recordset_(std::move(recordset)), index_(index) {}

    Variant ReadValue(Arguments) { return recordset_->Rows().GetValue(index_); }
    Variant WriteValue(Arguments arguments) {
        recordset_->Rows().SetValue(index_, arguments[0]);
        return {};
    }
    Variant Name(Arguments) { return recordset_->Rows().FieldAt(index_).name; }
    Variant Type(Arguments) { return AdoType(recordset_->Rows().FieldAt(index_).type); }

private:
    static const Interface& FieldInterface() {
        using F = FieldObject;
        static const Interface members(kLateBoundOnly, "Field",
                                       {
                                           Get<&F::ReadValue>("Value", DISPID_VALUE),
                                           Let<&F::WriteValue>("Value", DISPID_VALUE),
                                           Get<&F::Name>("Name", 1),
                                           Get<&F::Type>("Type", 2),
                                       });
        return members;
    }

    Pointer<RecordsetObject> recordset_;
    int index_;
};

struct VariantTraits {
    using Interface = IEnumVARIANT;
    using Item = VARIANT;
    using Held = Variant;
    static const IID& Iid() { return IID_IEnumVARIANT; }
    static void Give(const Held& held, Item* item) { Value(held).MoveTo(item); }
};

class FieldsObject final : public Scriptable {
public:
    explicit FieldsObject(Pointer<RecordsetObject> recordset)
        : Scriptable(FieldsInterface()), recordset_(std::move(recordset)) {}

    Variant Item(Arguments arguments) {
        Recordset& rows = recordset_->Rows();
        int index = 0;
        if (const auto* name = arguments[0].If<std::string>()) {
            index = rows.FieldIndex(*name);
        } else {
            index = CLng(arguments[0]);
            rows.FieldAt(index);
        }
        return FieldAt(index);
    }
    Variant Count(Arguments) { return static_cast<std::int32_t>(recordset_->Rows().FieldCount()); }
    Variant Enumerate(Arguments) {
        std::vector<Variant> fields;
        for (int i = 0; i < recordset_->Rows().FieldCount(); ++i) fields.push_back(FieldAt(i));
        return std::make_shared<OwnEnumerator>(Pointer<IUnknown>::Attach(
            new Enumerator<VariantTraits>(std::make_shared<const std::vector<Variant>>(std::move(fields)))));
    }

private:
    Variant FieldAt(int index) { return Give(Make<FieldObject>(recordset_, index)); }

    static const Interface& FieldsInterface() {
        using F = FieldsObject;
        static const Interface members(kLateBoundOnly, "Fields",
                                       {
                                           Get<&F::Item>("Item", DISPID_VALUE, {"Index"}),
                                           Get<&F::Count>("Count", 1),
                                           Get<&F::Enumerate>("_NewEnum", DISPID_NEWENUM),
                                       });
        return members;
    }

    Pointer<RecordsetObject> recordset_;
};

}  // namespace

Variant FieldsOf(RecordsetObject& recordset) { return Give(Make<FieldsObject>(Pointer<RecordsetObject>(&recordset))); }

}  // namespace kpTables::com
