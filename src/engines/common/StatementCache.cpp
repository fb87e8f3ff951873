#include "engines/common/StatementCache.h"

#include <utility>

namespace kpTables::engines {

namespace {

std::vector<std::string> FixedTexts(const sql::Translation& translation,
                                    const std::vector<sql::LiteralValue>& literals) {
    std::vector<std::string> texts;
    for (const int ordinal : translation.fixedLiterals) {
        texts.push_back(literals.at(static_cast<std::size_t>(ordinal)).text);
    }
    return texts;
}

}  // namespace

CachedStatementPtr StatementCache::Find(const std::string& shape, const std::vector<sql::LiteralValue>& literals) {
    const auto [first, last] = byShape_.equal_range(shape);
    for (auto it = first; it != last; ++it) {
        const Entries::iterator entry = it->second;
        if (entry->fixedTexts != FixedTexts(entry->statement->translation, literals)) continue;
        entries_.splice(entries_.begin(), entries_, entry);
        return entry->statement;
    }
    return nullptr;
}

void StatementCache::Add(std::string shape, const std::vector<sql::LiteralValue>& literals,
                         CachedStatementPtr statement) {
    if (entries_.size() == kCapacity) RemoveOldest();
    auto fixedTexts = FixedTexts(statement->translation, literals);
    entries_.push_front({std::move(shape), std::move(fixedTexts), std::move(statement)});
    byShape_.emplace(entries_.front().shape, entries_.begin());
}

void StatementCache::Clear() noexcept {
    byShape_.clear();
    entries_.clear();
}

void StatementCache::RemoveOldest() {
    const auto oldest = std::prev(entries_.end());
    const auto [first, last] = byShape_.equal_range(oldest->shape);
    for (auto it = first; it != last; ++it) {
        if (it->second != oldest) continue;
        byShape_.erase(it);
        break;
    }
    entries_.erase(oldest);
}

}  // namespace kpTables::engines
