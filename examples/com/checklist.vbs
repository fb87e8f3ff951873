' A check on Windows: cscript //nologo checklist.vbs, in the width (System32 or SysWOW64) whose server is registered.
' Save it in the system's ANSI code page (936) first. Prints a line each, PASS or FAIL, and exits with 1 if one failed.
Option Explicit
Dim failed, files, book, tables, books, rs, field, names
failed = 0
Set files = CreateObject("Scripting.FileSystemObject")
book = files.BuildPath(files.GetSpecialFolder(2), files.GetTempName & ".kpbook")

Sub Check(what, holds)
    If holds Then
        WScript.Echo "PASS " & what
    Else
        WScript.Echo "FAIL " & what
        failed = failed + 1
    End If
End Sub

Set tables = CreateObject("kpTables.CTables")
Check "CTables is created", IsObject(tables)
Check "Version is 10110", tables.Version = "10110"
Check "a Chinese name is found", tables.AllTrim("ab-CD 12号") = "-CD号"
Check "Speciality keeps a text", Keeps("建材")
On Error Resume Next
tables.rsLog
Raised "a method without a connection", 91
tables.NoSuchMember
Raised "an unknown member", 438
tables.Get单据金额
Raised "a missing argument", 449
tables.Get单据金额 "abc", "入库"
Raised "a text for a number", 13
On Error GoTo 0

Set books = CreateObject("kpTables.Bookkeeping")
books.NewBook book, "测试商行", 2026, 1, Array("中心仓库")
books.AddMaster "product", Array("商品编号=01001", "商品名称=水泥")
books.EnterBill "in", Array("日期=2026-1-5", "仓库=中心仓库"), Array(Array("商品=01001", "数量=10", "除税单价=320.5"))
books.Answer = "yes"
Check "a month is closed", books.CloseMonth(1) = 1
On Error Resume Next
books.EnterBill "in", Array("日期=2026-1-6", "仓库=中心仓库"), Array(Array("商品=01001", "数量=1", "除税单价=1"))
Raised "a bill in a closed month", 5
On Error GoTo 0
Check "the book is in order", books.Check.EOF
Set tables.Cnn = books.Cnn
Set rs = tables.rs余额记录(0, 1)
Check "a row's field is read by its name", rs("本期库存数量") = 10
Check "an amount is a Currency", VarType(rs("本期库存金额").Value) = 6 And rs("本期库存金额") = 3205
For Each field In rs.Fields
    names = names & field.Name & ";"
Next
Check "For Each goes through the fields", InStr(names, "pdID;") > 0
Set rs = Nothing
Set tables = Nothing
books.Close
Set books = Nothing
files.DeleteFile book & "*"
WScript.Quit failed

Function Keeps(text)
    tables.Speciality = text
    Keeps = tables.Speciality = text
End Function

Sub Raised(what, number)
    Dim got
    got = Err.Number
    Err.Clear
    Check what & " is error " & number, got = number
End Sub
