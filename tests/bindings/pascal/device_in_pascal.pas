{ A device in Free Pascal, and the register with all that it can be given: exits with 0 when every answer is
  as expected, else prints the ones that are not. }
program device_in_pascal;

{$mode objfpc}{$H+}

uses
  ctypes, lorimat;

var
  failures: Integer = 0;
  client: Pointer = nil;
  interface_of_client: Pointer = nil;
  receipts: Integer = 0;
  lines: Integer = 0;
  clocks: Integer = 0;
  sold: Int64 = 0;
  paid: Int64 = 0;
  last: AnsiString = '';

procedure Expect(holds: Boolean; const what: AnsiString);
begin
  if holds then Exit;
  writeln(StdErr, 'device_in_pascal: not so: ', what);
  Inc(failures);
end;

function EcrIo(code, a: clong; b: PAnsiChar; c: clong; d: PAnsiChar; e, client_at: pclong): clong; cdecl;
begin
  if code <> ECRIOIC_GET_CLIENT_RT then Exit(-1);
  PPointer(client_at)^ := interface_of_client;
  Result := 0;
end;

function Run(const line: AnsiString): clong;
var
  answer: array[0..511] of AnsiChar;
begin
  Result := EcrCmd(PAnsiChar(line), answer);
end;

function GetState(user_data: Pointer): cint; cdecl;
begin
  if user_data = @sold then Result := RTF_S_IDLE else Result := RTF_S_ERROR;
end;

function GetIntProperty(user_data: Pointer; prop: cint; value: pcint): cint; cdecl;
begin
  if prop <> RTF_PIDXFptr_PrinterState then Exit(RTF_E_ILLEGAL);
  if receipts > 0 then value^ := RTF_FPTR_PS_FISCAL_RECEIPT else value^ := RTF_FPTR_PS_MONITOR;
  Result := RTF_SUCCESS;
end;

{ Every byte that there is room for, without an end. }
function GetDataInternal(user_data: Pointer; item: cint; text: PAnsiChar; room: SizeUInt): cint; cdecl;
begin
  FillChar(text^, room, '0');
  Result := RTF_SUCCESS;
end;

function BeginFiscalReceipt(user_data: Pointer; header: Boolean): cint; cdecl;
begin
  Inc(receipts);
  Result := RTF_SUCCESS;
end;

function PrintRecItemEx(user_data: Pointer; kind: cint; description: PAnsiChar; price: cint64;
  quantity, vat: cint; unit_price: cint64; unit_name: PAnsiChar; department: cint; now: Boolean;
  code: PAnsiChar): cint; cdecl;
begin
  if department = 9 then Exit(RTF_EFPTR_BAD_VAT);
  Inc(lines);
  sold := sold + unit_price * quantity div 1000;
  last := description;
  Result := RTF_SUCCESS;
end;

function PrintRecTotalEx(user_data: Pointer; payment: cint64; tender: PAnsiChar; rest: Boolean): cint; cdecl;
begin
  paid := paid + payment;
  receipts := 0;
  Result := RTF_SUCCESS;
end;

function Clock(user_data: Pointer; now: Plorimat_time): Boolean; cdecl;
const
  kTime: lorimat_time = (year: 2026; month: 11; day: 20; hour: 11; minute: 3; second: 0);
begin
  Inc(clocks);
  now^ := kTime;
  Result := True;
end;

procedure TryDevice(definition: PAnsiChar);
var
  device: lorimat_device;
  operation: PAnsiChar;
begin
  FillChar(device, SizeOf(device), 0);
  device.size := SizeOf(device);
  device.abi := LORIMAT_ABI;
  device.user_data := @sold;
  device.GetState := @GetState;
  device.GetIntProperty := @GetIntProperty;
  device.GetDataInternal := @GetDataInternal;
  device.BeginFiscalReceipt := @BeginFiscalReceipt;
  device.PrintRecItemEx := @PrintRecItemEx;
  device.PrintRecTotalEx := @PrintRecTotalEx;
  Expect(lorimat_client_new(@device, @client) = LORIMAT_OK, 'a client');
  interface_of_client := lorimat_client_interface(client);
  Expect(TradInit(definition, 0, nil, @EcrIo) = 0, 'the start');
  Expect(Run('VEND REP=2, QTA=2, PRE=1.20, DES=''CAFFE''') = 0, 'a sale');
  Expect((receipts = 1) and (lines = 1) and (sold = 24000), 'what it told');
  Expect(last = 'CAFFE', 'its text');
  Expect(Run('VEND REP=9, PRE=1.20') = (RTF_EFPTR_BAD_VAT or $400), 'a refusal');
  Expect((Run('CHIU TEND=CONTANTI, IMP=300000.00') = 0) and (paid = 3000000000), 'an amount of 64 bits');
  Expect(Run('AZZGIO') = (RTF_E_ILLEGAL or $200), 'what the device has not');
  operation := 'none';
  Expect((lorimat_client_take_fault(client, @operation) = LORIMAT_OK) and (operation = nil), 'no fault');
  TradClose();
  lorimat_client_free(client);
  device.size := 8;
  Expect(lorimat_client_new(@device, @client) = LORIMAT_TABLE_TOO_SHORT, 'too short');
  Expect(AnsiString(lorimat_error()) <> '', 'a cause');
  Expect(Pos('classe 1', AnsiString(lorimat_explain(257, 'it_IT.UTF-8'))) = 1, 'an explanation in Italian');
  Expect(lorimat_explain(257, 'xx') = nil, 'no such language');
end;

procedure TryRegister(definition: PAnsiChar);
var
  settings: lorimat_register_settings;
  totals: lorimat_register_totals;
  state: lorimat_register_state;
  tenders: array[0..39] of lorimat_tender_total;
  count: SizeUInt;
  paper: lorimat_bytes;
  text: AnsiString;
  device: Pointer;
begin
  FillChar(settings, SizeOf(settings), 0);
  settings.size := SizeOf(settings);
  settings.abi := LORIMAT_ABI;
  settings.serial_number := '99ABC0000042';
  settings.last_closure := 41;
  settings.clock := @Clock;
  Expect(lorimat_register_open(@settings, @device) = LORIMAT_OK, 'a register');
  interface_of_client := lorimat_register_interface(device);
  Expect(TradInit(definition, 0, nil, @EcrIo) = 0, 'its start');
  Expect((Run('VEND REP=2, PRE=5.00') = 0) and (Run('CHIU TEND=CONTANTI') = 0) and (clocks > 0), 'a receipt');
  FillChar(totals, SizeOf(totals), 0);
  totals.size := SizeOf(totals);
  totals.abi := LORIMAT_ABI;
  Expect((lorimat_register_get_totals(device, @totals) = LORIMAT_OK) and (totals.sales = 1) and
    (totals.receipts_amount = 50000) and (totals.grand_amount = 50000), 'totals');
  FillChar(state, SizeOf(state), 0);
  state.size := SizeOf(state);
  state.abi := LORIMAT_ABI;
  Expect((lorimat_register_get_state(device, @state) = LORIMAT_OK) and (state.last_closure = 41) and
    state.day_open and not state.training and (state.documents = 1), 'a state');
  Expect((lorimat_register_get_tenders(device, @tenders, 40, @count) = LORIMAT_OK) and (count = 1) and
    (AnsiString(PAnsiChar(@tenders[0].tender)) = '0') and (tenders[0].amount = 50000), 'tenders');
  Expect(lorimat_register_paper(device, @paper) = LORIMAT_OK, 'paper');
  text := paper.data;
  Expect((Pos('20/11/2026 11:03', text) > 0) and (Pos('99ABC0000042', text) > 0) and
    (Pos('0042-0001', text) > 0), 'what is on it');
  lorimat_bytes_free(@paper);
  Expect(paper.data = nil, 'nothing left of it');
  Expect((lorimat_register_add_fault(device, 'paper-end', 0, nil, LORIMAT_FAULT_NEXT, 1) = LORIMAT_OK) and
    (Run('VEND REP=2, PRE=5.00') <> 0), 'a fault');
  TradClose();
  lorimat_register_close(device);
end;

begin
  if ParamCount <> 1 then Halt(2);
  Expect(lorimat_library_abi() = LORIMAT_ABI, 'the abi');
  TryDevice(PAnsiChar(ParamStr(1)));
  TryRegister(PAnsiChar(ParamStr(1)));
  if failures > 0 then Halt(1);
end.
