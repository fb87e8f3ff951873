// Errors at the border: exceptions within, HRESULTs with a description outside.
#pragma once

#include <oaidl.h>

#include <string>

namespace kpTables::com {

// To be called while an exception is handled.
/// Fills info (which may be null) for IDispatch::Invoke, and answers DISP_E_EXCEPTION.
HRESULT ReportFailure(EXCEPINFO* info) noexcept;
/// Sets the thread's error object, and answers the error's own HRESULT: 0x800A0000 and the number of a run-time error,
/// a database's as it is.
HRESULT ReturnFailure() noexcept;

/// Raises the Error that a call of another object answered with. info may be empty; member is what was called.
[[noreturn]] void RaiseFailure(HRESULT result, EXCEPINFO& info, const std::string& member);
/// The same for a call that is not through IDispatch::Invoke.
[[noreturn]] void RaiseResult(HRESULT result, const std::string& what);

/// Runs a method of an interface: no exception leaves it.
template <class Function>
HRESULT Returned(Function function) noexcept {
    try {
        return function();
    } catch (...) {
        return ReturnFailure();
    }
}

}  // namespace kpTables::com
