// Text in, canonical text out; and the canonical text reads as the same tree.
#include <gtest/gtest.h>

#include <string>

#include "TreeDump.h"
#include "sql/parse/Parser.h"
#include "sql/parse/TextPrinter.h"

namespace kpTables::sql::parse {
namespace {

struct GoldenText {
    const char* text;
    const char* canonical;
};

template <std::size_t N>
void CheckGolden(const GoldenText (&rows)[N]) {
    for (const GoldenText& row : rows) {
        SCOPED_TRACE(row.text);
        const StatementPtr tree = Parse(row.text);
        EXPECT_EQ(Print(*tree), row.canonical);
        EXPECT_EQ(Dump(*Parse(row.canonical)), Dump(*tree));
    }
}

TEST(Golden, Select) {
    const GoldenText rows[] = {
        {"select * from T", "SELECT * FROM T"},
        {"Select T.*,a From T;", "SELECT T.*, a FROM T"},
        {"SELECT 1", "SELECT 1"},
        {"Select Distinct a x,b As y From T z", "SELECT DISTINCT a AS x, b AS y FROM T AS z"},
        {"Select All a From T", "SELECT a FROM T"},
        {"Select DistinctRow a From T", "SELECT a FROM T"},
        {"Select Distinct top 3 a From T", "SELECT DISTINCT TOP 3 a FROM T"},
        {"Select Top 2  * From T", "SELECT TOP 2 * FROM T"},
        {"Select Top From T", "SELECT Top FROM T"},
        {"Select Top,Percent From T", "SELECT Top, [Percent] FROM T"},
        {"Select a From T Where b Group By a Having Count(*)>1 Order By a Desc,b Asc,c",
         "SELECT a FROM T WHERE b GROUP BY a HAVING Count(*) > 1 ORDER BY a DESC, b, c"},
        {"Select Sum(a) From T Having Sum(a)>0", "SELECT Sum(a) FROM T HAVING Sum(a) > 0"},
        {"\tSelect\r\n*\u3000From\nT ", "SELECT * FROM T"},
        {"Select * From A,B c,(Select 1 As x) d", "SELECT * FROM A, B AS c, (SELECT 1 AS x) AS d"},
        {"Select * From (Select a From T)", "SELECT * FROM (SELECT a FROM T)"},
        {"Select * From 操作员 Where姓名='王芳'", "SELECT * FROM 操作员 WHERE 姓名 = '王芳'"},
        {"Select * From 商品设置 Where  pdID=5And  ClassCode='01'",
         "SELECT * FROM 商品设置 WHERE pdID = 5 AND ClassCode = '01'"},
        {"Select * From 厂商资料 Where 单位名称＝'大兴'", "SELECT * FROM 厂商资料 WHERE 单位名称 = '大兴'"},
    };
    CheckGolden(rows);
}

TEST(Golden, RowsOfSelect) {
    const GoldenText rows[] = {
        {"Select Top (5) a From dbo.T", "SELECT TOP 5 a FROM T"},
        {"Select Top 12.5 Percent a From T", "SELECT TOP 12.5 PERCENT a FROM T"},
        {"Select Top (5) Percent a From [dbo].[T] x", "SELECT TOP 5 PERCENT a FROM T AS x"},
        {"Select DistinctRow A.x From A Inner Join B On A.x=B.x",
         "SELECT DISTINCTROW A.x FROM A INNER JOIN B ON A.x = B.x"},
        {"Select a From T Order By a Offset 5 Rows", "SELECT a FROM T ORDER BY a OFFSET 5 ROWS"},
        {"Select a From T Order By a Offset 0 Row Fetch First 1 Row Only",
         "SELECT a FROM T ORDER BY a OFFSET 0 ROWS FETCH NEXT 1 ROWS ONLY"},
        {"Select Offset, Fetch From T Offset", "SELECT Offset, Fetch FROM T AS Offset"},
        {"Select a Into U From T", "SELECT a INTO U FROM T"},
        {"Select dbo.T.a, [dbo].T.* From dbo.T", "SELECT T.a, T.* FROM T"},
    };
    CheckGolden(rows);
}

TEST(Golden, Lexical) {
    const GoldenText rows[] = {
        {"Select a -- one\n, b /* two */ From T -- end", "SELECT a, b FROM T"},
        {"-- first\nSelect 1;", "SELECT 1"},
        {"Select N'a''b', n'x'", "SELECT 'a''b', 'x'"},
        {"Select \"a\"\"b'c\"", "SELECT 'a\"b''c'"},
        {"Select `a b`, `a]b` From `T`", "SELECT [a b], `a]b` FROM T"},
        {"Select a % 2 * 3, a Mod 2", "SELECT (a MOD 2) * 3, a MOD 2"},
        {"Select a From T Where a !< 1 And a !> 2 And a != 3", "SELECT a FROM T WHERE a >= 1 AND a <= 2 AND a <> 3"},
        {"Select a From T Where a = Any (Select b From U) Or a <> All (Select b From U) Or a = Some (Select b From U)",
         "SELECT a FROM T WHERE a IN (SELECT b FROM U) OR a NOT IN (SELECT b FROM U) OR a IN (SELECT b FROM U)"},
        {"Select a From T Where a !< All (Select b From U) And a < Some (Select b From U)",
         "SELECT a FROM T WHERE a >= ALL (SELECT b FROM U) AND a < ANY (SELECT b FROM U)"},
        {"Select [T]![a], T!b From T Where a ALike 'x%'", "SELECT T.a, T.b FROM T WHERE a LIKE 'x%'"},
        {"Select a Collate Chinese_PRC_CI_AS From T Order By a Collate database_default", "SELECT a FROM T ORDER BY a"},
        {"Select TRY_CAST(a As int), try_convert(int, a)", "SELECT TRY_CAST(a AS LONG), TRY_CAST(a AS LONG)"},
        {"Select DLookup('a+1', '[T]', 'b=''x''')", "SELECT (SELECT TOP 1 a + 1 FROM T WHERE b = 'x')"},
        {"Select DCount('*', 'T', 'b=' & u.b) From u", "SELECT (SELECT Count(*) FROM T WHERE b = u.b) FROM u"},
        {"Begin Tran", "BEGIN TRANSACTION"},
        {"Commit Work;", "COMMIT"},
        {"Rollback Transaction", "ROLLBACK"},
        {"Set NoCount On", "SET NOCOUNT ON"},
        {"Delete Top 5 From T Where a=1", "DELETE TOP (5) FROM T WHERE a = 1"},
        {"Update Top (5) T Set a=1", "UPDATE TOP (5) T SET a = 1"},
        {"Select Top 3 With Ties a From T Order By a", "SELECT TOP 3 WITH TIES a FROM T ORDER BY a"},
        {"Select x From (Values (1), (2)) As t(x)", "SELECT x FROM (SELECT 1 AS x UNION ALL SELECT 2) AS t"},
        {"Select * From A Full Outer Join B On A.x=B.x", "SELECT * FROM A FULL JOIN B ON A.x = B.x"},
        {"Select name From sys.tables", "SELECT name FROM [sys.tables]"},
    };
    CheckGolden(rows);
}

TEST(Golden, QuotesAreNamesOfTheServer) {
    EXPECT_EQ(Print(*Parse("Select \"a b\", 'x' From \"T\"", {}, Dialect::SqlServer)), "SELECT [a b], 'x' FROM T");
}

TEST(Golden, With) {
    const GoldenText rows[] = {
        {"With c As (Select 1 As x) Select * From c", "WITH c AS (SELECT 1 AS x) SELECT * FROM c"},
        {"With c (a, b) As (Select 1, 2), d As (Select a From c) Insert Into T Select a From d;",
         "WITH c (a, b) AS (SELECT 1, 2), d AS (SELECT a FROM c) INSERT INTO T SELECT a FROM d"},
        {"With c As (Select 1 As x) Delete From T Where a In (Select x From c)",
         "WITH c AS (SELECT 1 AS x) DELETE FROM T WHERE a IN (SELECT x FROM c)"},
    };
    CheckGolden(rows);
}

TEST(Golden, Window) {
    const GoldenText rows[] = {
        {"Select Row_Number() Over (Order By a Desc) From T", "SELECT Row_Number() OVER (ORDER BY a DESC) FROM T"},
        {"Select Sum(a) Over (), Over From T", "SELECT Sum(a) OVER (), Over FROM T"},
        {"Select Sum(a) Over (Partition By b, c Order By d, e Rows Between 2 Preceding And Unbounded Following) s From T",
         "SELECT Sum(a) OVER (PARTITION BY b, c ORDER BY d, e ROWS BETWEEN 2 PRECEDING AND UNBOUNDED FOLLOWING) AS s "
         "FROM T"},
        {"Select Sum(a) Over (Order By d Range Unbounded Preceding) From T",
         "SELECT Sum(a) OVER (ORDER BY d RANGE BETWEEN UNBOUNDED PRECEDING AND CURRENT ROW) FROM T"},
    };
    CheckGolden(rows);
}

TEST(Golden, Join) {
    const GoldenText rows[] = {
        {"Select * From A Inner Join B On A.x=B.x Left Join C On B.y=C.y",
         "SELECT * FROM A INNER JOIN B ON A.x = B.x LEFT JOIN C ON B.y = C.y"},
        {"Select * From (A Inner Join B On A.x=B.x) Left Outer Join C On B.y=C.y",
         "SELECT * FROM A INNER JOIN B ON A.x = B.x LEFT JOIN C ON B.y = C.y"},
        {"Select * From A Right Outer Join (B b2 Left Join C On b2.y=C.y) On A.x=b2.x",
         "SELECT * FROM A RIGHT JOIN (B AS b2 LEFT JOIN C ON b2.y = C.y) ON A.x = b2.x"},
        {"Select * From A Join B On A.x=B.x Cross Join C",
         "SELECT * FROM A INNER JOIN B ON A.x = B.x INNER JOIN C ON True"},
        {"Select * From A Left Join B Join C On B.y=C.y On A.x=B.x",
         "SELECT * FROM A LEFT JOIN (B INNER JOIN C ON B.y = C.y) ON A.x = B.x"},
        {"Select * From A With (NoLock), B x With (ReadUncommitted)", "SELECT * FROM A, B AS x"},
        {"Select * From A Cross, B Full", "SELECT * FROM A AS Cross, B AS Full"},
        {"Select * From ((A))", "SELECT * FROM A"},
        {"Select * From ((Select 1 As x) As d Inner Join A On d.x=A.x)",
         "SELECT * FROM (SELECT 1 AS x) AS d INNER JOIN A ON d.x = A.x"},
        {"Select * From ((Select 1 As x) Union (Select 2)) d", "SELECT * FROM (SELECT 1 AS x UNION SELECT 2) AS d"},
        {"Select * From ((Select 1 As x)) d", "SELECT * FROM (SELECT 1 AS x) AS d"},
        {"SELECT Lst.月份 FROM 项目设置 AS pj RIGHT JOIN (仓库设置 AS dp RIGHT JOIN (厂商资料 AS ks RIGHT JOIN "
         "(入库目录 "
         "AS Lst LEFT JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) "
         "ON "
         "pj.项目ID = Lst.pjID ",
         "SELECT Lst.月份 FROM 项目设置 AS pj RIGHT JOIN (仓库设置 AS dp RIGHT JOIN (厂商资料 AS ks RIGHT JOIN "
         "(入库目录 "
         "AS Lst LEFT JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) "
         "ON "
         "pj.项目ID = Lst.pjID"},
    };
    CheckGolden(rows);
}

TEST(Golden, Union) {
    const GoldenText rows[] = {
        {"Select a From A Union Select b From B Union All Select c From C Order By 1",
         "SELECT a FROM A UNION SELECT b FROM B UNION ALL SELECT c FROM C ORDER BY 1"},
        {"Select a From A Order By a Union (Select b From B Order By b)",
         "(SELECT a FROM A ORDER BY a) UNION (SELECT b FROM B ORDER BY b)"},
        {"Select a From A Order By a Union Select b From B Order By b",
         "(SELECT a FROM A ORDER BY a) UNION SELECT b FROM B ORDER BY b"},
        {"Select a From A Intersect Select b From B Except Select c From C",
         "SELECT a FROM A INTERSECT SELECT b FROM B EXCEPT SELECT c FROM C"},
        {"Select a From A Union Select b From B Intersect Select c From C Except Select d From D Order By 1",
         "SELECT a FROM A UNION (SELECT b FROM B INTERSECT SELECT c FROM C) EXCEPT SELECT d FROM D ORDER BY 1"},
        {"(Select a From A)", "SELECT a FROM A"},
        {"((Select a From A) Order By a)", "SELECT a FROM A ORDER BY a"},
        {"(Select Top 2 a From A Order By b) Order By a", "(SELECT TOP 2 a FROM A ORDER BY b) ORDER BY a"},
        {"Select a From A Union All (Select b From B Union Select c From C)",
         "SELECT a FROM A UNION ALL (SELECT b FROM B UNION SELECT c FROM C)"},
        {"SELECT Distinct CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) AS 日期 FROM 入库目录 as "
         "list1  "
         "ORDER BY CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) UNION (SELECT Distinct "
         "CDATE([list2].年份 & '-' &  [list2].月份 & '-' & [list2].日子) AS 日期 FROM 出库目录 AS list2 ORDER BY "
         "CDATE([list2].年份 & '-' &  [list2].月份 & '-' & [list2].日子))",
         "(SELECT DISTINCT CDATE(list1.年份 & '-' & list1.月份 & '-' & list1.日子) AS 日期 FROM 入库目录 AS list1 "
         "ORDER BY CDATE(list1.年份 & '-' & list1.月份 & '-' & list1.日子)) UNION (SELECT DISTINCT CDATE(list2.年份 & "
         "'-' & list2.月份 & '-' & list2.日子) AS 日期 FROM 出库目录 AS list2 ORDER BY CDATE(list2.年份 & '-' & "
         "list2.月份 & '-' & list2.日子))"},
    };
    CheckGolden(rows);
}

TEST(Golden, Transform) {
    const GoldenText rows[] = {
        {"TRANSFORM Sum(a) AS s SELECT b FROM T GROUP BY b PIVOT c",
         "TRANSFORM Sum(a) AS s SELECT b FROM T GROUP BY b PIVOT c"},
        {"Transform Sum(a) Select b From T Group By b Order By b Pivot Year(d) & '' In ('2003','2004')",
         "TRANSFORM Sum(a) SELECT b FROM T GROUP BY b ORDER BY b PIVOT Year(d) & '' IN ('2003', '2004')"},
        {"Transform Sum(a) Select b From T Group By b PIVOT月份",
         "TRANSFORM Sum(a) SELECT b FROM T GROUP BY b PIVOT 月份"},
    };
    CheckGolden(rows);
}

TEST(Golden, Change) {
    const GoldenText rows[] = {
        {"Insert Into T Values (1,'a',Null)", "INSERT INTO T VALUES (1, 'a', NULL)"},
        {"insert into T (a,[b c]) values (-1,#2004-3-7#)", "INSERT INTO T (a, [b c]) VALUES (-1, #2004-3-7#)"},
        {"Insert Into T (a) Select b From U", "INSERT INTO T (a) SELECT b FROM U"},
        {"Insert Into T (Select b From U)", "INSERT INTO T SELECT b FROM U"},
        {"Insert Into T (a) (Select b From U) Union (Select c From V)",
         "INSERT INTO T (a) SELECT b FROM U UNION SELECT c FROM V"},
        {"Update T Set a=a+1,T.b='x' Where c Is Null", "UPDATE T SET a = a + 1, T.b = 'x' WHERE c IS NULL"},
        {"Update T As x Set a=True", "UPDATE T AS x SET a = True"},
        {"Update T x Set a＝1", "UPDATE T AS x SET a = 1"},
        {"Update 操作员 Set姓名='王芳'", "UPDATE 操作员 SET 姓名 = '王芳'"},
        {"Delete From T", "DELETE FROM T"},
        {"Delete * From T x Where a=1", "DELETE FROM T AS x WHERE a = 1"},
        {"Delete From操作员", "DELETE FROM 操作员"},
        {"Insert T Values (1, 2), (3, 4)", "INSERT INTO T VALUES (1, 2), (3, 4)"},
        {"Insert Into dbo.T Default Values", "INSERT INTO T DEFAULT VALUES"},
        {"Update A Inner Join B On A.x=B.x Set A.y=B.y, A.z=1 Where B.w",
         "UPDATE A INNER JOIN B ON A.x = B.x SET A.y = B.y, A.z = 1 WHERE B.w"},
        {"Update DistinctRow A, B Set A.y=B.y", "UPDATE A, B SET A.y = B.y"},
        {"Update a Set a.y=b.y From dbo.T a Join U b On a.x=b.x",
         "UPDATE a SET a.y = b.y FROM T AS a INNER JOIN U AS b "
         "ON a.x = b.x"},
        {"Delete A.* From A Inner Join B On A.x=B.x", "DELETE FROM A FROM A INNER JOIN B ON A.x = B.x"},
        {"Delete DistinctRow A.* From A, B", "DELETE FROM A FROM A, B"},
        {"Delete a From T a Join U b On a.x=b.x Where b.y=1",
         "DELETE FROM a FROM T AS a INNER JOIN U AS b ON a.x = b.x WHERE b.y = 1"},
        {"Delete T Where a=1", "DELETE FROM T WHERE a = 1"},
        {"Truncate Table dbo.T", "TRUNCATE TABLE T"},
    };
    CheckGolden(rows);
}

TEST(Golden, Definition) {
    const GoldenText rows[] = {
        {"Create Table T (a Counter Primary Key,b Text(50) Not Null,c Currency Default 0,d DateTime,e YesNo,f Memo)",
         "CREATE TABLE T (a COUNTER PRIMARY KEY, b TEXT(50) NOT NULL, c CURRENCY DEFAULT 0, d DATETIME, e YESNO, f "
         "MEMO)"},
        {"Create Table T (a LONG, b AS (a), c AS (x))", "CREATE TABLE T (a LONG, b LONG AS (a), c AS (x))"},
        {"CREATE TABLE T (a AUTOINCREMENT(1,1), b INT IDENTITY, c INTEGER NULL, d INTEGER4, e LONG DEFAULT -1 UNIQUE)",
         "CREATE TABLE T (a COUNTER, b COUNTER, c LONG, d LONG, e LONG DEFAULT -1 UNIQUE)"},
        {"CREATE TABLE T (a SHORT, b SMALLINT, c INTEGER2, d BYTE, e DOUBLE, f FLOAT, g FLOAT8, h NUMBER, i REAL, j "
         "SINGLE, k MONEY)",
         "CREATE TABLE T (a SHORT, b SHORT, c SHORT, d SHORT, e DOUBLE, f DOUBLE, g DOUBLE, h DOUBLE, i DOUBLE, j "
         "DOUBLE, k CURRENCY)"},
        {"CREATE TABLE T (a DATE, b TIME, c SMALLDATETIME, d LOGICAL, e BIT, f BOOLEAN, g TEXT, h VARCHAR(8), i "
         "CHAR(4), "
         "j NVARCHAR(9), k STRING, l LONGTEXT, m NTEXT, n NCHAR(2))",
         "CREATE TABLE T (a DATETIME, b DATETIME, c DATETIME, d YESNO, e YESNO, f YESNO, g TEXT(255), h TEXT(8), i "
         "CHAR(4), j TEXT(9), k TEXT(255), l MEMO, m MEMO, n CHAR(2))"},
        {"CREATE TABLE T (Key LONG CONSTRAINT p PRIMARY KEY, Date DATETIME CONSTRAINT u UNIQUE, d YESNO DEFAULT False)",
         "CREATE TABLE T (Key LONG PRIMARY KEY, Date DATETIME UNIQUE, d YESNO DEFAULT False)"},
        {"CREATE TABLE T (a LONG, b LONG, CONSTRAINT p PRIMARY KEY (a,b), UNIQUE (b), CONSTRAINT u UNIQUE (b,a))",
         "CREATE TABLE T (a LONG, b LONG, PRIMARY KEY (a, b), UNIQUE (b), UNIQUE (b, a))"},
        {"CREATE TABLE 系统选项 (Item TEXT(50), Discription MEMO DEFAULT 'it''s')",
         "CREATE TABLE 系统选项 (Item TEXT(50), Discription MEMO DEFAULT 'it''s')"},
        {"Create Table T (a Long,[Order] Long As(a),b Text(5) As ([Order]))",
         "CREATE TABLE T (a LONG, [Order] LONG AS (a), b TEXT(5) AS ([Order]))"},
        {"Create Table T (a Int Identity(1,1) Primary Key,b As (a),c NVarChar(9),d As ([c]))",
         "CREATE TABLE T (a COUNTER PRIMARY KEY, b LONG AS (a), c TEXT(9), d TEXT(9) AS (c))"},
        {"Create Index i On T (a,b Desc,c Asc)", "CREATE INDEX i ON T (a, b DESC, c)"},
        {"Create Unique Index [Primary] On T (a)", "CREATE UNIQUE INDEX [Primary] ON T (a)"},
        {"Drop Table T", "DROP TABLE T"},
        {"Drop Index i On T", "DROP INDEX i ON T"},
        {"Alter Table T Add Column a Text(20)", "ALTER TABLE T ADD COLUMN a TEXT(20)"},
        {"Create Table dbo.T (a NVARCHAR(Max), b DATETIME2(7), c SMALLMONEY Constraint d Default (0), e INT "
         "IDENTITY(1,1) Not Null Primary Key Clustered, Constraint u Unique NonClustered (a Asc, b Desc)) On [Primary]",
         "CREATE TABLE T (a MEMO, b DATETIME, c CURRENCY DEFAULT 0, e COUNTER NOT NULL PRIMARY KEY, UNIQUE (a, b))"},
        {"Drop Table If Exists dbo.T", "DROP TABLE IF EXISTS T"},
        {"Drop Index T.i", "DROP INDEX i ON T"},
        {"Create NonClustered Index i On dbo.T (a)", "CREATE INDEX i ON T (a)"},
        {"Create Index i On T (a) With Primary", "CREATE UNIQUE INDEX i ON T (a)"},
        {"Alter Table T Add a LONG, b TEXT(5) Null", "ALTER TABLE T ADD COLUMN a LONG, b TEXT(5)"},
        {"Alter Table T Alter Column a TEXT(9) Not Null", "ALTER TABLE T ALTER COLUMN a TEXT(9) NOT NULL"},
        {"Alter Table T Drop Column a, Column b, c", "ALTER TABLE T DROP COLUMN a, b, c"},
        {"Alter Table T Add Constraint u Unique (a, b)", "CREATE UNIQUE INDEX u ON T (a, b)"},
        {"Alter Table T Add Primary Key (a)", "CREATE UNIQUE INDEX PK_a ON T (a)"},
        {"Alter Table T Drop Constraint u", "DROP INDEX u ON T"},
        {"Alter Table T Add a LONG NOT NULL DEFAULT 0", "ALTER TABLE T ADD COLUMN a LONG NOT NULL DEFAULT 0"},
    };
    CheckGolden(rows);
}

}  // namespace
}  // namespace kpTables::sql::parse
