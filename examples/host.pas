{ A host in Free Pascal in its smallest form: it links the library and its C faces, opens a virtual
  register and runs lines.

    host merkelin.ini }
program host;

{$mode objfpc}{$H+}

uses
  ctypes, lorimat;

var
  device: Pointer = nil;
  paper: lorimat_bytes = (data: nil; size: 0);
  good: Boolean;

{ The library asks for the client once, from TradInit; the last argument is the address to fill. }
function EcrIo(code, a: clong; b: PAnsiChar; c: clong; d: PAnsiChar; e, client: pclong): clong; cdecl;
begin
  if code <> ECRIOIC_GET_CLIENT_RT then Exit(-1);
  PPointer(client)^ := lorimat_register_interface(device);
  Result := 0;
end;

{ Runs one line; false, with the answer shown, when it fails. }
function Run(const line: AnsiString): Boolean;
var
  answer: array[0..511] of AnsiChar; { the least that EcrCmd asks for }
  code: clong;
begin
  code := EcrCmd(PAnsiChar(line), answer);
  if code <> 0 then writeln(StdErr, line, ': code ', code, ': ', PAnsiChar(@answer));
  Result := code = 0;
end;

begin
  if ParamCount <> 1 then Halt(2);
  if lorimat_register_open(nil, @device) <> LORIMAT_OK then
  begin
    writeln(StdErr, lorimat_register_error());
    Halt(2);
  end;
  if TradInit(PAnsiChar(ParamStr(1)), 0, nil, @EcrIo) <> 0 then Halt(2);
  good := Run('VEND REP=2, QTA=2, PRE=1.20, DES=''CAFFE''');
  good := Run('VEND REP=2, PRE=1.50, DES=''CORNETTO''') and good;
  good := Run('CHIU TEND=CONTANTI, IMP=5.00') and good;
  TradClose();
  if lorimat_register_paper(device, @paper) = LORIMAT_OK then Write(paper.data);
  lorimat_bytes_free(@paper);
  lorimat_register_close(device);
  if not good then Halt(1);
end.
