// The virtual table of _CTables, made from the same rows as the late-bound table.
#include <vector>

#include "com/TablesObject.h"
#include "com/Thunk.h"
#include "kpTables/LateBoundRows.h"

namespace kpTables::com {
namespace {

/// A function of the virtual table, and where it keeps the number of its row.
struct FunctionRow {
    const void* function;
    std::size_t* number;
};

template <auto kFunction, class Result, class... P>
FunctionRow FunctionOf(Result (CTables::*)(P...)) {
    using Made = Thunk<kFunction, Result, P...>;
    return {reinterpret_cast<const void*>(&Made::Call), &Made::row};
}
template <auto kFunction, class Result, class... P>
FunctionRow FunctionOf(Result (CTables::*)(P...) const) {
    using Made = Thunk<kFunction, Result, P...>;
    return {reinterpret_cast<const void*>(&Made::Call), &Made::row};
}

struct MakeFunction {
    using Row = FunctionRow;
    template <auto kFunction, class... Name>
    static Row Method(std::string_view, std::string_view, Name...) {
        return FunctionOf<kFunction>(kFunction);
    }
    template <auto kFunction, class... Name>
    static Row Accessor(std::string_view, latebound::MemberKind, std::string_view, Name...) {
        return FunctionOf<kFunction>(kFunction);
    }
    static void SetSubsystem(Row&, std::string_view) {}
};

HRESULT STDMETHODCALLTYPE FaceQueryInterface(DualFace* face, REFIID iid, void** object) {
    return face->owner->QueryInterface(iid, object);
}
ULONG STDMETHODCALLTYPE FaceAddRef(DualFace* face) { return face->owner->AddRef(); }
ULONG STDMETHODCALLTYPE FaceRelease(DualFace* face) { return face->owner->Release(); }
HRESULT STDMETHODCALLTYPE FaceGetTypeInfoCount(DualFace* face, UINT* count) {
    return face->owner->GetTypeInfoCount(count);
}
HRESULT STDMETHODCALLTYPE FaceGetTypeInfo(DualFace* face, UINT number, LCID locale, ITypeInfo** info) {
    return face->owner->GetTypeInfo(number, locale, info);
}
HRESULT STDMETHODCALLTYPE FaceGetIDsOfNames(DualFace* face, REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) {
    return face->owner->GetIDsOfNames(iid, names, count, locale, ids);
}
HRESULT STDMETHODCALLTYPE FaceInvoke(DualFace* face, DISPID id, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info, UINT* wrong) {
    return face->owner->Invoke(id, iid, locale, flags, parameters, result, info, wrong);
}

std::vector<const void*> MakeFunctions() {
    std::vector<const void*> functions = {
        reinterpret_cast<const void*>(&FaceQueryInterface), reinterpret_cast<const void*>(&FaceAddRef),
        reinterpret_cast<const void*>(&FaceRelease),        reinterpret_cast<const void*>(&FaceGetTypeInfoCount),
        reinterpret_cast<const void*>(&FaceGetTypeInfo),    reinterpret_cast<const void*>(&FaceGetIDsOfNames),
        reinterpret_cast<const void*>(&FaceInvoke)};
    std::size_t number = 0;
    for (const FunctionRow& row : latebound::AllRows<MakeFunction>()) {
        *row.number = number++;
        functions.push_back(row.function);
    }
    return functions;
}

}  // namespace

const void* const* TablesFunctions() {
    static const std::vector<const void*> functions = MakeFunctions();
    return functions.data();
}

}  // namespace kpTables::com
