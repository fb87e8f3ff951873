// Writes the type library into the two folders of a package: kpTablesTypeLibrary FOLDER-FOR-64-BITS FOLDER-FOR-32-BITS.
#include <objbase.h>
#include <windows.h>

#include <cstdio>
#include <filesystem>

#include "com/TypeLibrary.h"

int wmain(int count, wchar_t** words) {
    constexpr UINT kCodePage = 936;
    if (count != 3) {
        std::fputs("usage: kpTablesTypeLibrary FOLDER-FOR-64-BITS FOLDER-FOR-32-BITS\n", stderr);
        return 2;
    }
    // The program's manifest asks for it.
    if (GetACP() != kCodePage) {
        std::fprintf(stderr, "the type library is written under code page 936, not %u\n", GetACP());
        return 1;
    }
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    HRESULT result = S_OK;
    for (const auto& [folder, system] : {std::pair(words[1], SYS_WIN64), std::pair(words[2], SYS_WIN32)}) {
        if (SUCCEEDED(result))
            result = kpTables::com::WriteTypeLibrary(std::filesystem::path(folder) / L"kpTables.tlb", system);
    }
    CoUninitialize();
    if (SUCCEEDED(result)) return 0;
    std::fprintf(stderr, "the type library cannot be written: %08lx\n", static_cast<unsigned long>(result));
    return 1;
}
