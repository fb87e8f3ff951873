// Events, references, unloading, threads, and what many calls leave behind.
#include <gtest/gtest.h>
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <thread>

#include "AdoDouble.h"
#include "Client.h"
#include "com/Ids.h"
#include "com/Object.h"
#include "com/Scriptable.h"
#include "com/Value.h"
#include "kpTables/Convert.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {
namespace {

/// Writes down what it is told.
class Listener final : public com::Scriptable {
public:
    Listener() : Scriptable(Members()) {}
    Variant TableChanged(com::Arguments arguments) {
        heard.push_back(Text(arguments[0]) + "," + Text(arguments[1]) + "," + Text(arguments[2]));
        if (then) then();
        return {};
    }
    std::vector<std::string> heard;
    std::function<void()> then;

private:
    static const com::Interface& Members() {
        static const com::Interface members(
            com::kTablesEvents, "__CTables",
            {com::Method<&Listener::TableChanged>("TableChanged", 1, {"ProcName", "TableName", "ID"})});
        return members;
    }
};

com::Pointer<IConnectionPoint> PointOf(IDispatch* tables) {
    const auto container = com::Query<IConnectionPointContainer>(tables, IID_IConnectionPointContainer);
    com::Pointer<IConnectionPoint> point;
    EXPECT_EQ(container->FindConnectionPoint(com::kTablesEvents, point.Receive()), S_OK);
    return point;
}

void Update(IDispatch* tables) {
    std::vector<Variant> arguments = {"rs仓库列表", "仓库设置", 5};
    const CallOutcome outcome = CallByName(tables, "Update", arguments);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_TRUE(outcome.value.IsEmpty());
}

TEST(Life, ListenersHearUpdate) {
    const auto tables = Create(L"kpTables.CTables");
    const auto point = PointOf(tables.Get());
    const auto first = com::Make<Listener>(), second = com::Make<Listener>();
    DWORD one = 0, two = 0;
    Update(tables.Get());
    ASSERT_EQ(point->Advise(static_cast<IDispatch*>(first.Get()), &one), S_OK);
    ASSERT_EQ(point->Advise(static_cast<IDispatch*>(second.Get()), &two), S_OK);
    Update(tables.Get());
    EXPECT_EQ(first->heard, std::vector<std::string>{"rs仓库列表,仓库设置,5"});
    EXPECT_EQ(second->heard, first->heard);

    com::Pointer<IEnumConnections> connections;
    ASSERT_EQ(point->EnumConnections(connections.Receive()), S_OK);
    CONNECTDATA data[3] = {};
    ULONG fetched = 0;
    EXPECT_EQ(connections->Next(3, data, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(data[0].dwCookie, one);
    for (ULONG i = 0; i < fetched; ++i) data[i].pUnk->Release();

    // A listener may leave while it is called.
    first->then = [&] { EXPECT_EQ(point->Unadvise(one), S_OK); };
    Update(tables.Get());
    Update(tables.Get());
    EXPECT_EQ(first->heard.size(), 2u);
    EXPECT_EQ(second->heard.size(), 3u);
    EXPECT_EQ(point->Unadvise(one), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point->Unadvise(two), S_OK);
}

TEST(Life, TheConnectionPointIsFoundAndListed) {
    const auto tables = Create(L"kpTables.CTables");
    const auto container = com::Query<IConnectionPointContainer>(tables.Get(), IID_IConnectionPointContainer);
    ASSERT_TRUE(container);
    com::Pointer<IConnectionPoint> point;
    EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, point.Receive()), CONNECT_E_NOCONNECTION);
    com::Pointer<IEnumConnectionPoints> points;
    ASSERT_EQ(container->EnumConnectionPoints(points.Receive()), S_OK);
    ULONG fetched = 0;
    ASSERT_EQ(points->Next(1, point.Receive(), &fetched), S_OK);
    IID iid = {};
    EXPECT_EQ(point->GetConnectionInterface(&iid), S_OK);
    EXPECT_EQ(iid, com::kTablesEvents);
    EXPECT_EQ(points->Next(1, point.Receive(), &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
}

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
using CanUnload = HRESULT(STDAPICALLTYPE*)();

template <class Function>
Function Entry(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// A copy of the server's file, so that nothing else has it loaded.
std::filesystem::path CopyOfServer() {
    Create(L"kpTables.CTables");
    wchar_t path[MAX_PATH];
    EXPECT_NE(GetModuleFileNameW(GetModuleHandleW(L"kpTables.dll"), path, MAX_PATH), 0u);
    auto copy = std::filesystem::temp_directory_path() / L"kpTables-copy.dll";
    std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
    return copy;
}

/// Goes through the reasons that keep the server loaded.
void UseServer(HMODULE module) {
    const auto getClassObject = Entry<GetClassObject>(module, "DllGetClassObject");
    const auto canUnload = Entry<CanUnload>(module, "DllCanUnloadNow");
    EXPECT_EQ(canUnload(), S_OK);
    {
        com::Pointer<IClassFactory> factory;
        EXPECT_EQ(getClassObject(com::kTablesEvents, IID_IClassFactory, factory.ReceiveAny()),
                  CLASS_E_CLASSNOTAVAILABLE);
        ASSERT_EQ(getClassObject(com::kTablesClass, IID_IClassFactory, factory.ReceiveAny()), S_OK);
        EXPECT_EQ(canUnload(), S_FALSE) << "a factory";
        com::Pointer<IDispatch> tables;
        EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IUnknown, tables.ReceiveAny()), CLASS_E_NOAGGREGATION);
        ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, tables.ReceiveAny()), S_OK);
        factory = nullptr;
        EXPECT_EQ(canUnload(), S_FALSE) << "an object";
        EXPECT_TRUE(CallByName(tables.Get(), "Version").value.Is("10110"));
        // An error that a method traps is kept for the thread.
        EXPECT_TRUE(CallByName(tables.Get(), "SetDefaultSFK").value.Is(false));
        const auto point = PointOf(tables.Get());
        tables = nullptr;
        EXPECT_EQ(canUnload(), S_FALSE) << "its connection point";
    }
    EXPECT_EQ(canUnload(), S_OK);
    com::Pointer<IClassFactory> factory;
    getClassObject(com::kTablesClass, IID_IClassFactory, factory.ReceiveAny());
    factory->LockServer(TRUE);
    factory = nullptr;
    EXPECT_EQ(canUnload(), S_FALSE) << "a lock";
    getClassObject(com::kTablesClass, IID_IClassFactory, factory.ReceiveAny());
    factory->LockServer(FALSE);
    factory = nullptr;
    EXPECT_EQ(canUnload(), S_OK);
}

TEST(Life, TheServerUnloadsWhenNothingIsLeft) {
    const auto copy = CopyOfServer();
    const HMODULE module = LoadLibraryW(copy.c_str());
    ASSERT_TRUE(module);
    // What a method trapped keeps the module loaded for as long as its thread runs.
    std::thread(UseServer, module).join();
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_FALSE(GetModuleHandleW(L"kpTables-copy.dll"));
    std::filesystem::remove(copy);
}

struct Use {
    std::size_t bytes = 0;
    std::uintptr_t handle = 0;
};

Use CurrentUse() {
    Use use;
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry = {};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry))
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) use.bytes += entry.cbData;
        HeapUnlock(heaps[i]);
    }
    // A new handle takes the lowest free number, which rises with each that is left open.
    const HANDLE handle = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    use.handle = reinterpret_cast<std::uintptr_t>(handle);
    CloseHandle(handle);
    return use;
}

TEST(Life, ManyCallsLeaveNothingBehind) {
    const auto round = [](int calls) {
        const auto connection = std::make_shared<ScriptedConnection>();
        const auto tables = Create(L"kpTables.CTables");
        const com::Value host(com::Give(MakeConnectionDouble(connection)));
        PutByName(tables.Get(), "Cnn", host);
        for (int i = 0; i < calls; ++i) {
            std::vector<Variant> arguments = {"x", Variant::Null()};
            switch (i % 4) {
                case 0:
                    arguments = {"ab-CD 12号"};
                    CallByName(tables.Get(), "AllTrim", arguments);
                    break;
                case 1:
                    CallByName(tables.Get(), "CalcPrice", arguments);
                    break;
                case 2:
                    CallByName(tables.Get(), "Get单据金额", arguments);
                    break;
                default:
                    CallByName(tables.Get(), "Speciality");
            }
        }
        // Statements and recordsets, of which the connection's own log grows: fewer.
        for (int i = 0; i < calls / 100; ++i) CallByName(tables.Get(), "rs生产厂家");
    };
    round(2000);
    const Use before = CurrentUse();
    round(100000);
    const Use after = CurrentUse();
    EXPECT_LE(after.bytes, before.bytes);
    EXPECT_LE(after.handle, before.handle);
    EXPECT_GT(before.bytes, 0u);
    EXPECT_GT(before.handle, 0u);
}

/// Lets the calls of other threads in until the condition holds, at most ten seconds.
void PumpUntil(const std::atomic<bool>& done) {
    const ULONGLONG end = GetTickCount64() + 10000;
    while (!done && GetTickCount64() < end) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        Sleep(1);
    }
}

TEST(Life, AThreadWithoutAnApartmentOfItsOwnCallsThroughAProxy) {
    const auto tables = Create(L"kpTables.CTables");
    com::Pointer<IStream> stream;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, tables.Get(), stream.Receive()), S_OK);
    std::atomic<bool> done = false;
    Variant version, own;
    std::thread caller([&] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        {
            com::Pointer<IDispatch> proxy;
            if (SUCCEEDED(CoGetInterfaceAndReleaseStream(stream.Detach(), IID_IDispatch, proxy.ReceiveAny())))
                version = CallByName(proxy.Get(), "Version").value;
            if (const auto created = Create(L"kpTables.CTables")) own = CallByName(created.Get(), "Version").value;
        }
        CoUninitialize();
        done = true;
    });
    PumpUntil(done);
    ASSERT_TRUE(done);
    caller.join();
    EXPECT_TRUE(version.Is("10110"));
    EXPECT_TRUE(own.Is("10110"));
}

TEST(Life, EveryApartmentHasItsOwnObjects) {
    std::vector<std::thread> threads;
    std::atomic<int> right = 0;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&right, i] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            {
                const auto tables = Create(L"kpTables.CTables");
                const Variant text("第" + std::to_string(i));
                for (int n = 0; n < 1000 && tables; ++n) {
                    PutByName(tables.Get(), "Speciality", com::Value(text));
                    if (CallByName(tables.Get(), "Speciality").value.Is(text)) ++right;
                }
            }
            CoUninitialize();
        });
    }
    for (std::thread& each : threads) each.join();
    EXPECT_EQ(right, 3000);
}

}  // namespace
}  // namespace kpTables::test
