// The tests of the server, which is registered when they run.
#include <gtest/gtest.h>
#include <objbase.h>
#include <windows.h>

#include "com/Module.h"

int main(int argc, char** argv) {
    kpTables::com::SetModule(GetModuleHandleW(nullptr));
    testing::InitGoogleTest(&argc, argv);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const int failed = RUN_ALL_TESTS();
    CoUninitialize();
    return failed;
}
