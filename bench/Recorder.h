// A connection that records the texts that are sent through it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kpTables/Connection.h"

namespace kpTables::bench {

class Recorder : public Connection {
public:
    Recorder(ConnectionPtr book, std::vector<std::string>& texts) : book_(std::move(book)), texts_(texts) {}

    using Connection::Execute;
    RecordsetPtr Execute(std::string_view text) override {
        texts_.emplace_back(text);
        return book_->Execute(text);
    }
    RecordsetPtr Open(std::string_view source, SourceKind kind) override {
        texts_.emplace_back(source);
        return book_->Open(source, kind);
    }
    int BeginTrans() override { return book_->BeginTrans(); }
    void CommitTrans() override { book_->CommitTrans(); }
    void RollbackTrans() override { book_->RollbackTrans(); }

private:
    ConnectionPtr book_;
    std::vector<std::string>& texts_;
};

}  // namespace kpTables::bench
