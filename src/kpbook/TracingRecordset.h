// An editable recordset whose database errors are kept.
#pragma once

#include <optional>
#include <type_traits>

#include "kpTables/Error.h"
#include "kpTables/Recordset.h"

namespace kpTables::kpbook {

/// Passes every call on and keeps the last DatabaseError that one raised.
class TracingRecordset : public Recordset {
public:
    TracingRecordset(RecordsetPtr target, std::shared_ptr<std::optional<DatabaseError>> lastError)
        : target_(std::move(target)), lastError_(std::move(lastError)) {}

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

private:
    template <class Action>
    std::invoke_result_t<Action> Keep(Action action) const {
        try {
            return action();
        } catch (const DatabaseError& error) {
            lastError_->emplace(error);
            throw;
        }
    }

    RecordsetPtr target_;
    std::shared_ptr<std::optional<DatabaseError>> lastError_;
};

}  // namespace kpTables::kpbook
