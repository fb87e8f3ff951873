"""What the tests of kpbook with books on a server share: a firm's book in a file, and psql."""

import pathlib
import subprocess
import tempfile
import unittest

from kpbook_case import KPBOOK, SERVER, KpbookCase

FIRM = pathlib.Path(__file__).resolve().parents[2] / "samples" / "firm"


def kpbook(*words):
    subprocess.run([KPBOOK, *map(str, words)], check=True, capture_output=True)


def make_firm_book(book):
    """A month of a small firm, closed, with a table and a column of its own."""
    kpbook("new", book, "--company", "测试商行", "--year", "2026", "--month", "1", "--warehouse", "中心仓库", "--warehouse", "门店")
    for words in (["product", "商品编号=01001", "商品名称=普通硅酸盐水泥", "计量单位=吨"],
                  ["product", "商品编号=01002", "商品名称=白水泥 "], ["product", "商品编号=02001", "商品名称=螺纹钢"],
                  ["supplier", "企业名称=江南水泥厂"], ["supplier", "企业名称=沪东钢铁"],
                  ["customer", "企业名称=杭州宏图建材有限公司", "单位名称=杭州宏图"],
                  ["project", "项目编号=P01", "项目名称=春江花苑"]):
        kpbook("add", book, *words)
    kpbook("opening", book, FIRM / "opening.csv")
    kpbook("bill", "add", book, "in", FIRM / "purchases.csv")
    kpbook("bill", "add", book, "out", FIRM / "sales.csv")
    kpbook("bill", "add", book, "cost", FIRM / "costs.csv")
    kpbook("close", book, "--month", "1", "--cost", "--answer", "yes")
    script = pathlib.Path(book).with_suffix(".sql")
    script.write_text("""
        Create Table 备忘 (编号 COUNTER PRIMARY KEY, 内容 TEXT(50) NOT NULL, 金额 CURRENCY DEFAULT 1.5, 数 DOUBLE, 有 YESNO,
            日 DATETIME, 长 MEMO, 价 DECIMAL(8,2), 年 SHORT DEFAULT 2026);
        Insert Into 备忘 (内容, 金额, 数, 有, 日, 长, 价) Values ('一''二  ', -0.0001, 0.1, True, #2026-1-31 13:05:09#, '𠮷', 3.25);
        Insert Into 备忘 (内容, 金额, 数, 长) Values ('', 922337203685477.5807, -1E+300, Null);
        Insert Into 备忘 (内容) Values ('去');
        Delete From 备忘 Where 编号=3;
        Alter Table 商品设置 Add Column 产地 TEXT(20);
        Update 商品设置 Set 产地='浙江' Where pdID=2;
        Alter Table 商品设置 Alter Column 备注 MEMO;
        Insert Into 客户资料 (企业名称) Values ('短暂');
        Delete From 客户资料 Where 企业名称='短暂'
    """, encoding="utf-8")
    kpbook("sql", book, "-f", script)


_scratch = tempfile.TemporaryDirectory()
FIRM_BOOK = pathlib.Path(_scratch.name) / "firm.kpbook"


def psql(text, url=None):
    """What a statement answers, a line a row; an error is raised with the server's words."""
    done = subprocess.run(["psql", "-X", "-q", "-A", "-t", "-v", "ON_ERROR_STOP=1", "-d", url or SERVER, "-c", text],
                          capture_output=True, text=True, timeout=60)
    if done.returncode:
        raise RuntimeError(done.stderr)
    return done.stdout.splitlines()


@unittest.skipUnless(SERVER, "no server")
class ServerCase(KpbookCase):
    @classmethod
    def setUpClass(cls):
        if not FIRM_BOOK.exists():
            make_firm_book(FIRM_BOOK)

    def url(self, name):
        return f"{SERVER}&book={name}"

    def copied(self, name):
        """The firm's book on the server, under a name that no other test has."""
        name = f"{self.folder.name} {name}"
        self.run_kpbook("copy", FIRM_BOOK, self.url(name.replace(" ", "%20")))
        return name, self.url(name.replace(" ", "%20"))

    def exported(self, book):
        """All tables as files, by name."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        self.run_kpbook("export", book, folder)
        return {file.name: file.read_text("utf-8") for file in folder.iterdir()}

    def schemas(self):
        return psql("SELECT nspname FROM pg_namespace WHERE nspname !~ '^(pg_|information_schema|kp$|public)' ORDER BY 1")
