program client;
{ The program of this folder in Object Pascal (Free Pascal; Delphi's importer makes the same unit with other event classes):
  makes a rule, answers what it asks, issues codes by ticket, takes codes apart. Every language here prints the same lines.

  The unit Kestrel_1_0_TLB is made of the type library: by "importtl Kestrel.tlb" of Free Pascal, by the menu
  Component > Import Component in Delphi. Optional arguments of the type OleVariant are left out by EmptyParam, the others by
  an empty text or nil. Each class with events has an event class, such as TEvsCodeClass, whose ComServer is the rule. }
{$mode objfpc}{$H+}
uses
  Classes, SysUtils, Variants, ActiveX, ComObj, Kestrel_1_0_TLB;

type
  TClient = class
  private
    FEvents: TEvsCodeClass;
    FRule: _CodeClass;
    FYear: _List;
    FNumber: _Band;
    FIssued: TStringList; // what a program keeps in its database: ticket=code
    procedure GetLastCode(Sender: TObject; var Filter: WideString; var Value: WideString);
    function AddBand(const Name: WideString; Style: BandStyles; const First: WideString): _Band;
    function AddBand(const Name: WideString; Style: BandStyles; const First: WideString; Field: _List; Length: Integer;
      const Format: WideString): _Band;
  public
    constructor Create;
    destructor Destroy; override;
    procedure IssueFor(const Ticket, OfYear: string);
    procedure TakeApart(const Code: WideString);
    procedure StoreAndLoad;
  end;

constructor TClient.Create;
begin
  FIssued := TStringList.Create;
  FEvents := TEvsCodeClass.Create(nil);
  FEvents.OnGetLastCode := @GetLastCode;
  FRule := FEvents.ComServer;
  FYear := FRule.Get_UsrFields.Add('Year', '', '', '');
  AddBand('Prefix', bsFixed, 'INV-');
  AddBand('Year', bsUsrField, '', FYear, 4, '');
  AddBand('Dash', bsFixed, '-');
  FNumber := AddBand('Number', bsIncreaseNumber, '1', nil, 5, '00000');
  FNumber.Get_TrackBands.Add('Year');
end;

destructor TClient.Destroy;
begin
  FNumber := nil;
  FYear := nil;
  FRule := nil;
  FEvents.Free;
  FIssued.Free;
  inherited;
end;

function TClient.AddBand(const Name: WideString; Style: BandStyles; const First: WideString): _Band;
begin
  Result := FRule.Add(Name, Style, smNoneSwap, First, nil, EmptyParam, '', EmptyParam, EmptyParam);
end;

function TClient.AddBand(const Name: WideString; Style: BandStyles; const First: WideString; Field: _List; Length: Integer;
  const Format: WideString): _Band;
begin
  Result := FRule.Add(Name, Style, smNoneSwap, First, Field, Length, Format, EmptyParam, EmptyParam);
end;

procedure TClient.IssueFor(const Ticket, OfYear: string);
begin
  if FIssued.IndexOfName(Ticket) < 0 then
  begin
    FYear.Set_Value(WideString(OfYear));
    FIssued.Add(Ticket + '=' + string(FRule.GetCode(gsNewCode)));
  end;
  WriteLn(Ticket, ': ', FIssued.Values[Ticket]);
end;

procedure TClient.TakeApart(const Code: WideString);
var
  Given: WideString;
begin
  Given := Code;
  try
    FRule.ExpCode(Given);
    WriteLn(Code, ': year ', FYear.Get_Value, ', number ', FNumber.Get_Value);
  except
    on Refused: EOleException do
      WriteLn(Code, ': refused with ', Refused.ErrorCode and $FFFF, ', ', Refused.Message);
  end;
end;

procedure TClient.StoreAndLoad;
var
  Copy: _CodeClass;
begin
  Copy := CoCodeClass.Create;
  Copy.Load(FRule.Get_Definition, '');
  WriteLn('stored and loaded: ', Copy.Get_Count, ' bands');
end;

// The event: the last code issued that fits the filter, in which "?" is any character. The component adds one to its number.
procedure TClient.GetLastCode(Sender: TObject; var Filter: WideString; var Value: WideString);
var
  Index: Integer;
  Code: WideString;
begin
  WriteLn('asked for the last code like ', Filter);
  for Index := 0 to FIssued.Count - 1 do
  begin
    Code := WideString(FIssued.ValueFromIndex[Index]);
    if (System.Copy(Code, 1, 9) = System.Copy(Filter, 1, 9)) and (Code > Value) then
      Value := Code;
  end;
end;

procedure Run;
var
  Numbers: TClient;
begin
  Numbers := TClient.Create;
  try
    Numbers.IssueFor('order 1', '2026');
    Numbers.IssueFor('order 2', '2026');
    Numbers.IssueFor('order 3', '2027');
    Numbers.IssueFor('order 2', '2026'); // the same request again gets the same code
    Numbers.TakeApart('INV-2026-00002');
    Numbers.TakeApart('ABC-2026-00002');
    Numbers.StoreAndLoad;
  finally
    Numbers.Free;
  end;
end;

begin
  Run;
end.
