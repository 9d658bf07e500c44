{ Converts object text files to binary component streams with Free Pascal's
  ObjectTextToBinary, and that binary back to text with its ObjectBinaryToText, for the
  goldens in tests/data/golden/object_stream/.

  Usage: object_stream_golden IN.txt OUT.bin OUT.fpc [IN.txt OUT.bin OUT.fpc ...]
  Run through scripts/golden/generate_object_stream.sh. }
program object_stream_golden;

{$mode objfpc}{$H+}

uses
  Classes, SysUtils;

var
  I: Integer;
  Input, Output, Text: TFileStream;
begin
  I := 1;
  while I + 2 <= ParamCount do
  begin
    Input := TFileStream.Create(ParamStr(I), fmOpenRead);
    try
      Output := TFileStream.Create(ParamStr(I + 1), fmCreate or fmOpenReadWrite);
      try
        ObjectTextToBinary(Input, Output);
        Output.Position := 0;
        Text := TFileStream.Create(ParamStr(I + 2), fmCreate);
        try
          ObjectBinaryToText(Output, Text);
        finally
          Text.Free;
        end;
      finally
        Output.Free;
      end;
    finally
      Input.Free;
    end;
    Inc(I, 3);
  end;
end.
