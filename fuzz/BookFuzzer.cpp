// A book's file with some bytes changed, or cut off: it opens or is refused, and then a few statements run or fail,
// each with an error of the library's own. The input is a list of changes: the place (three bytes) and what to do
// there.
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "Input.h"
#include "kpTables/Book.h"
#include "kpTables/Error.h"

namespace {

using namespace kpTables;
using kpTables::fuzz::Input;
namespace fs = std::filesystem;

/// Where shared memory is a folder, the disk need not be waited for.
fs::path Folder() {
    const fs::path memory = "/dev/shm";
    const fs::path folder =
        (fs::exists(memory) ? memory : fs::temp_directory_path()) / ("kpTablesBookFuzzer-" + std::to_string(getpid()));
    fs::create_directories(folder);
    return folder;
}

struct Files {
    Files() : folder(Folder()), path((folder / "b").string()) {
        {
            const BookPtr book = CreateBook(path);
            book->Execute("Insert Into 仓库设置 (仓库名称) Values ('东库')");
            for (int i = 0; i < 40; ++i) {
                book->Execute("Insert Into 商品设置 (商品名称,商品编号) Values ('水泥" + std::to_string(i) +
                              "','0100')");
                book->Execute("Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存数量) Values (2004,3," +
                              std::to_string(i) + ",1,2.5)");
            }
        }
        std::ifstream file(path, std::ios::binary);
        sound.assign(std::istreambuf_iterator<char>(file), {});
    }
    ~Files() { fs::remove_all(folder); }

    void Write(const std::string& bytes) const {
        for (const char* suffix : {"-journal", "-wal", "-shm"}) fs::remove(path + suffix);
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    }

    fs::path folder;
    std::string path;
    std::string sound;
};

std::string Damaged(Input& input, std::string bytes) {
    while (!input.AtEnd()) {
        std::uint32_t place = input.Byte();
        place = place << 8 | input.Byte();
        place = (place << 8 | input.Byte()) % static_cast<std::uint32_t>(bytes.size());
        const std::uint8_t how = input.Byte();
        const std::uint8_t value = input.Byte();
        if (how % 32 == 0) {
            bytes.resize(place + 1);
        } else if (how % 32 == 1) {
            std::fill_n(bytes.begin() + place, std::min<std::size_t>(value, bytes.size() - place), '\0');
        } else {
            bytes[place] = static_cast<char>(value);
        }
    }
    return bytes;
}

void Try(Book& book, std::string_view text) {
    try {
        book.Execute(text);
    } catch (const Error&) {
    }
}

void Use(Book& book) {
    constexpr std::string_view kStatements[] = {
        "Select * From 商品设置 Order by 商品编号",
        "Select P.商品名称, Sum(B.上期库存数量) From 仓库余额表 B Left Join 商品设置 P On P.pdID=B.pdID Group by P.商品名称",
        "Update 仓库余额表 Set 本期入库数量=1 Where 月份=3", "Insert Into 商品设置 (商品名称) Values ('x')",
        "Delete From 仓库余额表 Where pdID<5"};
    for (const std::string_view text : kStatements) Try(book, text);
    try {
        book.Tables();
        const RecordsetPtr rows = book.Open("仓库余额表", SourceKind::Table);
        rows->AddNew();
        rows->Fields("月份").SetValue(4);
        rows->Update();
    } catch (const Error&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Files files;
    Input input(data, size);
    BookOptions options;
    options.readOnly = input.Flag();
    options.busyTimeout = std::chrono::milliseconds(0);
    files.Write(Damaged(input, files.sound));
    try {
        Use(*OpenBook(files.path, options));
    } catch (const Error&) {
    }
    return 0;
}
