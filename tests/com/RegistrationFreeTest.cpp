// The server without registration, by the manifest that a program carries.
#include <gtest/gtest.h>
#include <oleauto.h>
#include <windows.h>

#include <filesystem>
#include <fstream>

#include "Client.h"
#include "com/Ids.h"

namespace kpTables::test {
namespace {

/// A folder with the server and its manifest under the name of an assembly, gone at the end.
class PrivateAssembly {
public:
    PrivateAssembly() {
        Create(L"kpTables.CTables");
        wchar_t server[MAX_PATH];
        EXPECT_NE(GetModuleFileNameW(GetModuleHandleW(L"kpTables.dll"), server, MAX_PATH), 0u);
        std::filesystem::create_directories(folder_);
        std::filesystem::copy_file(server, folder_ / L"kpTables.dll", kReplace);
        std::filesystem::copy_file(KPTABLES_MANIFEST, folder_ / L"kpTables.manifest", kReplace);
        std::ofstream(folder_ / L"program.manifest")
            << R"(<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">)"
            << R"(<assemblyIdentity type="win32" name="program" version="1.0.0.0"/><dependency><dependentAssembly>)"
            << R"(<assemblyIdentity type="win32" name="kpTables" version="1.0.0.110"/>)"
            << R"(</dependentAssembly></dependency></assembly>)";
    }
    ~PrivateAssembly() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    const std::filesystem::path& Folder() const { return folder_; }

private:
    static constexpr auto kReplace = std::filesystem::copy_options::overwrite_existing;
    std::filesystem::path folder_ = std::filesystem::temp_directory_path() / L"kpTables-private";
};

TEST(RegistrationFree, TheManifestFindsTheServerBesideTheProgram) {
    const PrivateAssembly assembly;
    const std::wstring manifest = (assembly.Folder() / L"program.manifest").wstring();
    ACTCTXW description = {};
    description.cbSize = sizeof description;
    description.lpSource = manifest.data();
    const HANDLE context = CreateActCtxW(&description);
    ASSERT_NE(context, INVALID_HANDLE_VALUE) << GetLastError();
    ULONG_PTR cookie = 0;
    ASSERT_TRUE(ActivateActCtx(context, &cookie));
    {
        com::Pointer<IDispatch> tables;
        EXPECT_EQ(
            CoCreateInstance(com::kTablesClass, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, tables.ReceiveAny()),
            S_OK);
        EXPECT_TRUE(GetModuleHandleW((assembly.Folder() / L"kpTables.dll").c_str())) << "the private one";
        ASSERT_TRUE(tables);
        EXPECT_TRUE(CallByName(tables.Get(), "Version").value.Is("10110"));
    }
    DeactivateActCtx(0, cookie);
    ReleaseActCtx(context);
}

}  // namespace
}  // namespace kpTables::test
