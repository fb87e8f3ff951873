' A firm's first month: cscript //nologo first-month.vbs BOOK (a file that does not exist yet)
Option Explicit
Dim books, tables, rs
Set books = CreateObject("kpTables.Bookkeeping")
books.NewBook WScript.Arguments(0), "测试商行", 2026, 1, Array("中心仓库")
books.AddMaster "product", Array("商品编号=01001", "商品名称=普通硅酸盐水泥", "计量单位=吨")
books.AddMaster "supplier", Array("企业名称=江南水泥厂")
books.EnterBill "in", Array("日期=2026-1-5", "仓库=中心仓库", "单位=江南水泥厂"), _
    Array(Array("商品=01001", "数量=10", "除税单价=320.5"))
books.Answer = "yes" ' the goods on the bills get their balance rows
books.CloseMonth 1

Set tables = CreateObject("kpTables.CTables")
Set tables.Cnn = books.Cnn
Set rs = tables.rs余额记录(0, 1)
Do Until rs.EOF
    WScript.Echo rs("商品编号") & " " & rs("本期库存数量") & " " & rs("本期库存金额")
    rs.MoveNext
Loop
