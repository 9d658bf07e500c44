{ Writes reference results of the Pascal string list for tests/data/golden/string_list.tsv.

  One case per line, fields separated by tabs: the operation, its arguments, then its results.
  Text fields escape backslash, tab, CR, LF, '|' and other control characters (\\ \t \r \n \|
  \xHH). A list field is its count, ':', then its items joined by '|'.
  Run through scripts/golden/generate_string_list.sh. }
program string_list_golden;

{$mode objfpc}{$H+}

uses
  Classes, SysUtils;

function Esc(const S: string): string;
var
  I: Integer;
  C: Char;
begin
  Result := '';
  for I := 1 to Length(S) do
  begin
    C := S[I];
    case C of
      '\': Result := Result + '\\';
      #9: Result := Result + '\t';
      #13: Result := Result + '\r';
      #10: Result := Result + '\n';
      '|': Result := Result + '\|';
    else
      if Ord(C) < 32 then
        Result := Result + '\x' + IntToHex(Ord(C), 2)
      else
        Result := Result + C;
    end;
  end;
end;

function ListField(L: TStrings): string;
var
  I: Integer;
begin
  Result := IntToStr(L.Count) + ':';
  for I := 0 to L.Count - 1 do
  begin
    if I > 0 then
      Result := Result + '|';
    Result := Result + Esc(L[I]);
  end;
end;

function BoolField(B: Boolean): string;
begin
  if B then
    Result := '1'
  else
    Result := '0';
end;

{ Builds a list from items separated by '|' (no escapes needed in the inputs below); '' is the
  empty list and '|' alone would be two empty items. A leading '#' marks a list of one empty
  item. }
function MakeList(const Items: string): TStringList;
var
  S: string;
  P: Integer;
begin
  Result := TStringList.Create;
  if Items = '' then
    Exit;
  if Items = '#' then
  begin
    Result.Add('');
    Exit;
  end;
  S := Items;
  repeat
    P := Pos('|', S);
    if P = 0 then
    begin
      Result.Add(S);
      Break;
    end;
    Result.Add(Copy(S, 1, P - 1));
    Delete(S, 1, P);
  until False;
end;

procedure Emit(const Fields: array of string);
var
  I: Integer;
  Line: string;
begin
  Line := '';
  for I := 0 to High(Fields) do
  begin
    if I > 0 then
      Line := Line + #9;
    Line := Line + Fields[I];
  end;
  WriteLn(Line);
end;

procedure TextSplit(const S: string);
var
  L: TStringList;
begin
  L := MakeList('');
  L.Text := S;
  Emit(['text_split', Esc(S), ListField(L)]);
  L.Free;
end;

procedure TextJoin(const Items: string);
var
  L: TStringList;
begin
  L := MakeList(Items);
  L.LineBreak := #13#10;
  Emit(['text_join', ListField(L), Esc(L.Text)]);
  L.Free;
end;

procedure CommaSplit(const S: string);
var
  L: TStringList;
begin
  L := MakeList('');
  L.CommaText := S;
  Emit(['comma_split', Esc(S), ListField(L)]);
  L.Free;
end;

procedure CommaJoin(const Items: string);
var
  L: TStringList;
begin
  L := MakeList(Items);
  Emit(['comma_join', ListField(L), Esc(L.CommaText)]);
  L.Free;
end;

procedure DelimSplit(Delim, Quote: Char; Strict: Boolean; const S: string);
var
  L: TStringList;
begin
  L := MakeList('');
  L.Delimiter := Delim;
  L.QuoteChar := Quote;
  L.StrictDelimiter := Strict;
  L.DelimitedText := S;
  Emit(['delim_split', Esc(Delim), Esc(Quote), BoolField(Strict), Esc(S), ListField(L)]);
  L.Free;
end;

procedure DelimJoin(Delim, Quote: Char; Strict: Boolean; const Items: string);
var
  L: TStringList;
begin
  L := MakeList(Items);
  L.Delimiter := Delim;
  L.QuoteChar := Quote;
  L.StrictDelimiter := Strict;
  Emit(['delim_join', Esc(Delim), Esc(Quote), BoolField(Strict), ListField(L),
    Esc(L.DelimitedText)]);
  L.Free;
end;

procedure SortCase(const Items: string);
var
  L: TStringList;
  Input: string;
begin
  L := MakeList(Items);
  Input := ListField(L);
  L.Sort;
  Emit(['sort', Input, ListField(L)]);
  L.Free;
end;

procedure SortedAdd(const Items: string; Dup: TDuplicates);
var
  L, Src: TStringList;
  I: Integer;
  Names: array[TDuplicates] of string = ('ignore', 'accept', 'error');
  Outcome: string;
begin
  Src := MakeList(Items);
  L := MakeList('');
  L.Sorted := True;
  L.Duplicates := Dup;
  Outcome := 'ok';
  try
    for I := 0 to Src.Count - 1 do
      L.Add(Src[I]);
  except
    on E: EStringListError do
      Outcome := 'error';
  end;
  Emit(['sorted_add', Names[Dup], ListField(Src), Outcome, ListField(L)]);
  L.Free;
  Src.Free;
end;

procedure FindIn(const Items, S: string);
var
  L: TStringList;
  Index: Integer;
  Found: Boolean;
begin
  L := MakeList(Items);
  L.Sorted := True;
  L.Duplicates := dupAccept;
  Found := L.Find(S, Index);
  Emit(['find', ListField(L), Esc(S), BoolField(Found), IntToStr(Index),
    IntToStr(L.IndexOf(S))]);
  L.Free;
end;

procedure IndexOfCase(const Items, S: string);
var
  L: TStringList;
begin
  L := MakeList(Items);
  Emit(['indexof', ListField(L), Esc(S), IntToStr(L.IndexOf(S))]);
  L.Free;
end;

procedure ValuesCase(const Items, Name: string);
var
  L: TStringList;
begin
  L := MakeList(Items);
  Emit(['values', ListField(L), Esc(Name), Esc(L.Values[Name]), IntToStr(L.IndexOfName(Name))]);
  L.Free;
end;

procedure NamesCase(const Items: string);
var
  L, N, V: TStringList;
  I: Integer;
begin
  L := MakeList(Items);
  N := MakeList('');
  V := MakeList('');
  for I := 0 to L.Count - 1 do
  begin
    N.Add(L.Names[I]);
    V.Add(L.ValueFromIndex[I]);
  end;
  Emit(['names', ListField(L), ListField(N), ListField(V)]);
  V.Free;
  N.Free;
  L.Free;
end;

procedure SetValueCase(const Items, Name, Value: string);
var
  L: TStringList;
  Input: string;
begin
  L := MakeList(Items);
  Input := ListField(L);
  L.Values[Name] := Value;
  Emit(['set_value', Input, Esc(Name), Esc(Value), ListField(L)]);
  L.Free;
end;

begin
  { Text splitting and joining. Splitting keeps the default line break, which makes the reference
    split at CR LF, LF and CR alike; joining uses CR LF. }
  TextSplit('');
  TextSplit('a');
  TextSplit('a'#13#10);
  TextSplit('a'#13#10'b');
  TextSplit('a'#10'b'#13'c'#13#10'd');
  TextSplit('a'#13#10#13#10);
  TextSplit(#13#10);
  TextSplit(#10#10);
  TextSplit(#13#13#10);
  TextSplit('a'#10#13'b');
  TextSplit('  x  '#9#13#10' y');
  TextJoin('');
  TextJoin('#');
  TextJoin('a');
  TextJoin('a|b');
  TextJoin('a||');

  { CommaText }
  CommaSplit('');
  CommaSplit('a,b,c');
  CommaSplit('a b c');
  CommaSplit('  a ,  b  ');
  CommaSplit('"a b",c');
  CommaSplit('"a""b",c');
  CommaSplit('a,');
  CommaSplit(',');
  CommaSplit(',,');
  CommaSplit('a,,b');
  CommaSplit('""');
  CommaSplit('"",""');
  CommaSplit('"a,b"');
  CommaSplit('x="1 2",y=3');
  CommaSplit('a , , b');
  CommaSplit(#9'a'#9',b');
  CommaSplit('"a" , "b"');
  CommaSplit('"abc');
  CommaSplit('"a"b,c');
  CommaSplit('a"b",c');
  CommaSplit('"a""');
  CommaSplit('"');
  CommaSplit('a'#0'b,c');
  CommaJoin('');
  CommaJoin('#');
  CommaJoin('a|b');
  CommaJoin('a b|c');
  CommaJoin('a,b|c');
  CommaJoin('a"b|c');
  CommaJoin('a||b');
  CommaJoin('|');
  CommaJoin('x=1 2|y=3');
  CommaJoin('"q"');
  CommaJoin('tab'#9'x');
  CommaJoin('a'#0'b|c');

  { DelimitedText with other settings }
  DelimSplit(';', '"', False, 'a;b c;d');
  DelimSplit(';', '"', True, 'a;b c;d');
  DelimSplit(';', '"', True, ' a ; b ');
  DelimSplit(';', '"', True, 'a;;b;');
  DelimSplit(';', '"', True, '"x;y";z');
  DelimSplit(';', '"', True, '"x""y";z');
  DelimSplit('|', '''', False, '''a b''|c');
  DelimSplit('|', '''', True, '''a''''b''|c d');
  DelimSplit(',', '"', True, '');
  DelimSplit(',', '"', True, ',');
  DelimSplit(',', '"', True, '"abc');
  DelimSplit(',', '"', True, '"a"b,c');
  DelimSplit(',', '"', True, 'a'#0'b,c');
  DelimJoin(';', '"', False, 'a|b c|d');
  DelimJoin(';', '"', True, 'a|b c|d');
  DelimJoin(';', '"', True, 'a;x|b"y');
  DelimJoin(';', '''', True, 'it''s|ok');
  DelimJoin(';', '"', True, '#');
  DelimJoin(';', '"', True, 'a||b');
  DelimJoin(';', '"', True, 'a'#0'b|c');

  { Sorting, finding, duplicates }
  SortCase('b|A|c|B1|a0');
  SortCase('delta|Alpha|charlie|bravo|echo');
  SortCase('x 2|x 10|x1|X 1');
  SortCase('10|9|100|1');
  SortedAdd('b|a|B|c|a', dupIgnore);
  SortedAdd('b|a|B|c|a', dupAccept);
  SortedAdd('b|a|c|A|d', dupError);
  FindIn('apple|Banana|cherry', 'banana');
  FindIn('apple|Banana|cherry', 'blueberry');
  FindIn('apple|Banana|cherry', 'zz');
  FindIn('apple|Banana|cherry', '');
  FindIn('', 'a');
  IndexOfCase('one|Two|three', 'TWO');
  IndexOfCase('one|Two|three', 'four');
  IndexOfCase('one|one|ONE', 'One');

  { Names and values }
  ValuesCase('a=1|b=2|c=3', 'b');
  ValuesCase('a=1|B=2', 'b');
  ValuesCase('a=1|b=', 'b');
  ValuesCase('a=1|b', 'b');
  ValuesCase('a = 1|b=2', 'a');
  ValuesCase('a = 1|b=2', 'a ');
  ValuesCase('x=1=2', 'x');
  ValuesCase('=v|a=1', '');
  ValuesCase('a=1|a=2', 'a');
  { A line without '=' has no value here, unlike this reference (tested separately). }
  NamesCase('a=1|=c|d=|e=f=g');
  SetValueCase('a=1|b=2', 'b', '9');
  SetValueCase('a=1|b=2', 'B', '9');
  SetValueCase('a=1|b=2', 'c', '3');
  { Setting an empty value deletes the line here, unlike this reference (tested separately). }
  SetValueCase('a=1|b=2|a=3', 'a', 'x');
end.
