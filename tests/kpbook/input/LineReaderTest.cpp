#include "kpbook/input/LineReader.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

#include "kpbook/Exit.h"
#include "kpbook/input/InputFile.h"

namespace kpTables::kpbook::input {
namespace {

class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content) {
        const int descriptor = ::mkstemp(path_);
        EXPECT_GE(descriptor, 0);
        EXPECT_EQ(::write(descriptor, content.data(), content.size()), static_cast<ssize_t>(content.size()));
        ::close(descriptor);
    }
    ~TemporaryFile() { ::unlink(path_); }
    std::string Path() const { return path_; }

private:
    char path_[32] = "/tmp/kpbook-lines-XXXXXX";
};

std::vector<std::string> Lines(const std::string& content) {
    const TemporaryFile file(content);
    InputFile input(file.Path());
    LineReader reader(input);
    std::vector<std::string> lines;
    while (const auto line = reader.Next()) {
        lines.push_back(*line);
        EXPECT_EQ(reader.Number(), static_cast<std::int64_t>(lines.size()));
    }
    return lines;
}

TEST(LineReader, Lines) {
    using Strings = std::vector<std::string>;
    EXPECT_EQ(Lines(""), Strings());
    EXPECT_EQ(Lines("a"), Strings{"a"});
    EXPECT_EQ(Lines("a\n"), Strings{"a"});
    EXPECT_EQ(Lines("a\nb"), (Strings{"a", "b"}));
    EXPECT_EQ(Lines("\n\na\n"), (Strings{"", "", "a"}));
    EXPECT_EQ(Lines("a\r\n"), Strings{"a\r"});
}

TEST(LineReader, LinesLongerThanAPiece) {
    const std::string first(200'000, 'x');
    const std::string second(70'000, 'y');
    EXPECT_TRUE(Lines(first + "\n" + second + "\nz") == (std::vector<std::string>{first, second, "z"}));
}

TEST(LineReader, FileThatCannotBeReadIsTold) {
    EXPECT_THROW(InputFile("/nonexistent/calls"), CommandError);
    InputFile directory("/tmp");
    char byte = 0;
    EXPECT_THROW(directory.Read(&byte, 1), CommandError);
}

}  // namespace
}  // namespace kpTables::kpbook::input
