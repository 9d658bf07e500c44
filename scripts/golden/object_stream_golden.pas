{ Converts object text files to binary component streams with Free Pascal's
  ObjectTextToBinary, for the goldens in tests/data/golden/object_stream/.

  Usage: object_stream_golden IN.txt OUT.bin [IN.txt OUT.bin ...]
  Run through scripts/golden/generate_object_stream.sh. }
program object_stream_golden;

{$mode objfpc}{$H+}

uses
  Classes, SysUtils;

var
  I: Integer;
  Input, Output: TFileStream;
begin
  I := 1;
  while I < ParamCount do
  begin
    Input := TFileStream.Create(ParamStr(I), fmOpenRead);
    try
      Output := TFileStream.Create(ParamStr(I + 1), fmCreate);
      try
        ObjectTextToBinary(Input, Output);
      finally
        Output.Free;
      end;
    finally
      Input.Free;
    end;
    Inc(I, 2);
  end;
end.
