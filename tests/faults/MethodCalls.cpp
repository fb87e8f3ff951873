#include <map>
#include <optional>

#include "corpus/Call.h"
#include "faults/BookState.h"
#include "faults/Command.h"
#include "faults/SmallBook.h"
#include "faults/Workload.h"
#include "kpTables/Grid.h"
#include "kpTables/Host.h"
#include "kpTables/LateBound.h"
#include "kpbook/output/JsonText.h"

namespace kpTables::faults {

namespace {

std::string ArgumentOf(const Variant& value) {
    if (value.IsMissing()) return "missing:";
    if (const auto* object = value.If<ObjectPtr>(); object && *object) {
        if (dynamic_cast<const ProgressBar*>(object->get())) return "progress:";
    }
    std::string text = "json:";
    kpbook::output::AppendJsonValue(text, value);
    return text;
}

Workload WorkloadOf(const corpus::Call& call, std::size_t number) {
    Workload workload{"call." + call.method + "." + std::to_string(number),
                      Promise::TrueAnswer,
                      SmallBook(),
                      {"call", "b.kpbook", "--today", "2006-08-19", "--answer", "yes", call.method}};
    for (const Variant& argument : call.arguments) workload.words.push_back(ArgumentOf(argument));
    return workload;
}

/// The same call as a line of a batch.
Workload BatchOf(const Workload& call) {
    constexpr std::size_t kMethod = 6;
    Workload batch{"batch" + call.name.substr(call.name.find('.')),
                   Promise::TrueAnswer,
                   call.before,
                   {"call", "b.kpbook", "--today", "2006-08-19", "--answer", "yes", "--batch"}};
    std::string arguments;
    for (std::size_t i = kMethod + 1; i < call.words.size(); ++i) {
        const std::string& word = call.words[i];
        if (!arguments.empty()) arguments += ',';
        arguments += word == "missing:"    ? R"({"missing":true})"
                     : word == "progress:" ? R"({"progress":true})"
                                           : word.substr(word.find(':') + 1);
    }
    batch.input = R"({"method":")" + call.words[kMethod] + R"(","args":[)" + arguments + "]}\n";
    return batch;
}

/// A call that succeeds and changes the book; else one that succeeds.
std::optional<Workload> Choose(const std::vector<corpus::Call>& calls, const BookState& before) {
    constexpr std::size_t kTried = 12;
    std::optional<Workload> reading;
    for (std::size_t i = 0; i < calls.size() && i < kTried; ++i) {
        const Workload workload = WorkloadOf(calls[i], i + 1);
        PutInPlace(*workload.before);
        if (!RunKpbook(workload.words, workload.input).Succeeded()) continue;
        if (ReadBook("b.kpbook") != before) return workload;
        if (!reading) reading = workload;
    }
    return reading;
}

}  // namespace

std::vector<Workload> MethodCalls() {
    std::map<std::string, std::vector<corpus::Call>> calls;
    for (const corpus::Case& each : corpus::Cases()) {
        const corpus::Call call = corpus::ParseCall(each.call);
        calls[call.method].push_back(call);
    }
    PutInPlace(*SmallBook());
    const BookState before = ReadBook("b.kpbook");
    std::vector<Workload> all;
    for (const auto& member : _CTables::Members()) {
        if (member.kind != _CTables::MemberKind::Method) continue;
        auto& ofMethod = calls[std::string(member.name)];
        if (ofMethod.empty() && member.parameters.empty()) ofMethod.push_back({std::string(member.name), {}});
        const auto workload = Choose(ofMethod, before);
        if (!workload) continue;
        all.push_back(*workload);
        all.push_back(BatchOf(*workload));
    }
    return all;
}

}  // namespace kpTables::faults
