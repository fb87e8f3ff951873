
' A host's own connection and recordset, in a few lines of script.
Class Rows
    Public CacheSize
    Public RecordCount
End Class

Class Connection
    Public Given
    Public Function Execute(text, affected, options)
        Say text & "|" & options
        If InStr(text, "工资表") > 0 Then Err.Raise &H80040E14, "Provider", "no such table"
        Set Given = New Rows
        Set Execute = Given
    End Function
End Class

Dim t, c, rs
Set t = CreateObject("kpTables.CTables")
Set c = New Connection
Set t.Cnn = c
Set rs = t.rs生产厂家()
Say CLng(rs Is c.Given) & " " & rs.CacheSize
Say t.操作员_Update(3, "张三")
On Error Resume Next
t.rs工资表 1
Say Err.Number
