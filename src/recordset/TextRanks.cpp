#include "recordset/TextRanks.h"

#include <algorithm>
#include <functional>
#include <span>
#include <utility>

namespace kpTables::recordset {

/// Sorts texts by their first weights, a number of them at a time, and what these leave equal by comparing.
class TextRanks::Ranking {
public:
    Ranking(const std::vector<Text>& texts, const TextOrder& order, bool weighs, Steps& steps)
        : texts_(texts), order_(order), steps_(steps), entries_(texts.size()), ranks_(texts.size()) {
        for (std::uint32_t i = 0; i < entries_.size(); ++i) entries_[i].text = i;
        if (weighs)
            RankByWeights();
        else
            RankByComparing(entries_);
    }

    std::vector<std::uint32_t> Take() { return std::move(ranks_); }

private:
    // Of a longer text, and a common beginning, there may be millions.
    static constexpr std::size_t kMostWeights = 16;

    struct Entry {
        std::uint64_t weight = 0;
        std::uint32_t text = 0;
    };
    using Run = std::span<Entry>;

    struct Compared {
        std::string_view text;
        std::uint32_t number;
    };

    void RankByWeights() {
        starts_.reserve(texts_.size() + 1);
        for (const Text& each : texts_) {
            steps_.Count();
            starts_.push_back(weights_.size());
            order_.weigh(each.text, kMostWeights, weights_);
        }
        starts_.push_back(weights_.size());
        RankByWeights(entries_, 0);
    }

    void RankByWeights(Run run, std::size_t depth) {
        for (Entry& entry : run) {
            steps_.Count();
            const std::size_t at = starts_[entry.text] + depth;
            entry.weight = at < starts_[entry.text + 1] ? weights_[at] : 0;
        }
        const auto less = [](const Entry& left, const Entry& right) { return left.weight < right.weight; };
        if (!std::is_sorted(run.begin(), run.end(), less)) std::sort(run.begin(), run.end(), less);
        for (std::size_t first = 0, end = 1; first < run.size(); first = end++) {
            const std::uint64_t weight = run[first].weight;
            while (end < run.size() && run[end].weight == weight) ++end;
            const Run same = run.subspan(first, end - first);
            if (same.size() == 1)
                ranks_[same.front().text] = next_++;
            else if (weight == 0 || depth + 1 == kMostWeights)
                RankByComparing(same);
            else
                RankByWeights(same, depth + 1);
        }
    }

    /// Every text before these has its rank.
    void RankByComparing(Run run) {
        std::vector<Compared> texts;
        texts.reserve(run.size());
        for (const Entry& entry : run) texts.push_back({texts_[entry.text].text, entry.text});
        const auto compare = [&](const Compared& left, const Compared& right) {
            steps_.Count();
            return order_.compare(left.text, right.text);
        };
        std::stable_sort(texts.begin(), texts.end(),
                         [&](const Compared& left, const Compared& right) { return compare(left, right) < 0; });
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (i > 0 && compare(texts[i - 1], texts[i]) != 0) ++next_;
            ranks_[texts[i].number] = next_;
        }
        ++next_;
    }

    const std::vector<Text>& texts_;
    const TextOrder& order_;
    Steps& steps_;
    std::vector<std::uint64_t> weights_;
    std::vector<std::size_t> starts_;  ///< of each text's weights
    std::vector<Entry> entries_;
    std::vector<std::uint32_t> ranks_;
    std::uint32_t next_ = 0;
};

std::uint32_t TextRanks::NumberOf(std::string_view text) {
    // Adjacent rows often share one copy of a text.
    if (!texts_.empty() && texts_.back().text.data() == text.data() && texts_.back().text.size() == text.size())
        return static_cast<std::uint32_t>(texts_.size() - 1);
    if (!searches_) return Add(text, 0);
    if (2 * texts_.size() >= slots_.size()) Widen();
    const std::size_t hash = std::hash<std::string_view>()(text);
    std::size_t slot = hash & (slots_.size() - 1);
    for (; slots_[slot] != 0; slot = (slot + 1) & (slots_.size() - 1)) {
        const std::uint32_t number = slots_[slot] - 1;
        if (texts_[number].hash == hash && texts_[number].text == text) return number;
    }
    const std::uint32_t number = Add(text, hash);
    slots_[slot] = number + 1;
    return number;
}

std::uint32_t TextRanks::Add(std::string_view text, std::size_t hash) {
    texts_.push_back({text, hash});
    return static_cast<std::uint32_t>(texts_.size() - 1);
}

void TextRanks::Widen() {
    constexpr std::size_t kFirst = 256;
    slots_.assign(std::max(kFirst, 2 * slots_.size()), 0);
    for (std::uint32_t number = 0; number < texts_.size(); ++number) {
        std::size_t slot = texts_[number].hash & (slots_.size() - 1);
        while (slots_[slot] != 0) slot = (slot + 1) & (slots_.size() - 1);
        slots_[slot] = number + 1;
    }
}

std::vector<std::uint32_t> TextRanks::Ranks(const TextOrder& order, Steps& steps) const {
    return Ranking(texts_, order, searches_ && order.weigh, steps).Take();
}

}  // namespace kpTables::recordset
