Dim t, amount, number
Set t = CreateObject("kpTables.CTables")
Say t.Version
Say t.AllTrim("ab-CD 12号")
amount = 10
number = 4
Say t.CalcPrice(amount, number)
t.Speciality = "建材"
Say t.Speciality
t.isSQL = True
Say t.isSQL
Say TypeName(t.Version)
Say TypeName(t.CalcPrice(10, 4))
On Error Resume Next
t.Get单据金额
Say Err.Number & " " & Err.Source
Err.Clear
t.没有这个方法
Say Err.Number
Err.Clear
t.rs期初记录 0, 1
Say Err.Number & " " & Err.Source
Err.Clear
t.Get单据金额 "abc", "入库"
Say Err.Number & " " & CLng(InStr(Err.Description, "rBillID") > 0)
Err.Clear
t.Update "rs仓库列表", "仓库设置", 5
Say Err.Number & " 5"
