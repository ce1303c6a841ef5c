// A host in C# in its smallest form: Lorimat.cs is compiled with it; it opens a virtual register and runs
// lines.
//
//   host.exe merkelin.ini
using System;
using System.Text;

static class Host {
  static IntPtr device;

  // The library asks for the client once, from TradInit; the last argument is the address to fill.
  static IntPtr EcrIo(IntPtr code, IntPtr a, IntPtr b, IntPtr c, IntPtr d, IntPtr e, IntPtr client) {
    if (Lorimat.Long(code) != Lorimat.ECRIOIC_GET_CLIENT_RT) return new IntPtr(-1);
    System.Runtime.InteropServices.Marshal.WriteIntPtr(client, Lorimat.lorimat_register_interface(device));
    return IntPtr.Zero;
  }

  // Runs one line; false, with the answer shown, when it fails.
  static bool Run(string line) {
    byte[] answer = new byte[512];  // the least that EcrCmd asks for
    long code = Lorimat.Long(Lorimat.EcrCmd(Lorimat.Bytes(line, Encoding.GetEncoding(28591)), answer));
    if (code != 0) Console.Error.WriteLine("{0}: code {1}: {2}", line, code, Lorimat.Text(answer));
    return code == 0;
  }

  static int Main(string[] arguments) {
    if (arguments.Length != 1) return 2;
    if (Lorimat.lorimat_register_open(IntPtr.Zero, out device) != Lorimat.LORIMAT_OK) {
      Console.Error.WriteLine(Lorimat.Text(Lorimat.lorimat_register_error()));
      return 2;
    }
    Lorimat.PECRIO ecrIo = EcrIo;
    if (Lorimat.TradInit(Lorimat.Bytes(arguments[0]), 0, null, ecrIo) != 0) return 2;
    bool good = Run("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'");
    good = Run("VEND REP=2, PRE=1.50, DES='CORNETTO'") && good;
    good = Run("CHIU TEND=CONTANTI, IMP=5.00") && good;
    Lorimat.TradClose();
    Lorimat.lorimat_bytes paper = new Lorimat.lorimat_bytes();
    if (Lorimat.lorimat_register_paper(device, ref paper) == Lorimat.LORIMAT_OK) {
      Console.Write(Lorimat.Text(paper.data));
    }
    Lorimat.lorimat_bytes_free(ref paper);
    Lorimat.lorimat_register_close(device);
    GC.KeepAlive(ecrIo);
    return good ? 0 : 1;
  }
}
