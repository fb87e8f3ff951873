// The corpus's texts that can be read.
#pragma once

#include <string>
#include <vector>

#include "corpus/Corpus.h"

namespace kpTables::sql::parse {

inline std::vector<std::string> ReadableTexts() {
    std::vector<std::string> texts;
    for (const corpus::SentText& each : corpus::Texts())
        if (each.statement->refusal.empty()) texts.push_back(each.statement->text);
    return texts;
}

}  // namespace kpTables::sql::parse
