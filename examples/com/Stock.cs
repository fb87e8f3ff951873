// C#, late bound by dynamic: csc Stock.cs, then Stock BOOK MONTH. [STAThread] gives the objects the apartment that they
// live in; the width (x86 or x64) is that of the registered server.
using System;

static class Stock
{
    [STAThread]
    static int Main(string[] args)
    {
        dynamic connection = Activator.CreateInstance(Type.GetTypeFromProgID("kpTables.Connection", true));
        connection.Open(args[0]);
        dynamic tables = Activator.CreateInstance(Type.GetTypeFromProgID("kpTables.CTables", true));
        tables.Cnn = connection;
        try
        {
            dynamic rows = tables.rs余额记录(0, short.Parse(args[1]));
            for (; !rows.EOF; rows.MoveNext())
                Console.WriteLine("{0} {1} {2} {3}", rows.Fields["商品编号"].Value, rows.Fields["商品名称"].Value,
                                  rows.Fields["本期库存数量"].Value, rows.Fields["本期库存金额"].Value);
            rows.Close();
            return 0;
        }
        catch (System.Runtime.InteropServices.COMException error)
        {
            // 0x800A0000 and Visual Basic's number, or a database's own.
            Console.Error.WriteLine("{0:X8} {1} ({2})", error.ErrorCode, error.Message, error.Source);
            return 1;
        }
        finally
        {
            connection.Close();
        }
    }
}
