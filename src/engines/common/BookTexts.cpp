#include "engines/common/BookTexts.h"

#include "text/TextOrder.h"

namespace kpTables::engines {

namespace {

std::optional<std::uint64_t> KeyOfText(std::string_view text) noexcept { return text::HashOfText(text); }

}  // namespace

const TextOrder kBookTexts = {text::CompareTexts, KeyOfText, text::AppendWeights};

}  // namespace kpTables::engines
