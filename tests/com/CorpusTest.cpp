// Every call of the corpus through the server, late bound: what reaches the host's connection, and the answer.
#include <gtest/gtest.h>
#include <oleauto.h>

#include <set>

#include "AdoDouble.h"
#include "Client.h"
#include "Hooks.h"
#include "com/Value.h"
#include "corpus/Call.h"
#include "kpTables/LateBound.h"

namespace kpTables::test {
namespace {

int AnswerNumber(const std::string& box) {
    if (box == "Yes") return IDYES;
    return box == "No" ? IDNO : IDOK;
}

HMODULE ServerModule() { return GetModuleHandleW(L"kpTables.dll"); }

/// An object of the server on a scripted connection.
struct Scene {
    Scene(const corpus::Case& each, bool isSQL) {
        for (const auto& statement : each.Statements(isSQL))
            connection->Answer(statement.answer.empty() ? MakeRows({}, {}) : corpus::ParseRows(statement.answer));
        const auto host = MakeConnectionDouble(connection);
        VARIANT argument;
        argument.vt = VT_DISPATCH;
        argument.pdispVal = host.Get();
        EXPECT_EQ(PutByName(tables.Get(), "Cnn", argument), S_OK);
        EXPECT_EQ(PutByName(tables.Get(), "isSQL", com::Value(isSQL)), S_OK);
    }
    std::shared_ptr<ScriptedConnection> connection = std::make_shared<ScriptedConnection>();
    com::Pointer<IDispatch> tables = Create(L"kpTables.CTables");
};

TEST(Corpus, EveryCallSendsItsTextsThroughTheServer) {
    const AdoRecordsetClass recordsets;
    std::set<std::string> called;
    for (const corpus::Case& each : corpus::Cases()) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.Name() + (isSQL ? " (SQL Server)" : " (Jet)"));
            const Scene scene(each, isSQL);
            std::deque<int> answers;
            for (const std::string& box : each.boxes) answers.push_back(AnswerNumber(box));
            const ScriptedSystem system(ServerModule(), std::move(answers));
            corpus::Call call = corpus::ParseCall(each.call);
            for (Variant& argument : call.arguments) argument = HostsOwn(argument);
            const CallOutcome outcome = CallByName(scene.tables.Get(), call.method, call.arguments);
            EXPECT_EQ(outcome.result, S_OK) << outcome.description;
            EXPECT_EQ(scene.connection->Statements(), corpus::Expected(each, isSQL));
            EXPECT_EQ(system.Boxes().size(), each.boxes.size());
            if (!each.result.empty()) {
                EXPECT_TRUE(outcome.value.Is(corpus::ParseValue(each.result))) << Shown(outcome.value);
            }
            called.insert(call.method);
        }
        if (HasFailure()) return;
    }
    // Those that send nothing have no call in the corpus.
    for (const auto& member : _CTables::Members()) {
        if (member.kind != _CTables::MemberKind::Method) continue;
        const std::string name(member.name);
        const bool silent = name == "Version" || name == "Update" || name == "AllTrim" || name == "CalcPrice" ||
                            name == "Get单据中文日期";
        EXPECT_NE(called.contains(name), silent) << name;
    }
}

}  // namespace
}  // namespace kpTables::test
