// ICU's order of texts, with the settings that the book's order was made from.
#pragma once

#include <unicode/ucol.h>
#include <unicode/uset.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "text/Utf8.h"

namespace kpTables::text {

class IcuOrder {
public:
    IcuOrder() {
        UErrorCode status = U_ZERO_ERROR;
        collator_ = ucol_open("zh-u-co-pinyin", &status);
        ucol_setStrength(collator_, UCOL_SECONDARY);
        // ICU's Chinese rules put Chinese characters before letters; both original databases put them after.
        const std::int32_t none[] = {UCOL_REORDER_CODE_NONE};
        ucol_setReorderCodes(collator_, none, 1, &status);
        Check(status);
    }
    ~IcuOrder() { ucol_close(collator_); }
    IcuOrder(const IcuOrder&) = delete;
    IcuOrder& operator=(const IcuOrder&) = delete;

    /// -1, 0 or 1.
    int Compare(std::string_view left, std::string_view right) const {
        left = WithoutTrailingBlanks(left);
        right = WithoutTrailingBlanks(right);
        UErrorCode status = U_ZERO_ERROR;
        return ucol_strcollUTF8(collator_, left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), &status);
    }

    /// The texts of several characters that are ordered as a unit.
    std::vector<std::string> Contractions() const {
        UErrorCode status = U_ZERO_ERROR;
        USet* set = uset_openEmpty();
        ucol_getContractionsAndExpansions(collator_, set, nullptr, true, &status);
        std::vector<std::string> texts;
        for (int i = 0; i < uset_getItemCount(set); ++i) {
            UChar32 first = 0;
            UChar32 last = 0;
            UChar units[32];
            const int size = uset_getItem(set, i, &first, &last, units, 32, &status);
            std::string text;
            for (int at = 0; at < size;) {
                UChar32 c = 0;
                U16_NEXT(units, at, size, c);
                AppendCharacter(text, static_cast<char32_t>(c));
            }
            if (!text.empty()) texts.push_back(text);
        }
        uset_close(set);
        Check(status);
        return texts;
    }

private:
    static void Check(UErrorCode status) {
        if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
    }
    static std::string_view WithoutTrailingBlanks(std::string_view text) {
        return text.substr(0, text.find_last_not_of(' ') + 1);
    }

    UCollator* collator_;
};

}  // namespace kpTables::text
