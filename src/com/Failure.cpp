#include "com/Failure.h"

#include <oleauto.h>

#include <exception>
#include <new>

#include "com/Pointer.h"
#include "com/Utf16.h"
#include "kpTables/Error.h"

namespace kpTables::com {
namespace {

/// FACILITY_CONTROL: the low word is a number of Visual Basic's.
constexpr std::uint32_t kRunTimeError = 0x800A0000;
constexpr std::uint32_t kFacilityMask = 0xFFFF0000;
constexpr const char* kSource = "kpTables";

struct Fault {
    HRESULT code = E_FAIL;
    std::string description = {};
    std::string source = kSource;
};

HRESULT CodeOf(std::int32_t number) {
    if (number < 0) return number;
    return static_cast<HRESULT>(kRunTimeError | static_cast<std::uint32_t>(number));
}

std::int32_t NumberOf(HRESULT code) {
    const auto bits = static_cast<std::uint32_t>(code);
    return (bits & kFacilityMask) == kRunTimeError ? static_cast<std::int32_t>(bits & ~kFacilityMask) : code;
}

Fault CurrentFault() {
    try {
        throw;
    } catch (const Error& error) {
        return {CodeOf(error.Number()), error.Description(), error.Source()};
    } catch (const std::bad_alloc&) {
        return {E_OUTOFMEMORY, "Out of memory"};
    } catch (const std::exception& error) {
        return {E_FAIL, error.what()};
    } catch (...) {
        return {};
    }
}

BSTR BstrOf(const std::string& text) {
    const std::wstring utf16 = ToUtf16(text);
    return SysAllocStringLen(utf16.data(), static_cast<UINT>(utf16.size()));
}

/// What Visual Basic makes of the results of IDispatch itself.
std::int32_t NumberOfDispatchResult(HRESULT result) {
    switch (result) {
        case DISP_E_UNKNOWNNAME:
        case DISP_E_MEMBERNOTFOUND:
        case DISP_E_UNKNOWNINTERFACE:
            return static_cast<std::int32_t>(ErrorNumber::UnknownMember);
        case DISP_E_PARAMNOTFOUND:
        case DISP_E_NONAMEDARGS:
        case DISP_E_BADPARAMCOUNT:
            return static_cast<std::int32_t>(ErrorNumber::WrongArgumentCount);
        case DISP_E_PARAMNOTOPTIONAL:
            return static_cast<std::int32_t>(ErrorNumber::ArgumentNotOptional);
        case DISP_E_TYPEMISMATCH:
        case DISP_E_BADVARTYPE:
            return static_cast<std::int32_t>(ErrorNumber::TypeMismatch);
        case DISP_E_OVERFLOW:
            return static_cast<std::int32_t>(ErrorNumber::Overflow);
        case DISP_E_BADINDEX:
            return static_cast<std::int32_t>(ErrorNumber::SubscriptOutOfRange);
        case DISP_E_DIVBYZERO:
            return static_cast<std::int32_t>(ErrorNumber::DivisionByZero);
        default:
            return 0;
    }
}

std::string SystemText(HRESULT result) {
    wchar_t* text = nullptr;
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                       nullptr, static_cast<DWORD>(result), 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::string description = ToUtf8({text, length});
    LocalFree(text);
    while (!description.empty() && static_cast<unsigned char>(description.back()) <= ' ') description.pop_back();
    return description.empty() ? "Automation error" : description;
}

std::string TakeBstr(BSTR& bstr) {
    std::string text = bstr ? ToUtf8({bstr, SysStringLen(bstr)}) : std::string();
    SysFreeString(bstr);
    bstr = nullptr;
    return text;
}

}  // namespace

HRESULT ReportFailure(EXCEPINFO* info) noexcept {
    try {
        const Fault fault = CurrentFault();
        if (info) {
            *info = {};
            info->scode = fault.code;
            info->bstrDescription = BstrOf(fault.description);
            info->bstrSource = BstrOf(fault.source);
        }
        return DISP_E_EXCEPTION;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT ReturnFailure() noexcept {
    try {
        const Fault fault = CurrentFault();
        Pointer<ICreateErrorInfo> made;
        if (SUCCEEDED(CreateErrorInfo(made.Receive()))) {
            made->SetDescription(ToUtf16(fault.description).data());
            made->SetSource(ToUtf16(fault.source).data());
            if (const auto info = Query<IErrorInfo>(made.Get(), IID_IErrorInfo)) SetErrorInfo(0, info.Get());
        }
        return fault.code;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

void RaiseFailure(HRESULT result, EXCEPINFO& info, const std::string& member) {
    if (result != DISP_E_EXCEPTION) {
        if (const std::int32_t number = NumberOfDispatchResult(result)) Raise(static_cast<ErrorNumber>(number), member);
        RaiseResult(result, member);
    }
    if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
    std::string description = TakeBstr(info.bstrDescription);
    std::string source = TakeBstr(info.bstrSource);
    TakeBstr(info.bstrHelpFile);
    const std::int32_t number = info.wCode != 0 ? info.wCode : NumberOf(info.scode);
    if (description.empty()) description = SystemText(info.scode);
    throw Error(number, description, source.empty() ? kSource : source);
}

void RaiseResult(HRESULT result, const std::string& what) {
    throw Error(NumberOf(result), SystemText(result) + ": " + what);
}

}  // namespace kpTables::com
