#include "com/SystemHost.h"

#include <windows.h>

#include <vector>

#include "com/Module.h"
#include "com/Utf16.h"
#include "kpTables/Error.h"

namespace kpTables::com {

MessageAnswer SystemHost::MsgBox(const std::string& text, MessageButtons buttons, const std::string& title) {
    const HWND owner = GetActiveWindow();
    const UINT style = static_cast<UINT>(buttons) | (owner ? MB_APPLMODAL : MB_TASKMODAL);
    const int answer = MessageBoxW(owner, ToUtf16(text).data(), ToUtf16(title).data(), style);
    if (answer == 0) Raise(ErrorNumber::InvalidCall, "the message box \"" + title + "\" cannot be shown: " + text);
    return static_cast<MessageAnswer>(answer);
}

VersionNumber SystemHost::ComponentVersion() {
    const std::wstring path = ModulePath();
    std::vector<char> record(GetFileVersionInfoSizeW(path.data(), nullptr));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT size = 0;
    if (record.empty() || !GetFileVersionInfoW(path.data(), 0, static_cast<DWORD>(record.size()), record.data()) ||
        !VerQueryValueW(record.data(), L"\\", reinterpret_cast<void**>(&fixed), &size))
        Raise(ErrorNumber::InvalidCall, "no version record: " + ToUtf8(path));
    return {HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS), HIWORD(fixed->dwFileVersionLS),
            LOWORD(fixed->dwFileVersionLS)};
}

}  // namespace kpTables::com
