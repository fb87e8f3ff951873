Attribute VB_Name = "Stock"
' Visual Basic 6, early bound: a project with references to "kpTables" (kpTables.tlb) and to Microsoft ActiveX Data
' Objects. Prints the closing stock of a month from an Access database, and tells the forms which table has changed.
Option Explicit

Private tables As kpTables.CTables

Public Sub Main()
    Dim cnn As ADODB.Connection, rs As ADODB.Recordset, month As Integer
    Set cnn = New ADODB.Connection
    cnn.CursorLocation = adUseClient
    cnn.Open "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" & App.Path & "\shop.mdb"

    Set tables = New kpTables.CTables
    Set tables.Cnn = cnn
    tables.isSQL = False

    month = 3
    Set rs = tables.rs余额记录(0, month)
    Do Until rs.EOF
        Debug.Print rs!商品编号, rs!商品名称, rs!本期库存数量, rs!本期库存金额
        rs.MoveNext
    Loop
    rs.Close

    On Error Resume Next
    tables.rs商品资料 0
    If Err.Number <> 0 Then Debug.Print Hex(Err.Number), Err.Description, Err.Source
    On Error GoTo 0

    If tables.BillAdulting("入库", 12, "张三", Date) Then tables.Update "BillAdulting", "入库目录", 12
    Set tables = Nothing
    cnn.Close
End Sub
