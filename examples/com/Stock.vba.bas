Attribute VB_Name = "Stock"
' VBA in Office, 32 or 64 bits (the server registered in the same width): late bound, so that no reference is needed.
' Puts the closing stock of a month of a kpTables book on the active sheet; 64-bit Office has no Jet, and needs none.
Option Explicit

Public Sub ListStock()
    Dim cnn As Object, tables As Object, rs As Object, field As Object
    Dim row As Long, column As Long
    Set cnn = CreateObject("kpTables.Connection")
    cnn.Open ThisWorkbook.Path & "\shop.kpbook"

    Set tables = CreateObject("kpTables.CTables")
    Set tables.Cnn = cnn
    Set rs = tables.rs余额记录(0, 3)

    column = 1
    For Each field In rs.Fields
        ActiveSheet.Cells(1, column).Value = field.Name
        column = column + 1
    Next
    row = 2
    Do Until rs.EOF
        For column = 1 To rs.Fields.Count
            ActiveSheet.Cells(row, column).Value = rs.Fields(column - 1).Value
        Next
        row = row + 1
        rs.MoveNext
    Loop
    rs.Close
    cnn.Close
End Sub
