#include "kpTables/text/Message.h"

#include <atomic>

namespace kpTables {

namespace {

std::atomic<Translator> translating{nullptr};

const char* TextFor(const char* one, const char* many, std::uint64_t count) {
    const Translator translator = translating.load(std::memory_order_relaxed);
    if (translator) return translator(one, many, count);
    return many && count != 1 ? many : one;
}

}  // namespace

void SetTranslator(Translator translator) noexcept { translating.store(translator, std::memory_order_relaxed); }

const char* Translated(const char* text) { return TextFor(text, nullptr, 0); }

std::string FillGaps(std::string_view text, std::span<const GapValue> values) {
    std::string filled;
    for (std::size_t at = 0; at < text.size();) {
        const bool isGap = at + 2 < text.size() && text[at] == '{' && text[at + 2] == '}';
        // Of no gap: a number beyond those of the values.
        const std::size_t gap =
            isGap ? static_cast<std::size_t>(static_cast<unsigned char>(text[at + 1])) - '1' : values.size();
        if (gap < values.size()) {
            filled += values[gap].Text();
            at += 3;
        } else {
            filled += text[at++];
        }
    }
    return filled;
}

std::string MakeMessage(const char* one, const char* many, std::uint64_t count, std::span<const GapValue> values) {
    return FillGaps(TextFor(one, many, count), values);
}

}  // namespace kpTables
