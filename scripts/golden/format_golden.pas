{ Prints the golden tables of the platform's number text: Format, IntToStr/IntToHex,
  FloatToStr, FormatFloat, StrToInt/StrToInt64 and StrToFloat, as UTF-8 tab-separated lines.

    format_golden <table>     where table is one of: format inttostr floattostr formatfloat
                              strtoint strtofloat

  Fields that may hold control characters are escaped: \\ \t \n \r. Doubles are written as
  their 16 hexadecimal IEEE bits next to a readable literal, so that the reader gets the very
  same value.

  Only cases where our conventions and this compiler's runtime agree are listed. Left out on
  purpose: integer text beyond the type's range (wrapped here, rejected by us), the "&", "%"
  and bare "x" prefixes (rejected by us), "%g"/"%e" without a precision and FloatToStr
  values needing 16 or 17 digits (we stop at 15), "%e" with precision 0 or 1 (one digit here
  is written as two), malformed specifiers such as "%z" (ignored here, EConvertError for us),
  zero in a scientific picture with "#" places (shown as zeros here, as "0" by us), and the
  messages of exceptions (ours use the other Pascal platform's wording). }
program format_golden;

{$mode objfpc}{$H+}

uses
  SysUtils;

var
  Std, Eu: TFormatSettings;

function Esc(const s: string): string;
var
  i: Integer;
begin
  Result := '';
  for i := 1 to Length(s) do
    case s[i] of
      '\': Result := Result + '\\';
      #9: Result := Result + '\t';
      #10: Result := Result + '\n';
      #13: Result := Result + '\r';
    else
      Result := Result + s[i];
    end;
end;

function Bits(d: Double): string;
var
  q: QWord;
begin
  Move(d, q, SizeOf(q));
  Result := IntToHex(q, 16);
end;

procedure Line(const fields: array of string);
var
  i: Integer;
begin
  for i := 0 to High(fields) do
  begin
    if i > 0 then
      Write(#9);
    Write(fields[i]);
  end;
  WriteLn;
end;

{ --- Format ------------------------------------------------------------------------------ }

{ Argument descriptions: i:<int32> I:<int64> s:<text> c:<char> f:<literal>=<bits> }
function ArgText(const a: TVarRec): string;
begin
  case a.VType of
    vtInteger: Result := 'i:' + IntToStr(a.VInteger);
    vtInt64: Result := 'I:' + IntToStr(a.VInt64^);
    vtAnsiString: Result := 's:' + Esc(AnsiString(a.VAnsiString));
    vtChar: Result := 'c:' + a.VChar;
    vtExtended: Result := 'f:' + FloatToStr(a.VExtended^) + '=' + Bits(a.VExtended^);
  else
    Result := '?';
  end;
end;

procedure F(const settings: string; const fmt: string; const args: array of const);
var
  fs: TFormatSettings;
  list: string;
  i: Integer;
begin
  if settings = 'eu' then fs := Eu else fs := Std;
  list := '';
  for i := 0 to High(args) do
  begin
    if i > 0 then list := list + '|';
    list := list + ArgText(args[i]);
  end;
  Line([settings, Esc(fmt), list, Esc(Format(fmt, args, fs))]);
end;

{ A double through a variable, so the argument is a Double rounded once from the literal. }
function D(v: Double): Double;
begin
  Result := v;
end;

procedure FormatTable;
const
  Ints: array[0..9] of Integer = (0, 1, -1, 7, -7, 42, 255, 65535, MaxInt, -MaxInt - 1);
  IntFormats: array[0..15] of string = ('%d', '%5d', '%-5d|', '%.3d', '%5.3d', '%-6.3d|',
    '%u', '%x', '%.4x', '%8x', '%-8x|', '%X', '%D', '%.0d', '%1d', '%.10d');
  Floats: array[0..11] of Double = (0, 1, -1, 0.5, 1234.5, -1234.5, 0.25, 1.005, 2.675,
    123456.789, 1e-3, 99.995);
  FloatFormats: array[0..13] of string = ('%f', '%.0f', '%.1f', '%.3f', '%10.2f|',
    '%-10.2f|', '%n', '%.0n', '%.3n', '%m', '%.0m', '%.2e', '%.5e', '%12.4e|');
  Strs: array[0..4] of string = ('', 'a', 'abc', 'hello world', 'x y');
  StrFormats: array[0..6] of string = ('%s', '%5s|', '%-5s|', '%.2s', '%5.1s|', '[%s]', '%S');
var
  i, j: Integer;
begin
  for i := 0 to High(IntFormats) do
    for j := 0 to High(Ints) do
      F('std', IntFormats[i], [Ints[j]]);
  F('std', '%d', [Int64(9223372036854775807)]);
  F('std', '%d', [Int64(-9223372036854775807) - 1]);
  F('std', '%x', [Int64(-1)]);
  F('std', '%u', [Int64(-2)]);
  F('std', '%.20d', [Int64(12345678901)]);
  for i := 0 to High(FloatFormats) do
    for j := 0 to High(Floats) do
    begin
      F('std', FloatFormats[i], [Floats[j]]);
      F('eu', FloatFormats[i], [Floats[j]]);
    end;
  F('std', '%g', [D(1234.5)]);
  F('std', '%g', [D(0.5)]);
  F('std', '%g', [D(-0.25)]);
  F('std', '%g', [D(100)]);
  F('std', '%g', [D(0.0000152587890625)]);
  F('std', '%g', [D(9.5367431640625e-7)]);
  F('std', '%g', [D(1e20)]);
  F('std', '%g', [D(0)]);
  F('std', '%.3g', [D(1234.5)]);
  F('std', '%.3g', [D(0.000123456)]);
  F('std', '%.5g', [D(2.5)]);
  F('std', '%.2g', [D(9.96)]);
  F('eu', '%g', [D(-1234.5)]);
  F('std', '%.15e', [D(0.1)]);
  F('std', '%.2e', [D(-1e-300)]);
  F('std', '%.3e', [D(9.9996)]);
  for i := 0 to High(StrFormats) do
    for j := 0 to High(Strs) do
      F('std', StrFormats[i], [Strs[j]]);
  F('std', '%s', ['c']);
  F('std', '%5s|', ['c']);
  F('std', '%1:s %0:s %s', ['a', 'b', 'c']);
  F('std', '%0:s%0:s%s', ['a', 'b']);
  F('std', '%2:d-%d', [1, 2, 3, 4]);
  F('std', '%*d|', [6, 42]);
  F('std', '%-*d|', [6, 42]);
  F('std', '%.*d', [4, 42]);
  F('std', '%*.*f|', [9, 3, D(3.14159)]);
  F('std', '%*.*s|', [6, 2, 'abcdef']);
  F('std', '%*:s', [1, 'x', 'y']);
  F('std', '100%% of %d', [5]);
  F('std', '%%%s%%', ['a']);
  F('std', 'no args', []);
  F('std', '%s and %d and %.2f', ['text', -3, D(2.5)]);
  F('std', '%05d|', [42]);
  F('std', '%-.3d|', [5]);
  F('eu', '%n|%m', [D(1234567.891), D(-42.5)]);
  F('eu', '%.2f', [D(-0.001)]);
  F('std', '%.2f', [D(-0.001)]);
  F('std', '%f', [D(1e15)]);
  F('std', '%.0f', [D(2.5)]);
  F('std', '%.0f', [D(-2.5)]);
  F('std', '%.0f', [D(3.5)]);
  F('std', '%.1f', [D(0.05)]);
  F('std', '%.2f', [D(0.125)]);
  F('std', '%.2f', [D(0.375)]);
  F('std', '%.3n', [D(-1234567.0625)]);
end;

{ --- IntToStr and IntToHex ----------------------------------------------------------------- }

procedure IntToStrTable;
const
  Values: array[0..11] of Int64 = (0, 1, -1, 9, 10, -10, 2147483647, -2147483648,
    4294967296, 9223372036854775807, -9223372036854775807, 1234567890123);
  Digits: array[0..4] of Integer = (0, 1, 4, 8, 16);
var
  i, j: Integer;
begin
  for i := 0 to High(Values) do
  begin
    Line(['IntToStr64', IntToStr(Values[i]), '', IntToStr(Values[i])]);
    if (Values[i] >= -2147483648) and (Values[i] <= 2147483647) then
      Line(['IntToStr32', IntToStr(Values[i]), '', IntToStr(Integer(Values[i]))]);
    for j := 0 to High(Digits) do
      Line(['IntToHex', IntToStr(Values[i]), IntToStr(Digits[j]), IntToHex(Values[i], Digits[j])]);
  end;
  Line(['IntToStr64', '-9223372036854775808', '', IntToStr(Low(Int64))]);
end;

{ --- FloatToStr ----------------------------------------------------------------------------- }

procedure FloatToStrTable;
const
  Values: array[0..27] of Double = (0, 1, -1, 0.5, 0.1, 0.3, 1.5, -2.25, 100, 1234.5,
    1e10, 1e14, 123456789012345, 1e15, 1e16, 1e20, 1e100, 1e-4, 1e-5, 1.5e-5, 1e-6, 1.25e-7,
    -3.5e-10, 1e-300, 0.001953125, 65536, 3.25e21, 0.000123);
var
  i: Integer;
  v: Double;
begin
  for i := 0 to High(Values) do
  begin
    v := Values[i];
    Line([FloatToStr(v), Bits(v), FloatToStr(v)]);
    Line(['eu:' + FloatToStr(v), Bits(v), FloatToStr(v, Eu)]);
  end;
end;

{ --- FormatFloat ---------------------------------------------------------------------------- }

procedure FormatFloatTable;
const
  Pictures: array[0..23] of string = ('0', '0.00', '#.##', '0.###', '#,##0.00', '#,##0',
    '00000', '000.000', '0.00E+00', '0.00E-00', '0.000E+000', '0E+0', '##0.0E+0',
    '0.0;(0.0)', '0.0;-0.0;"zero"', '"Total: "0.00', '''$''#,##0.00', '0.0#', '#0.0##',
    '0%', '#,##0.00;(#,##0.00);"-"', '0,000', 'x0y', '000-0000');
  Values: array[0..11] of Double = (0, 1, -1, 0.5, 1.005, 1234.5, -1234.5, 0.125,
    1234567.891, 0.00012345, 42, 99.995);
var
  i, j: Integer;
begin
  for i := 0 to High(Pictures) do
    for j := 0 to High(Values) do
    begin
      { Zero in a scientific picture with "#" places: here the "#" places show zeros. }
      if (Values[j] = 0) and (Pos('E', Pictures[i]) > 0) and (Pos('#', Pictures[i]) > 0) then
        Continue;
      Line(['std', Esc(Pictures[i]), Bits(Values[j]), Esc(FormatFloat(Pictures[i], Values[j], Std))]);
      if (i mod 4) = 0 then
        Line(['eu', Esc(Pictures[i]), Bits(Values[j]), Esc(FormatFloat(Pictures[i], Values[j], Eu))]);
    end;
end;

{ --- StrToInt ------------------------------------------------------------------------------- }

{ Number of significant hexadecimal digits after a "$" or "0x" prefix; 0 for decimal text. }
function HexDigits(const s: string): Integer;
var
  i: Integer;
begin
  Result := 0;
  i := Pos('$', s);
  if i = 0 then
    i := Pos('x', LowerCase(s));
  if i = 0 then
    Exit;
  Inc(i);
  while (i <= Length(s)) and (s[i] = '0') do
    Inc(i);
  Result := Length(s) - i + 1;
end;

procedure StrToIntTable;
const
  Texts: array[0..39] of string = ('0', '12', '-12', '+12', ' 12', '  -7', #9'5', '00012',
    '2147483647', '-2147483648', '$1F', '$1f', '0x1F', '0X1f', '$7FFFFFFF', '$FFFFFFFF',
    '$80000000', '-$10', '+$10', '-0x10', '$0', '9223372036854775807',
    '-9223372036854775808', '$7FFFFFFFFFFFFFFF', '$FFFFFFFFFFFFFFFF', '', ' ', '-', '+', '$',
    '0x', '12 ', '1 2', '- 1', '$-1', 'abc', '1.0', '1e3', '--1', '12a');
var
  i: Integer;
  v: LongInt;
  v64: Int64;
  r32, r64: string;
begin
  for i := 0 to High(Texts) do
  begin
    if TryStrToInt(Texts[i], v) then r32 := IntToStr(v) else r32 := 'fail';
    if TryStrToInt64(Texts[i], v64) then r64 := IntToStr(v64) else r64 := 'fail';
    { Text beyond 32 bits wraps here; that case is ours to reject and is left out. }
    if (r32 <> 'fail') and (HexDigits(Texts[i]) > 8) then
      r32 := 'skip';
    if (r32 <> 'fail') and (HexDigits(Texts[i]) = 0) and (IntToStr(v) <> IntToStr(v64)) then
      r32 := 'skip';
    Line([Esc(Texts[i]), r32, r64]);
  end;
end;

{ --- StrToFloat ----------------------------------------------------------------------------- }

procedure StrToFloatTable;
const
  Texts: array[0..29] of string = ('0', '1', '-1', '+1.5', '1.5', ' 1.5', '1.5 ', #9'2',
    '1.', '.5', '-.5', '1e5', '1E+5', '1e-5', '2.5E-3', '00.100', '1234567.891',
    '1.7976931348623157e308', '1e-400', '0.1e1', '1e', '1,5', '', ' ', '-', '1e400',
    '0x10', '$10', '1_000', '1e5.5');
var
  i: Integer;
  v: Double;
begin
  for i := 0 to High(Texts) do
  begin
    if TryStrToFloat(Texts[i], v, Std) then
      Line(['std', Esc(Texts[i]), Bits(v)])
    else
      Line(['std', Esc(Texts[i]), 'fail']);
    if TryStrToFloat(StringReplace(Texts[i], '.', ',', []), v, Eu) then
      Line(['eu', Esc(StringReplace(Texts[i], '.', ',', [])), Bits(v)])
    else
      Line(['eu', Esc(StringReplace(Texts[i], '.', ',', [])), 'fail']);
  end;
end;

begin
  Std := DefaultFormatSettings;
  Std.DecimalSeparator := '.';
  Std.ThousandSeparator := ',';
  Std.CurrencyString := '$';
  Std.CurrencyFormat := 0;
  Std.NegCurrFormat := 1;
  Std.CurrencyDecimals := 2;
  Eu := Std;
  Eu.DecimalSeparator := ',';
  Eu.ThousandSeparator := '.';
  Eu.CurrencyString := 'EUR';
  Eu.CurrencyFormat := 3;
  Eu.NegCurrFormat := 8;
  if ParamStr(1) = 'format' then FormatTable
  else if ParamStr(1) = 'inttostr' then IntToStrTable
  else if ParamStr(1) = 'floattostr' then FloatToStrTable
  else if ParamStr(1) = 'formatfloat' then FormatFloatTable
  else if ParamStr(1) = 'strtoint' then StrToIntTable
  else if ParamStr(1) = 'strtofloat' then StrToFloatTable
  else
  begin
    WriteLn(StdErr, 'usage: format_golden format|inttostr|floattostr|formatfloat|strtoint|strtofloat');
    Halt(2);
  end;
end.
