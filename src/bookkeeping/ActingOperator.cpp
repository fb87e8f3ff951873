#include "kpTables/bookkeeping/ActingOperator.h"

#include <utility>

#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Quoted.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// The setting that demands an operator, and its value when it does.
constexpr const char* kRequired = "操作员登录";
constexpr const char* kYes = "必须";

/// The first column of the only row; "" for Null. Unlike in the methods, a missing table or column is an error.
std::string StoredText(Connection& book, const std::string& query) {
    const auto rows = book.Execute(query);
    return rows->Eof() ? std::string() : Text(rows->GetValue(0));
}

std::string PasswordOf(const ConnectionPtr& book, const std::string& name, std::int32_t id) {
    const std::string stored =
        CheckedTables(book).Ask([&](CTables& tables) { return tables.GetPassword(Quoted(name), id); });
    if (!stored.empty()) return stored;
    // The method answers "" after a failure, too: only a row that really has no password counts as having none.
    return StoredText(*book, "Select 密码 From 操作员 Where ID=" + std::to_string(id));
}

/// At most this many characters, whole ones.
std::string FirstCharacters(const std::string& text, std::size_t most) {
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool begins = (static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U;
        if (begins && characters++ == most) return text.substr(0, i);
    }
    return text;
}

}  // namespace

ActingOperator::ActingOperator(ConnectionPtr book, const std::string& name,
                               const std::function<std::string()>& password)
    : book_(std::move(book)) {
    const auto rows = book_->Execute("Select ID,姓名 From 操作员 Where 姓名='" + Quoted(name) + "'");
    if (rows->RecordCount() > 1) RefuseWith(Message("several operators have the name {1}; rename one", name));
    const bool known = !rows->Eof();
    std::string stored;
    if (known) {
        id_ = CLng(rows->GetValue(0));
        name_ = Text(rows->GetValue(1));
        stored = PasswordOf(book_, name_, id_);
    }
    const bool right = known && (stored.empty() || password() == stored);
    if (!known) password();
    if (!right) RefuseWith(Message("the operator's name or password is wrong"));
    warehouse_ = CheckedTables(book_).Ask([&](CTables& tables) { return tables.Get管理仓库(id_); });
}

bool ActingOperator::Has(const std::string& right) const {
    return CheckedTables(book_).Ask([&](CTables& tables) { return tables.Get操作权限(id_, right); });
}

void ActingOperator::Require(const std::string& right) const {
    if (!Has(right)) RefuseWith(Message("the operator {1} does not have the right {2}", name_, right));
}

void ActingOperator::Log(Date when, const std::string& what) const {
    constexpr std::size_t kMost = 255;
    const auto log = book_->Open("Log", SourceKind::Table);
    log->AddNew();
    log->Fields("Operator").SetValue(std::to_string(id_));
    log->Fields("logDate").SetValue(when);
    log->Fields("内容").SetValue(FirstCharacters(what, kMost));
    log->Update();
    log->Close();
}

bool OperatorRequired(const ConnectionPtr& book) {
    try {
        const std::string value = CheckedTables(book).Ask([](CTables& tables) { return tables.Get_Option(kRequired); });
        if (!value.empty()) return value == kYes;
        // As with a password: "" may be a failure.
        return Trim(StoredText(*book,
                               "Select Discription From 系统选项 Where Item='" + std::string(kRequired) + "'")) == kYes;
    } catch (const DatabaseError& error) {
        // A book whose settings somebody has dropped demands nothing.
        if (error.Number() != static_cast<std::int32_t>(DatabaseErrorNumber::UnknownTable)) throw;
        return false;
    }
}

void RequireOperator(const ConnectionPtr& book, bool required) {
    if (required && !HasRows(*book, "Select ID From 操作员 Where 系统设置<>0")) {
        RefuseWith(
            Message("no operator has the right 系统设置, so nobody could change the setting again; add one first"));
    }
    CheckedTables(book).Ask([&](CTables& tables) {
        tables.Update_Option(kRequired, Variant(required ? kYes : "不必"));
        return true;
    });
    if (OperatorRequired(book) != required) RefuseWith(Message("the setting could not be stored"));
}

}  // namespace kpTables::bookkeeping
