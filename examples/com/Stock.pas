program Stock;
{ Free Pascal 3, late bound: Stock BOOK MONTH prints a month's closing stock. Its identifiers have no Chinese letters, so members
  are called by texts. }
{$mode delphi}
{$codepage utf8}
uses
  ActiveX, ComObj, SysUtils, Variants, Windows;

const
  Reading = DISPATCH_METHOD or DISPATCH_PROPERTYGET;

function Call(const Target: OleVariant; const Name: WideString; const Arguments: array of OleVariant; Kind: Word = Reading): OleVariant;
var
  Given: array of OleVariant;
  Parameters: TDispParams;
  Raised: TExcepInfo;
  Member, Put: TDispID;
  NameText: PWideChar;
  Code: HResult;
  I: Integer;
begin
  NameText := PWideChar(Name);
  OleCheck(IDispatch(Target).GetIDsOfNames(GUID_NULL, @NameText, 1, LOCALE_USER_DEFAULT, @Member));
  SetLength(Given, Length(Arguments));
  for I := 0 to High(Arguments) do
    Given[High(Given) - I] := Arguments[I];
  FillChar(Parameters, SizeOf(Parameters), 0);
  Parameters.rgvarg := Pointer(Given);
  Parameters.cArgs := Length(Given);
  if Kind = DISPATCH_PROPERTYPUTREF then
  begin
    Put := DISPID_PROPERTYPUT;
    Parameters.rgdispidNamedArgs := @Put;
    Parameters.cNamedArgs := 1;
  end;
  FillChar(Raised, SizeOf(Raised), 0);
  Code := IDispatch(Target).Invoke(Member, GUID_NULL, LOCALE_USER_DEFAULT, Kind, Parameters, @Result, @Raised, nil);
  if Code = DISP_E_EXCEPTION then
    raise EOleException.Create(Raised.Description, Raised.SCode, Raised.Source, '', 0);
  OleCheck(Code);
end;

procedure Print(const Text: WideString; Output: DWORD = STD_OUTPUT_HANDLE);
var
  Bytes: UTF8String;
  Written: DWORD;
begin
  Bytes := UTF8Encode(Text) + #10;
  WriteFile(GetStdHandle(Output), Bytes[1], Length(Bytes), Written, nil);
end;

procedure PrintStock(const Book: WideString; Month: LongInt);
var
  Connection, Tables, Rows: OleVariant;

  function Field(const Name: WideString): WideString;
  begin
    Result := VarToWideStr(Call(Call(Rows, 'Fields', [Name]), 'Value', []));
  end;

begin
  Connection := CreateOleObject('kpTables.Connection');
  Call(Connection, 'Open', [Book]);
  Tables := CreateOleObject('kpTables.CTables');
  Call(Tables, 'Cnn', [Connection], DISPATCH_PROPERTYPUTREF);
  Rows := Call(Tables, 'rs余额记录', [0, Month]);
  while not Call(Rows, 'EOF', []) do
  begin
    Print(Field('商品编号') + ' ' + Field('商品名称') + ' ' + Field('本期库存数量') + ' ' + Field('本期库存金额'));
    Call(Rows, 'MoveNext', []);
  end;
  Call(Rows, 'Close', []);
  Call(Connection, 'Close', []);
end;

begin
  CoInitialize(nil);
  try
    try
      PrintStock(UTF8Decode(ParamStr(1)), StrToInt(ParamStr(2)));
    except
      on Error: EOleException do
      begin
        Print(IntToHex(Error.ErrorCode, 8) + ' ' + Error.Message + ' (' + Error.Source + ')', STD_ERROR_HANDLE);
        ExitCode := 1;
      end;
    end;
  finally
    CoUninitialize;
  end;
end.
