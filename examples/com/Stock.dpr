program Stock;
{ Delphi 2009 or later, late bound: Stock BOOK MONTH prints a month's closing stock. }
{$APPTYPE CONSOLE}
uses
  ActiveX, ComObj, SysUtils, Variants;

procedure PrintStock(const Book: string; Month: SmallInt);
var
  Connection, Tables, Rows: OleVariant;
begin
  Connection := CreateOleObject('kpTables.Connection');
  Connection.Open(Book);
  Tables := CreateOleObject('kpTables.CTables');
  Tables.Cnn := Connection;
  Rows := Tables.rs余额记录(0, Month);
  while not Rows.EOF do
  begin
    Writeln(VarToStr(Rows.Fields.Item('商品编号').Value), ' ', VarToStr(Rows.Fields.Item('商品名称').Value), ' ',
      VarToStr(Rows.Fields.Item('本期库存数量').Value), ' ', VarToStr(Rows.Fields.Item('本期库存金额').Value));
    Rows.MoveNext;
  end;
  Rows.Close;
  Connection.Close;
end;

begin
  CoInitialize(nil);
  try
    try
      PrintStock(ParamStr(1), StrToInt(ParamStr(2)));
    except
      on Error: EOleException do
      begin
        Writeln(ErrOutput, IntToHex(Error.ErrorCode, 8), ' ', Error.Message, ' (', Error.Source, ')');
        ExitCode := 1;
      end;
    end;
  finally
    CoUninitialize;
  end;
end.
