// An editable recordset whose database errors are kept.
#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "kpTables/Error.h"
#include "kpTables/Recordset.h"
#include "kpTables/bookkeeping/WatchedConnection.h"

namespace kpTables::bookkeeping {

/// Runs an action for a statement; a DatabaseError is added to failures and passed on.
template <class Action>
std::invoke_result_t<Action> KeepFailures(FailedStatements& failures, const std::string& text, Action action) {
    try {
        return action();
    } catch (const DatabaseError& error) {
        failures.push_back({text, error});
        throw;
    }
}

/// Passes every call on and keeps every DatabaseError that one raised.
class WatchedRecordset : public Recordset {
public:
    WatchedRecordset(RecordsetPtr target, std::string source, std::shared_ptr<FailedStatements> failures)
        : target_(std::move(target)), source_(std::move(source)), failures_(std::move(failures)) {}

    int FieldCount() const override { return target_->FieldCount(); }
    const FieldInfo& FieldAt(int index) const override { return target_->FieldAt(index); }
    int FieldIndex(std::string_view name) const override { return target_->FieldIndex(name); }
    Variant GetValue(int index) const override {
        return Keep([&] { return target_->GetValue(index); });
    }
    void SetValue(int index, const Variant& value) override {
        Keep([&] { target_->SetValue(index, value); });
    }
    std::int32_t RecordCount() const override {
        return Keep([&] { return target_->RecordCount(); });
    }
    std::int32_t AbsolutePosition() const override {
        return Keep([&] { return target_->AbsolutePosition(); });
    }
    bool Eof() const override {
        return Keep([&] { return target_->Eof(); });
    }
    void MoveFirst() override {
        Keep([&] { target_->MoveFirst(); });
    }
    void MoveNext() override {
        Keep([&] { target_->MoveNext(); });
    }
    void Find(std::string_view criteria, std::int32_t skip, int direction) override {
        Keep([&] { target_->Find(criteria, skip, direction); });
    }
    void Sort(std::string_view order) override {
        Keep([&] { target_->Sort(order); });
    }
    void AddNew() override {
        Keep([&] { target_->AddNew(); });
    }
    void Update() override {
        Keep([&] { target_->Update(); });
    }
    void Close() override {
        Keep([&] { target_->Close(); });
    }
    void SetCacheSize(std::int32_t rows) override {
        Recordset::SetCacheSize(rows);
        Keep([&] { target_->SetCacheSize(rows); });
    }

private:
    template <class Action>
    std::invoke_result_t<Action> Keep(Action action) const {
        return KeepFailures(*failures_, source_, action);
    }

    RecordsetPtr target_;
    std::string source_;
    std::shared_ptr<FailedStatements> failures_;
};

}  // namespace kpTables::bookkeeping
