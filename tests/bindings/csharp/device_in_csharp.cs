// A device in C#, and the register with all that it can be given: exits with 0 when every answer is as
// expected, else prints the ones that are not.
using System;
using System.Runtime.InteropServices;

static class DeviceInCSharp {
  static int failures;
  static IntPtr client, interfaceOfClient;
  static int receipts, lines, clocks;
  static long sold, paid;
  static string last, unit = "none";

  static void Expect(bool holds, string what) {
    if (holds) return;
    Console.Error.WriteLine("device_in_csharp: not so: " + what);
    ++failures;
  }

  static IntPtr EcrIo(IntPtr code, IntPtr a, IntPtr b, IntPtr c, IntPtr d, IntPtr e, IntPtr to) {
    if (Lorimat.Long(code) != Lorimat.ECRIOIC_GET_CLIENT_RT) return new IntPtr(-1);
    Marshal.WriteIntPtr(to, interfaceOfClient);
    return IntPtr.Zero;
  }

  static long Run(string line) {
    return Lorimat.Long(Lorimat.EcrCmd(Lorimat.Bytes(line), new byte[512]));
  }

  static bool IsText(IntPtr text, int room, byte value) {
    for (int i = 0; i < room; ++i) Marshal.WriteByte(text, i, value);
    return true;
  }

  static void TryDevice(Lorimat.PECRIO ecrIo, byte[] definition) {
    var device = new Lorimat.lorimat_device {
      size = new UIntPtr((uint)Marshal.SizeOf(typeof(Lorimat.lorimat_device))),
      abi = Lorimat.LORIMAT_ABI,
      user_data = new IntPtr(77),
      GetState = mine => mine == new IntPtr(77) ? Lorimat.RTF_S_IDLE : Lorimat.RTF_S_ERROR,
      GetIntProperty = (mine, property, value) => {
        if (property != Lorimat.RTF_PIDXFptr_PrinterState) return Lorimat.RTF_E_ILLEGAL;
        Marshal.WriteInt32(value, receipts > 0 ? Lorimat.RTF_FPTR_PS_FISCAL_RECEIPT
                                               : Lorimat.RTF_FPTR_PS_MONITOR);
        return Lorimat.RTF_SUCCESS;
      },
      // Every byte that there is room for, without an end.
      GetDataInternal = (mine, item, text, room) =>
          IsText(text, (int)room, (byte)'0') ? Lorimat.RTF_SUCCESS : Lorimat.RTF_E_FAILURE,
      BeginFiscalReceipt = (mine, header) => { ++receipts; return Lorimat.RTF_SUCCESS; },
      PrintRecItemEx = (mine, kind, description, price, quantity, vat, unitPrice, unitName, department,
                        now, code) => {
        if (department == 9) return Lorimat.RTF_EFPTR_BAD_VAT;
        ++lines;
        sold += unitPrice * quantity / 1000;
        last = Lorimat.Text(description);
        unit = Lorimat.Text(unitName);
        return Lorimat.RTF_SUCCESS;
      },
      PrintRecTotalEx = (mine, payment, tender, rest) => {
        paid += payment;
        receipts = 0;
        return Lorimat.RTF_SUCCESS;
      },
    };
    Expect(Lorimat.lorimat_client_new(ref device, out client) == Lorimat.LORIMAT_OK, "a client");
    interfaceOfClient = Lorimat.lorimat_client_interface(client);
    Expect(Lorimat.TradInit(definition, 0, null, ecrIo) == 0, "the start");
    Expect(Run("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'") == 0, "a sale");
    Expect(receipts == 1 && lines == 1 && sold == 24000, "what it told");
    Expect(last == "CAFFE" && unit != "none", "its texts");
    Expect(Run("VEND REP=9, PRE=1.20") == (Lorimat.RTF_EFPTR_BAD_VAT | 0x400), "a refusal");
    Expect(Run("CHIU TEND=CONTANTI, IMP=300000.00") == 0 && paid == 3000000000, "an amount of 64 bits");
    Expect(Run("AZZGIO") == (Lorimat.RTF_E_ILLEGAL | 0x200), "what the device has not");
    IntPtr operation;
    Expect(Lorimat.lorimat_client_take_fault(client, out operation) == Lorimat.LORIMAT_OK &&
           operation == IntPtr.Zero, "no fault");
    Lorimat.TradClose();
    Lorimat.lorimat_client_free(client);
    GC.KeepAlive(device);
    device.size = new UIntPtr(8);
    Expect(Lorimat.lorimat_client_new(ref device, out client) == Lorimat.LORIMAT_TABLE_TOO_SHORT, "too short");
    Expect(Lorimat.Text(Lorimat.lorimat_error()) != "", "a cause");
    Expect(Lorimat.Text(Lorimat.lorimat_explain(new IntPtr(257), "it_IT.UTF-8")).StartsWith("classe 1"),
           "an explanation in Italian");
    Expect(Lorimat.lorimat_explain(new IntPtr(257), "xx") == IntPtr.Zero, "no such language");
  }

  static void TryRegister(Lorimat.PECRIO ecrIo, byte[] definition) {
    var settings = new Lorimat.lorimat_register_settings {
      size = new UIntPtr((uint)Marshal.SizeOf(typeof(Lorimat.lorimat_register_settings))),
      abi = Lorimat.LORIMAT_ABI,
      serial_number = "99ABC0000042",
      last_closure = 41,
      clock = (mine, now) => {
        ++clocks;
        int[] time = { 2026, 11, 20, 11, 3, 0 };
        Marshal.Copy(time, 0, now, 6);
        return true;
      },
    };
    IntPtr register;
    Expect(Lorimat.lorimat_register_open(ref settings, out register) == Lorimat.LORIMAT_OK, "a register");
    interfaceOfClient = Lorimat.lorimat_register_interface(register);
    Expect(Lorimat.TradInit(definition, 0, null, ecrIo) == 0, "its start");
    Expect(Run("VEND REP=2, PRE=5.00") == 0 && Run("CHIU TEND=CONTANTI") == 0 && clocks > 0, "a receipt");
    var totals = new Lorimat.lorimat_register_totals {
      size = new UIntPtr((uint)Marshal.SizeOf(typeof(Lorimat.lorimat_register_totals))),
      abi = Lorimat.LORIMAT_ABI,
    };
    Expect(Lorimat.lorimat_register_get_totals(register, ref totals) == Lorimat.LORIMAT_OK &&
           totals.sales == 1 && totals.receipts_amount == 50000 && totals.grand_amount == 50000, "totals");
    var state = new Lorimat.lorimat_register_state {
      size = new UIntPtr((uint)Marshal.SizeOf(typeof(Lorimat.lorimat_register_state))),
      abi = Lorimat.LORIMAT_ABI,
    };
    Expect(Lorimat.lorimat_register_get_state(register, ref state) == Lorimat.LORIMAT_OK &&
           state.last_closure == 41 && state.day_open && !state.training && state.documents == 1, "a state");
    var tenders = new Lorimat.lorimat_tender_total[40];
    UIntPtr count;
    Expect(Lorimat.lorimat_register_get_tenders(register, tenders, new UIntPtr(40), out count) ==
           Lorimat.LORIMAT_OK && count.ToUInt32() == 1 && Lorimat.Text(tenders[0].tender) == "0" &&
           tenders[0].amount == 50000, "tenders");
    var paper = new Lorimat.lorimat_bytes();
    Expect(Lorimat.lorimat_register_paper(register, ref paper) == Lorimat.LORIMAT_OK, "paper");
    string text = Lorimat.Text(paper.data);
    Expect(text.Contains("20/11/2026 11:03") && text.Contains("99ABC0000042") && text.Contains("0042-0001"),
           "what is on it");
    Lorimat.lorimat_bytes_free(ref paper);
    Expect(paper.data == IntPtr.Zero, "nothing left of it");
    Expect(Lorimat.lorimat_register_add_fault(register, "paper-end", 0, null, Lorimat.LORIMAT_FAULT_NEXT, 1) ==
           Lorimat.LORIMAT_OK && Run("VEND REP=2, PRE=5.00") != 0, "a fault");
    Lorimat.TradClose();
    Lorimat.lorimat_register_close(register);
    GC.KeepAlive(settings);
  }

  static int Main(string[] arguments) {
    if (arguments.Length != 1) return 2;
    Lorimat.PECRIO ecrIo = EcrIo;
    Expect(Lorimat.lorimat_abi() == Lorimat.LORIMAT_ABI, "the abi");
    TryDevice(ecrIo, Lorimat.Bytes(arguments[0]));
    TryRegister(ecrIo, Lorimat.Bytes(arguments[0]));
    GC.KeepAlive(ecrIo);
    return failures == 0 ? 0 : 1;
  }
}
