// C++, late bound, without registration: Stock BOOK MONTH prints a month's closing stock. kpTables.dll lies beside the
// program.
//   cl /utf-8 /EHsc Stock.cpp lib\x64\kpTables.lib ole32.lib oleaut32.lib uuid.lib
//   x86_64-w64-mingw32-g++ -municode -static Stock.cpp lib/x64/kpTables.lib -loleaut32 -lole32 -luuid -o Stock.exe
#include <windows.h>
// After windows.h, on which they build.
#include <oleauto.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** object);

/// What a member raised or answered as an error.
struct Failure {
    HRESULT result;
    std::wstring description;
};

/// A VARIANT that frees what it holds.
class Value {
public:
    Value() { VariantInit(&variant_); }
    explicit Value(long number) : Value() { variant_.vt = VT_I4, variant_.lVal = number; }
    explicit Value(const wchar_t* text) : Value() { variant_.vt = VT_BSTR, variant_.bstrVal = SysAllocString(text); }
    Value(const Value& other) : Value() { VariantCopy(&variant_, const_cast<VARIANT*>(&other.variant_)); }
    Value& operator=(const Value& other) {
        return VariantCopy(&variant_, const_cast<VARIANT*>(&other.variant_)), *this;
    }
    ~Value() { VariantClear(&variant_); }

    VARIANT* Get() { return &variant_; }
    bool IsTrue() const { return variant_.vt == VT_BOOL && variant_.boolVal != VARIANT_FALSE; }
    std::wstring Text() {
        Value text;
        if (FAILED(VariantChangeType(text.Get(), &variant_, 0, VT_BSTR))) return L"";
        return {text.variant_.bstrVal, SysStringLen(text.variant_.bstrVal)};
    }

    /// Calls a member of the object by its name, or reads or sets a property.
    Value Call(const wchar_t* name, std::vector<Value> arguments = {},
               WORD kind = DISPATCH_METHOD | DISPATCH_PROPERTYGET) {
        DISPID id = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
        auto* const names = const_cast<wchar_t*>(name);
        HRESULT result =
            variant_.pdispVal->GetIDsOfNames(IID_NULL, const_cast<wchar_t**>(&names), 1, LOCALE_USER_DEFAULT, &id);
        if (FAILED(result)) throw Failure{result, name};
        std::vector<VARIANT> given;
        for (auto each = arguments.rbegin(); each != arguments.rend(); ++each) given.push_back(*each->Get());
        DISPPARAMS parameters = {given.data(), nullptr, static_cast<UINT>(given.size()), 0};
        if (kind == DISPATCH_PROPERTYPUTREF) parameters.rgdispidNamedArgs = &put, parameters.cNamedArgs = 1;
        EXCEPINFO raised = {};
        Value answer;
        result = variant_.pdispVal->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, answer.Get(), &raised,
                                           nullptr);
        if (result == DISP_E_EXCEPTION) throw Failure{raised.scode, raised.bstrDescription};
        if (FAILED(result)) throw Failure{result, name};
        return answer;
    }

private:
    VARIANT variant_;
};

/// A new object of a class of the server; its ids are in docs/com.md.
Value Create(const wchar_t* id) {
    CLSID known = {};
    CLSIDFromString(const_cast<wchar_t*>(id), &known);
    IClassFactory* factory = nullptr;
    HRESULT result = DllGetClassObject(known, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    Value made;
    if (SUCCEEDED(result)) {
        result = factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&made.Get()->pdispVal));
        factory->Release();
    }
    if (FAILED(result)) throw Failure{result, id};
    made.Get()->vt = VT_DISPATCH;
    return made;
}

void Print(const std::wstring& text, std::FILE* file = stdout) {
    std::vector<char> bytes(text.size() * 3 + 1);
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    std::fputs(bytes.data(), file);
}

void PrintStock(const wchar_t* book, long month) {
    Value connection = Create(L"{e744eaaa-fccc-4af3-819e-d53f60e8d5f5}");
    connection.Call(L"Open", {Value(book)});
    Value tables = Create(L"{c8cabaad-a1c5-4b2d-9121-1d8f0837f23e}");
    tables.Call(L"Cnn", {connection}, DISPATCH_PROPERTYPUTREF);
    Value rows = tables.Call(L"rs余额记录", {Value(0L), Value(month)});
    for (; !rows.Call(L"EOF").IsTrue(); rows.Call(L"MoveNext")) {
        std::wstring line;
        for (const wchar_t* column : {L"商品编号", L"商品名称", L"本期库存数量", L"本期库存金额"})
            line += rows.Call(L"Fields", {Value(column)}).Call(L"Value").Text() + L" ";
        Print(line + L"\n");
    }
    rows.Call(L"Close");
    connection.Call(L"Close");
}

int wmain(int count, wchar_t** words) {
    if (count != 3) return 2;
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int code = 0;
    try {
        PrintStock(words[1], std::wcstol(words[2], nullptr, 10));
    } catch (const Failure& failure) {
        Print(failure.description + L"\n", stderr);
        code = 1;
    }
    CoUninitialize();
    return code;
}
