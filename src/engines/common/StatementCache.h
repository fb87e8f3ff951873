// Translated and prepared statements, reused by texts that differ only in their literals.
#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engines/common/Statement.h"
#include "sql/Tree.h"

namespace kpTables::engines {

/// Keeps the most recently used statements.
class StatementCache {
public:
    /// The statement for a text of that shape with these literals, or null.
    CachedStatementPtr Find(const std::string& shape, const std::vector<sql::LiteralValue>& literals);
    void Add(std::string shape, const std::vector<sql::LiteralValue>& literals, CachedStatementPtr statement);
    void Clear() noexcept;
    std::size_t Size() const noexcept { return entries_.size(); }

    static constexpr std::size_t kCapacity = 200;

private:
    struct Entry {
        std::string shape;
        std::vector<std::string> fixedTexts;  ///< values of the literals that shaped the translation
        CachedStatementPtr statement;
    };
    using Entries = std::list<Entry>;

    void RemoveOldest();

    Entries entries_;  ///< the one used last comes first
    std::unordered_multimap<std::string_view, Entries::iterator> byShape_;
};

}  // namespace kpTables::engines
