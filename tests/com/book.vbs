Dim cnn, rs, t, f, line, affected, data
Set cnn = CreateObject("kpTables.Connection")
Say cnn.State
cnn.Open BOOK
Say cnn.State & " " & TypeName(cnn.Execute("Select Count(*) As n From 仓库设置")("n").Value)
cnn.Execute "Insert Into 商品设置 (商品编号,商品名称) Values ('02001','螺纹钢')", affected
Say affected
Set t = CreateObject("kpTables.CTables")
Set t.Cnn = cnn
Say CLng(t.Cnn Is cnn)
Set rs = t.rs商品资料(1)
For Each f In rs.Fields
    If f.Name = "商品编号" Or f.Name = "商品名称" Then line = line & f.Name & "=" & f.Value & ";"
Next
Say line
Say rs("商品名称") & " " & rs.Fields.Item("商品编号") & " " & rs.Fields("商品编号").Type & " " & rs.CacheSize & " " & rs.RecordCount
rs.MoveNext
Say CLng(rs.EOF)
rs.Close
Set rs = CreateObject("kpTables.Recordset")
rs.Open "客户资料", cnn, 2, 2, 2
rs.AddNew
rs("企业名称") = "杭州宏图"
rs.Fields("单位名称").Value = "宏图"
rs.Update
rs.AddNew Array("企业名称", "单位名称"), Array("上海建工", "建工")
Say rs.RecordCount
rs.Close
Set rs = cnn.Execute("Select 企业名称, 单位名称 From 客户资料 Order By 企业名称")
rs.Sort = "企业名称 DESC"
rs.Find "单位名称='宏图'"
Say rs("企业名称")
data = rs.GetRows(-1, 1)
Say UBound(data, 1) & " " & UBound(data, 2) & " " & data(0, 0) & " " & data(1, 1)
Say cnn.BeginTrans
Say t.Del_客户分类(1)
cnn.Execute "Delete From 客户资料"
cnn.RollbackTrans
Say cnn.Execute("Select Count(*) As n From 客户资料")(0)
On Error Resume Next
cnn.Execute "Selec nothing"
Say Err.Number & " " & Err.Source
Err.Clear
Set rs = cnn.Execute("Select 没有 From 客户资料")
Say Err.Number
Err.Clear
line = rs("没有这一列")
Say Err.Number
Err.Clear
cnn.Close
t.rsLog
Say Err.Number
