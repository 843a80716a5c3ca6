program importer;
{ Writes the unit of a type library: importer LIBRARY FOLDER }
{$mode objfpc}{$H+}
uses
  Classes, SysUtils, TypeLib;
var
  UnitName, Text, NoPackage, NoRegistration: string;
  Needed: TStringList;
  Output: TFileStream;
begin
  Needed := TStringList.Create;
  Text := ImportTypelib(WideString(ParamStr(1)), UnitName, Needed, False, False, False, NoPackage, NoRegistration);
  Output := TFileStream.Create(IncludeTrailingPathDelimiter(ParamStr(2)) + UnitName + '.pas', fmCreate);
  Output.WriteBuffer(Text[1], Length(Text));
  Output.Free;
  Needed.Free;
end.
