// What tests of new books share.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

#include "TestBook.h"

namespace kpTables::test {

class NewBooks : public testing::Test {
protected:
    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory.Path()))
            names.insert(entry.path().filename().string());
        return names;
    }
    void Write(const char* name, const char* text) const { std::ofstream(directory.File(name)) << text; }

    TemporaryDirectory directory;
    std::string path = directory.File("book");
};

}  // namespace kpTables::test
