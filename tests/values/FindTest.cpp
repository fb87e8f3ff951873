// Find: what it takes, what it finds, and that its index finds what a scan finds.
#include <gtest/gtest.h>

#include <string>

#include "Raised.h"
#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "recordset/RowStore.h"

namespace kpTables {
namespace {

std::unique_ptr<MemoryRecordset> Products() {
    auto rows = std::make_unique<recordset::RowStore>(std::vector<FieldInfo>{{"pdID", VarType::Long},
                                                                             {"商品 名称", VarType::String},
                                                                             {"单价", VarType::Double},
                                                                             {"金额", VarType::Currency},
                                                                             {"日期", VarType::Date},
                                                                             {"停用", VarType::Boolean},
                                                                             {"other", VarType::Empty}});
    struct Row {
        int id;
        const char* name;
        double price;
        std::int64_t amount;
        double day;
        bool off;
    };
    const Row table[] = {
        {5, "Red Brick", 0.5, 125000, 38053, false},
        {3, "red brick  ", 1.5, -10000, 38054, true},
        {5, "O'Neil", 2.5, 1, 38053.5, false},
        {-7, "水泥 425#", 1e3, 0, 38060, true},
        {9, "", 0, 99999, 0, false},
    };
    for (const Row& row : table) {
        rows->BeginRow();
        rows->PutLong(0, row.id);
        rows->PutText(1, row.name);
        rows->PutDouble(2, row.price);
        rows->PutCurrency(3, row.amount);
        rows->PutDate(4, row.day);
        rows->PutBoolean(5, row.off);
    }
    rows->BeginRow();  // all Null
    return std::make_unique<MemoryRecordset>(std::move(rows));
}

TEST(Find, Conditions) {
    struct Case {
        const char* criteria;
        int position;  // from the first row on; -3 when nothing meets it
    };
    const Case cases[] = {
        {"pdID=5", 1},
        {"pdID = 3", 2},
        {" PDID  =  -7 ", 4},
        {"pdID=+9", 5},
        {"pdID=4", -3},
        {"pdID=5.0", 1},
        {"pdID=3e0", 2},
        {"pdID=5.5", -3},
        {"[pdID]=3", 2},
        {"[pdID] <> 5", 2},
        {"pdID<>5", 2},
        {"pdID<5", 2},
        {"pdID<=3", 2},
        {"pdID<-7", -3},
        {"pdID>5", 5},
        {"pdID>=9", 5},
        {"pdID>9", -3},
        {"pdID='3'", 2},
        {"[商品 名称]='red brick'", 1},
        {"[商品 名称]='RED BRICK '", 1},
        {"[商品 名称]='O''Neil'", 3},
        {"[商品 名称]=''", 5},
        {"[商品 名称]='red'", -3},
        {"[商品 名称]<>'Red Brick'", 3},
        {"[商品 名称]>'red brick'", 4},
        {"[商品 名称]<'red brick'", 3},
        {"[商品 名称] Like 'red%'", 1},
        {"[商品 名称] like '*NEIL'", 3},
        {"[商品 名称] LIKE'%425%'", 4},
        {"[商品 名称] Like 'r%k'", 1},
        {"[商品 名称] Like 'brick'", -3},
        {"[商品 名称] Like '_ed%'", -3},
        {"[商品 名称] Like '%'", 1},
        {"pdID Like '-%'", 4},
        {"单价=2.5", 3},
        {"单价=1000", 4},
        {"单价>1.5", 3},
        {"单价=0", 5},
        {"单价=-0", 5},
        {"金额=12.5", 1},
        {"金额=0.0001", 3},
        {"金额<0", 2},
        {"金额=9.9999", 5},
        {"日期=#2004-3-7#", 1},
        {"日期=#2004-3-7 12:00#", 3},
        {"日期>#2004-3-8#", 4},
        {"日期='2004年3月8日'", 2},
        {"日期=38060", 4},
        {"停用=True", 2},
        {"停用=false", 1},
        {"停用=-1", 2},
        {"停用=0", 1},
        {"停用<>0", 2},
        {"other=1", -3},
        {"other<>'x'", -3},
    };
    for (const Case& c : cases) {
        // Again and again, so that the index answers, too.
        const auto rs = Products();
        for (int i = 0; i < 20; ++i) {
            rs->MoveFirst();
            rs->Find(c.criteria, 0, 1);
            ASSERT_EQ(rs->AbsolutePosition(), c.position) << c.criteria << ", search " << i;
            ASSERT_EQ(rs->Eof(), c.position == -3) << c.criteria;
        }
    }
}

TEST(Find, SkipAndDirection) {
    const auto rs = Products();
    rs->Find("pdID=5");
    EXPECT_EQ(rs->AbsolutePosition(), 1) << "the current row counts";
    rs->Find("pdID=5", 1);
    EXPECT_EQ(rs->AbsolutePosition(), 3);
    rs->Find("pdID=5", 0);
    EXPECT_EQ(rs->AbsolutePosition(), 3);
    rs->Find("pdID=5", 1, -1);
    EXPECT_EQ(rs->AbsolutePosition(), 1);
    rs->Find("pdID>0", 3);
    EXPECT_EQ(rs->AbsolutePosition(), 5);
    rs->Find("pdID=3", 0, -1);
    EXPECT_EQ(rs->AbsolutePosition(), 2);
    rs->Find("pdID=9", 0, -1);
    EXPECT_TRUE(rs->Eof());
    EXPECT_EQ(Raised([&] { rs->Find("pdID=5"); }), 3021);
    rs->MoveFirst();
    rs->Find("pdID=5", 6);
    EXPECT_TRUE(rs->Eof());
    rs->MoveFirst();
    rs->Find("pdID=5", 1, -1);
    EXPECT_TRUE(rs->Eof());
    rs->MoveFirst();
    rs->Find("pdID=5", 2147483647);
    EXPECT_TRUE(rs->Eof());
    rs->MoveFirst();
    EXPECT_EQ(Raised([&] { rs->Find("pdID=5", 0, 2); }), 3001);
    EXPECT_EQ(Raised([&] { rs->Find("pdID=5", 0, 0); }), 3001);
}

TEST(Find, RefusesOtherConditions) {
    const auto rs = Products();
    for (const char* criteria : {"",
                                 " ",
                                 "pdID",
                                 "pdID=",
                                 "=5",
                                 "pdID 5",
                                 "pdID==5",
                                 "pdID=5 And pdID=3",
                                 "pdID=5 6",
                                 "pdID=abc",
                                 "pdID='abc'",
                                 "pdID=Null",
                                 "pdID=inf",
                                 "pdID=nan",
                                 "pdID=+-5",
                                 "pdID=5x",
                                 "pdID=--5",
                                 "pdID='5",
                                 "pdID=#2004-3-7",
                                 "日期=#2023-2-30#",
                                 "日期='abc'",
                                 "日期=#abc#",
                                 "[pdID=5",
                                 "[]=5",
                                 "pdID Is 5",
                                 "pdID Like",
                                 "[商品 名称]='a'b'",
                                 "停用='maybe'",
                                 "pdID<>",
                                 "pdID><5",
                                 "pdID=&H5",
                                 "pdID=1,000"}) {
        EXPECT_EQ(Raised([&] { rs->Find(criteria); }), 3001) << criteria;
        EXPECT_EQ(rs->AbsolutePosition(), 1) << criteria;
    }
    EXPECT_EQ(Raised([&] { rs->Find("price=5"); }), 3265);
    EXPECT_EQ(Raised([&] { rs->Find("[商品名称]='a'"); }), 3265);
}

TEST(Find, AMixedColumnIsSearchedByTheTypeOfTheValue) {
    auto rows = std::make_unique<recordset::RowStore>(std::vector<FieldInfo>{{"a", VarType::Empty}});
    for (const Variant& value : {Variant("5"), Variant::Null(), Variant(std::int32_t{5}), Variant("x")}) {
        rows->BeginRow();
        rows->PutValue(0, value);
    }
    MemoryRecordset rs(std::move(rows));
    rs.Find("a=5");
    EXPECT_EQ(rs.AbsolutePosition(), 3);
    rs.MoveFirst();
    rs.Find("a='5'");
    EXPECT_EQ(rs.AbsolutePosition(), 1);
    rs.Sort("a");
    EXPECT_TRUE(rs.GetValue(0).IsNull());
    rs.MoveNext();
    EXPECT_TRUE(rs.GetValue(0).Is(std::int32_t{5}));
    rs.MoveNext();
    EXPECT_TRUE(rs.GetValue(0).Is("5"));
}

std::string Name(int number) { return std::string("n").append(std::to_string(number)); }

class Random {
public:
    int Below(int limit) {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<int>((state_ >> 33) % static_cast<std::uint64_t>(limit));
    }

private:
    std::uint64_t state_ = 42;
};

/// A plain copy of the rows, searched in the plainest way.
struct Model {
    struct Row {
        Variant id;
        Variant name;
    };
    std::vector<Row> rows;
    int position = 0;  // from 0

    int Search(bool byName, const std::string& name, int id, int from) const {
        for (int i = from; i >= 0 && i < static_cast<int>(rows.size()); ++i) {
            const Row& row = rows[static_cast<std::size_t>(i)];
            const auto* text = row.name.If<std::string>();
            const auto* number = row.id.If<std::int32_t>();
            if (byName ? text && *text == name : number && *number == id) return i;
        }
        return static_cast<int>(rows.size());
    }
};

TEST(Find, TheIndexFindsWhatAScanFindsThroughEditsAndSorts) {
    Random random;
    for (int round = 0; round < 30; ++round) {
        MemoryRecordset rs({{"id", VarType::Long}, {"name", VarType::String}});
        Model model;
        const auto randomId = [&]() -> Variant {
            return random.Below(10) == 0 ? Variant::Null() : Variant(std::int32_t{random.Below(20) - 3});
        };
        const auto randomName = [&]() -> Variant {
            return random.Below(10) == 0 ? Variant::Null() : Variant(Name(random.Below(15)));
        };
        const auto add = [&] {
            rs.AddNew();
            model.rows.push_back({randomId(), randomName()});
            rs.SetValue(0, model.rows.back().id);
            rs.SetValue(1, model.rows.back().name);
            if (random.Below(2) == 0) rs.Update();
            model.position = static_cast<int>(model.rows.size()) - 1;
        };
        for (int i = random.Below(60) + 1; i > 0; --i) add();
        for (int step = 0; step < 600; ++step) {
            const int what = random.Below(100);
            if (what < 70) {
                if (rs.Eof() || random.Below(3) == 0) {
                    rs.MoveFirst();
                    model.position = 0;
                }
                const bool byName = random.Below(2) == 0;
                const int id = random.Below(22) - 4;
                const std::string name = Name(random.Below(17));
                const int skip = random.Below(2);
                model.position = model.Search(byName, name, id, model.position + skip);
                rs.Find(byName ? "name='" + name + "'" : "id=" + std::to_string(id), skip, 1);
            } else if (what < 80 && !rs.Eof()) {
                auto& row = model.rows[static_cast<std::size_t>(model.position)];
                if (random.Below(2) == 0) {
                    rs.SetValue(0, row.id = randomId());
                } else {
                    rs.SetValue(1, row.name = randomName());
                }
            } else if (what < 85) {
                add();
            } else if (what < 87) {
                rs.Sort("name, id DESC");
                model.rows.clear();
                for (; !rs.Eof(); rs.MoveNext()) model.rows.push_back({rs.GetValue(0), rs.GetValue(1)});
                rs.MoveFirst();
                model.position = 0;
            }
            ASSERT_EQ(rs.RecordCount(), static_cast<int>(model.rows.size()));
            const bool eof = model.position == static_cast<int>(model.rows.size());
            ASSERT_EQ(rs.AbsolutePosition(), eof ? -3 : model.position + 1) << "round " << round << " step " << step;
        }
    }
}

TEST(Find, RepeatedSearchesAreNotQuadratic) {
    constexpr int kRows = 100000;
    auto rows = std::make_unique<recordset::RowStore>(std::vector<FieldInfo>{{"pdID", VarType::Long}});
    for (int i = 0; i < kRows; ++i) {
        rows->BeginRow();
        rows->PutLong(0, i);
    }
    MemoryRecordset rs(std::move(rows));
    // A scan each would read 5,000,000,000 rows, for longer than a test may run.
    for (int i = 0; i < kRows; ++i) {
        rs.MoveFirst();
        rs.Find("pdID=" + std::to_string(kRows - 1 - i), 0, 1);
        ASSERT_EQ(rs.AbsolutePosition(), kRows - i);
    }
}

TEST(Find, TheIndexKnowsEqualTextsOfDifferentForm) {
    auto rows = std::make_unique<recordset::RowStore>(std::vector<FieldInfo>{{"name", VarType::String}});
    for (const char* name : {"a", "Red Brick ", "b", "red brick", "RED BRICK   ", "c"}) {
        rows->BeginRow();
        rows->PutText(0, name);
    }
    MemoryRecordset rs(std::move(rows));
    for (int i = 0; i < 10; ++i) {  // more than enough for an index
        rs.MoveFirst();
        rs.Find("name='none'");
        ASSERT_TRUE(rs.Eof());
    }
    for (const char* criteria : {"name='red brick'", "name='RED BRICK  '"}) {
        rs.MoveFirst();
        rs.Find(criteria);
        EXPECT_EQ(rs.AbsolutePosition(), 2) << criteria;
        rs.Find(criteria, 1);
        EXPECT_EQ(rs.AbsolutePosition(), 4) << criteria;
        rs.Find(criteria, 1);
        EXPECT_EQ(rs.AbsolutePosition(), 5) << criteria;
        rs.Find(criteria, 1);
        EXPECT_TRUE(rs.Eof()) << criteria;
    }
}

TEST(Find, TextsCompareInTheOrderOfTheStore) {
    // Texts are equal when they begin alike; a longer one may be equal to another with a key, so it has none.
    const TextOrder byFirst = {
        [](std::string_view left, std::string_view right) noexcept {
            return left.substr(0, 1).compare(right.substr(0, 1));
        },
        [](std::string_view text) noexcept {
            return text.size() == 1 ? std::optional(static_cast<std::uint64_t>(text[0])) : std::nullopt;
        },
    };
    struct Case {
        std::vector<const char*> names;
        const char* criteria;
        int position;
    };
    const Case cases[] = {
        {{"a", "b", "b", "c"}, "name='b'", 2},    {{"a", "b", "b", "c"}, "name='bx'", 2},
        {{"a", "b", "b", "c"}, "name='d'", -3},   {{"a", "bx", "b", "c"}, "name='b'", 2},
        {{"a", "bx", "by", "c"}, "name='bz'", 2}, {{"ax", "b", "c"}, "name='c'", 3},
        {{"ax", "b", "c"}, "name<>'a'", 2},       {{"ax", "b", "c"}, "name>'by'", 3},
    };
    for (const Case& c : cases) {
        auto rows = std::make_unique<recordset::RowStore>(std::vector<FieldInfo>{{"name", VarType::String}});
        for (const char* name : c.names) {
            rows->BeginRow();
            rows->PutText(0, name);
        }
        MemoryRecordset rs(std::move(rows), false, &byFirst);
        for (int i = 0; i < 20; ++i) {
            rs.MoveFirst();
            rs.Find(c.criteria);
            ASSERT_EQ(rs.AbsolutePosition(), c.position) << c.names[0] << ' ' << c.criteria << ", search " << i;
        }
    }
}

TEST(Find, StepsThroughManyEqualRowsAtOnceEach) {
    constexpr int kRows = 100000;
    auto rows = std::make_unique<recordset::RowStore>(std::vector<FieldInfo>{{"pdID", VarType::Long}});
    for (int i = 0; i < kRows; ++i) {
        rows->BeginRow();
        rows->PutLong(0, i % 2);
    }
    MemoryRecordset rs(std::move(rows));
    for (int i = 0; i < 10; ++i) {
        rs.MoveFirst();
        rs.Find("pdID=7");
    }
    int found = 0;
    rs.MoveFirst();
    for (rs.Find("pdID=1"); !rs.Eof(); rs.Find("pdID=1", 1)) ++found;
    EXPECT_EQ(found, kRows / 2);
}

}  // namespace
}  // namespace kpTables
