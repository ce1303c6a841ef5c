// Made from the headers of C by script/make-bindings: change them, and it, there.
//
// liblorimatrt and its C face for C#: one file, to be compiled with a program of Mono or .NET. What each
// function does, and what it takes and gives, is told by the headers lorimatrt.h, lorimat.h and
// lorimat_register.h, whose names these are.
//
// - A `long` of C is an IntPtr, of which Long() makes a number: on Windows its low 32 bits are all.
// - A text that goes in is UTF-8; one that comes back is an address, of which Text() makes a string.
//   EcrCmd and TradInit take bytes (Bytes()), for lines are in the code page of the device.
// - A delegate that is given to the library, or stands in a lorimat_device, has to be kept by the program as
//   long as the library may call it: the library's copy does not count for the garbage collector. No
//   exception may leave it.
using System;
using System.Runtime.InteropServices;
using System.Text;

public static class Lorimat {
  // The files of the libraries; the loader adds ".so" or ".dll".
  const string Translator = "liblorimatrt";
  const string Face = "liblorimat-c";
  const string Register = "liblorimat-register-c";

  // What C has as long.
  public static long Long(IntPtr number) {
    bool windows = Environment.OSVersion.Platform == PlatformID.Win32NT;
    return windows ? unchecked((int)number.ToInt64()) : number.ToInt64();
  }

  // The text at an address of C, in UTF-8 unless another encoding is named; null for null.
  public static string Text(IntPtr text, Encoding encoding = null) {
    if (text == IntPtr.Zero) return null;
    int length = 0;
    while (Marshal.ReadByte(text, length) != 0) ++length;
    byte[] bytes = new byte[length];
    Marshal.Copy(text, bytes, 0, length);
    return (encoding ?? Encoding.UTF8).GetString(bytes);
  }

  // The text up to its NUL in a buffer that C has filled.
  public static string Text(byte[] buffer, Encoding encoding = null) {
    int length = Array.IndexOf(buffer, (byte)0);
    return (encoding ?? Encoding.UTF8).GetString(buffer, 0, length < 0 ? buffer.Length : length);
  }

  // A text as C takes it, with its NUL.
  public static byte[] Bytes(string text, Encoding encoding = null) {
    return (encoding ?? Encoding.UTF8).GetBytes(text + "\0");
  }

  // --- Numbers

  public const int ECRIOIC_ONLINEOFF = -101;
  public const int ECRIOIC_ONLINEON = -102;
  public const int ECRIOIC_ONLINE = -103;
  public const int ECRIOIC_GETPROTINFO = -105;
  public const int ECRIOIC_DIAL = -106;
  public const int ECRIOIC_HANGUP = -107;
  public const int ECRIOIC_ONDSRCHECK = -108;
  public const int ECRIOIC_ONCTSCHECK = -109;
  public const int ECRIOIC_SOCKET_CONNECT = -110;
  public const int ECRIOIC_SOCKET_CLOSE = -111;
  public const int ECRIOIC_GET_CLIENT_RT = -112;
  public const int ECRIOIC_GET_CLIENT_RT_FP = -112;
  public const int ECRIOIC_GET_CLIENT_RT_CD = -113;
  public const int ECRIOIC_GET_CLIENT_RT_LD = -114;
  public const int LORIMAT_ABI = 1;
  public const int LORIMAT_OK = 0;
  public const int LORIMAT_NULL_ARGUMENT = 1;
  public const int LORIMAT_TABLE_TOO_SHORT = 2;
  public const int LORIMAT_OTHER_ABI = 3;
  public const int LORIMAT_NO_MEMORY = 4;
  public const int LORIMAT_BAD_VALUE = 5;
  public const int LORIMAT_REGISTER_FAULT = 6;
  public const int LORIMAT_FAILURE = 7;
  public const int LORIMAT_CALLBACK_THREW = 20;
  public const int LORIMAT_BUFFER_OVERRUN = 21;
  public const int LORIMAT_CALLBACK_ENTERED = 22;
  public const int LORIMAT_FAULT_NEXT = 0;
  public const int LORIMAT_FAULT_NTH = 1;
  public const int LORIMAT_FAULT_EVERY = 2;
  public const int LORIMAT_FAULT_TIMES = 3;
  public const int RTF_D_LINEDISPLAY = 1;
  public const int RTF_D_CASHDRAWER = 2;
  public const int RTF_D_FISCALPRINTER = 3;
  public const int RTF_S_CLOSED = 1;
  public const int RTF_S_IDLE = 2;
  public const int RTF_S_BUSY = 3;
  public const int RTF_S_ERROR = 4;
  public const int RTF_SUCCESS = 0;
  public const int RTFERR = 100;
  public const int RTF_E_CLOSED = 101;
  public const int RTF_E_CLAIMED = 102;
  public const int RTF_E_NOTCLAIMED = 103;
  public const int RTF_E_NOSERVICE = 104;
  public const int RTF_E_DISABLED = 105;
  public const int RTF_E_ILLEGAL = 106;
  public const int RTF_E_NOHARDWARE = 107;
  public const int RTF_E_OFFLINE = 108;
  public const int RTF_E_NOEXIST = 109;
  public const int RTF_E_EXISTS = 110;
  public const int RTF_E_FAILURE = 111;
  public const int RTF_E_TIMEOUT = 112;
  public const int RTF_E_BUSY = 113;
  public const int RTF_E_EXTENDED = 114;
  public const int RTF_E_DEPRECATED = 115;
  public const int RTFERREXT = 200;
  public const int RTF_ESTATS_ERROR = 280;
  public const int RTF_ESTATS_DEPENDENCY = 282;
  public const int RTF_EFIRMWARE_BAD_FILE = 281;
  public const int RTF_OR_ALREADYOPEN = 301;
  public const int RTF_OR_REGBADNAME = 302;
  public const int RTF_OR_REGPROGID = 303;
  public const int RTF_OR_CREATE = 304;
  public const int RTF_OR_BADIF = 305;
  public const int RTF_OR_FAILEDOPEN = 306;
  public const int RTF_OR_BADVERSION = 307;
  public const int RTF_ORS_NOPORT = 401;
  public const int RTF_ORS_NOTSUPPORTED = 402;
  public const int RTF_ORS_CONFIG = 403;
  public const int RTF_ORS_SPECIFIC = 450;
  public const int RTF_PIDX_NUMBER = 0;
  public const int RTF_PIDX_STRING = 1000000;
  public const int RTF_PIDX_CASH = 1000;
  public const int RTF_PIDX_COIN = 2000;
  public const int RTF_PIDX_TOT = 3000;
  public const int RTF_PIDX_LOCK = 4000;
  public const int RTF_PIDX_DISP = 5000;
  public const int RTF_PIDX_MICR = 6000;
  public const int RTF_PIDX_MSR = 7000;
  public const int RTF_PIDX_PTR = 8000;
  public const int RTF_PIDX_SCAL = 9000;
  public const int RTF_PIDX_SCAN = 10000;
  public const int RTF_PIDX_SIG = 11000;
  public const int RTF_PIDX_KBD = 12000;
  public const int RTF_PIDX_CHAN = 13000;
  public const int RTF_PIDX_TONE = 14000;
  public const int RTF_PIDX_BB = 15000;
  public const int RTF_PIDX_FPTR = 16000;
  public const int RTF_PIDX_PPAD = 17000;
  public const int RTF_PIDX_ROD = 18000;
  public const int RTF_PIDX_CAT = 19000;
  public const int RTF_PIDX_PCRW = 20000;
  public const int RTF_PIDX_PWR = 21000;
  public const int RTF_PIDX_CHK = 22000;
  public const int RTF_PIDX_MOTION = 23000;
  public const int RTF_PIDX_SCRW = 24000;
  public const int RTF_PIDX_BIO = 25000;
  public const int RTF_PIDX_EJ = 26000;
  public const int RTF_PIDX_BACC = 27000;
  public const int RTF_PIDX_BDSP = 28000;
  public const int RTF_PIDX_CACC = 29000;
  public const int RTF_PIDX_IMG = 30000;
  public const int RTF_PIDX_BELT = 31000;
  public const int RTF_PIDX_EVRW = 32000;
  public const int RTF_PIDX_GATE = 33000;
  public const int RTF_PIDX_ITEM = 34000;
  public const int RTF_PIDX_LGT = 35000;
  public const int RTF_PIDX_RFID = 36000;
  public const int RTF_PIDX_Claimed = 1;
  public const int RTF_PIDX_DataEventEnabled = 2;
  public const int RTF_PIDX_DeviceEnabled = 3;
  public const int RTF_PIDX_FreezeEvents = 4;
  public const int RTF_PIDX_OutputID = 5;
  public const int RTF_PIDX_ResultCode = 6;
  public const int RTF_PIDX_ResultCodeExtended = 7;
  public const int RTF_PIDX_ServiceObjectVersion = 8;
  public const int RTF_PIDX_State = 9;
  public const int RTF_PIDX_AutoDisable = 10;
  public const int RTF_PIDX_BinaryConversion = 11;
  public const int RTF_PIDX_DataCount = 12;
  public const int RTF_PIDX_PowerNotify = 13;
  public const int RTF_PIDX_PowerState = 14;
  public const int RTF_PIDX_CapPowerReporting = 501;
  public const int RTF_PIDX_CapStatisticsReporting = 502;
  public const int RTF_PIDX_CapUpdateStatistics = 503;
  public const int RTF_PIDX_CapCompareFirmwareVersion = 504;
  public const int RTF_PIDX_CapUpdateFirmware = 505;
  public const int RTF_PIDX_CheckHealthText = 1000001;
  public const int RTF_PIDX_DeviceDescription = 1000002;
  public const int RTF_PIDX_DeviceName = 1000003;
  public const int RTF_PIDX_ServiceObjectDescription = 1000004;
  public const int RTF_BC_NONE = 0;
  public const int RTF_BC_NIBBLE = 1;
  public const int RTF_BC_DECIMAL = 2;
  public const int RTF_CH_INTERNAL = 1;
  public const int RTF_CH_EXTERNAL = 2;
  public const int RTF_CH_INTERACTIVE = 3;
  public const int RTF_PR_NONE = 0;
  public const int RTF_PR_STANDARD = 1;
  public const int RTF_PR_ADVANCED = 2;
  public const int RTF_PN_DISABLED = 0;
  public const int RTF_PN_ENABLED = 1;
  public const int RTF_PS_UNKNOWN = 2000;
  public const int RTF_PS_ONLINE = 2001;
  public const int RTF_PS_OFF = 2002;
  public const int RTF_PS_OFFLINE = 2003;
  public const int RTF_PS_OFF_OFFLINE = 2004;
  public const int RTF_CFV_FIRMWARE_OLDER = 1;
  public const int RTF_CFV_FIRMWARE_SAME = 2;
  public const int RTF_CFV_FIRMWARE_NEWER = 3;
  public const int RTF_CFV_FIRMWARE_DIFFERENT = 4;
  public const int RTF_CFV_FIRMWARE_UNKNOWN = 5;
  public const int RTF_EL_OUTPUT = 1;
  public const int RTF_EL_INPUT = 2;
  public const int RTF_EL_INPUT_DATA = 3;
  public const int RTF_ER_RETRY = 11;
  public const int RTF_ER_CLEAR = 12;
  public const int RTF_ER_CONTINUEINPUT = 13;
  public const int RTF_SUE_POWER_ONLINE = 2001;
  public const int RTF_SUE_POWER_OFF = 2002;
  public const int RTF_SUE_POWER_OFFLINE = 2003;
  public const int RTF_SUE_POWER_OFF_OFFLINE = 2004;
  public const int RTF_SUE_UF_PROGRESS = 2100;
  public const int RTF_SUE_UF_COMPLETE = 2200;
  public const int RTF_SUE_UF_COMPLETE_DEV_NOT_RESTORED = 2205;
  public const int RTF_SUE_UF_FAILED_DEV_OK = 2201;
  public const int RTF_SUE_UF_FAILED_DEV_UNRECOVERABLE = 2202;
  public const int RTF_SUE_UF_FAILED_DEV_NEEDS_FIRMWARE = 2203;
  public const int RTF_SUE_UF_FAILED_DEV_UNKNOWN = 2204;
  public const int RTF_FOREVER = -1;
  public const int RTF_EFPTR_COVER_OPEN = 201;
  public const int RTF_EFPTR_JRN_EMPTY = 202;
  public const int RTF_EFPTR_REC_EMPTY = 203;
  public const int RTF_EFPTR_SLP_EMPTY = 204;
  public const int RTF_EFPTR_SLP_FORM = 205;
  public const int RTF_EFPTR_MISSING_DEVICES = 206;
  public const int RTF_EFPTR_WRONG_STATE = 207;
  public const int RTF_EFPTR_TECHNICAL_ASSISTANCE = 208;
  public const int RTF_EFPTR_CLOCK_ERROR = 209;
  public const int RTF_EFPTR_FISCAL_MEMORY_FULL = 210;
  public const int RTF_EFPTR_FISCAL_MEMORY_DISCONNECTED = 211;
  public const int RTF_EFPTR_FISCAL_TOTALS_ERROR = 212;
  public const int RTF_EFPTR_BAD_ITEM_QUANTITY = 213;
  public const int RTF_EFPTR_BAD_ITEM_AMOUNT = 214;
  public const int RTF_EFPTR_BAD_ITEM_DESCRIPTION = 215;
  public const int RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW = 216;
  public const int RTF_EFPTR_BAD_VAT = 217;
  public const int RTF_EFPTR_BAD_PRICE = 218;
  public const int RTF_EFPTR_BAD_DATE = 219;
  public const int RTF_EFPTR_NEGATIVE_TOTAL = 220;
  public const int RTF_EFPTR_WORD_NOT_ALLOWED = 221;
  public const int RTF_EFPTR_BAD_LENGTH = 222;
  public const int RTF_EFPTR_MISSING_SET_CURRENCY = 223;
  public const int RTF_EFPTR_DAY_END_REQUIRED = 224;
  public const int RTF_EFPTR_CASHMATIC_CONNECTION = 225;
  public const int RTF_EFPTR_CASHMATIC_ABORTED = 226;
  public const int RTF_EFPTR_CASHMATIC_UNAUTHORIZED = 227;
  public const int RTF_EFPTR_TO_MANY_ZREPORT_PENDING = 1213;
  public const int RTF_EFPTR_NEGATIVE_VAT = 1214;
  public const int RTF_EFPTR_TO_MANY_ZREPORT_PENDING_R2 = 120701;
  public const int RTF_EFPTR_NEGATIVE_VAT_R2 = 121202;
  public const int RTF_PIDXFptr_AmountDecimalPlaces = 16001;
  public const int RTF_PIDXFptr_AsyncMode = 16002;
  public const int RTF_PIDXFptr_CheckTotal = 16003;
  public const int RTF_PIDXFptr_CountryCode = 16004;
  public const int RTF_PIDXFptr_CoverOpen = 16005;
  public const int RTF_PIDXFptr_DayOpened = 16006;
  public const int RTF_PIDXFptr_DescriptionLength = 16007;
  public const int RTF_PIDXFptr_DuplicateReceipt = 16008;
  public const int RTF_PIDXFptr_ErrorLevel = 16009;
  public const int RTF_PIDXFptr_ErrorOutID = 16010;
  public const int RTF_PIDXFptr_ErrorState = 16011;
  public const int RTF_PIDXFptr_ErrorStation = 16012;
  public const int RTF_PIDXFptr_FlagWhenIdle = 16013;
  public const int RTF_PIDXFptr_JrnEmpty = 16014;
  public const int RTF_PIDXFptr_JrnNearEnd = 16015;
  public const int RTF_PIDXFptr_MessageLength = 16016;
  public const int RTF_PIDXFptr_NumHeaderLines = 16017;
  public const int RTF_PIDXFptr_NumTrailerLines = 16018;
  public const int RTF_PIDXFptr_NumVatRates = 16019;
  public const int RTF_PIDXFptr_PrinterState = 16020;
  public const int RTF_PIDXFptr_QuantityDecimalPlaces = 16021;
  public const int RTF_PIDXFptr_QuantityLength = 16022;
  public const int RTF_PIDXFptr_RecEmpty = 16023;
  public const int RTF_PIDXFptr_RecNearEnd = 16024;
  public const int RTF_PIDXFptr_RemainingFiscalMemory = 16025;
  public const int RTF_PIDXFptr_SlpEmpty = 16026;
  public const int RTF_PIDXFptr_SlpNearEnd = 16027;
  public const int RTF_PIDXFptr_SlipSelection = 16028;
  public const int RTF_PIDXFptr_TrainingModeActive = 16029;
  public const int RTF_PIDXFptr_ActualCurrency = 16030;
  public const int RTF_PIDXFptr_ContractorId = 16031;
  public const int RTF_PIDXFptr_DateType = 16032;
  public const int RTF_PIDXFptr_FiscalReceiptStation = 16033;
  public const int RTF_PIDXFptr_FiscalReceiptType = 16034;
  public const int RTF_PIDXFptr_MessageType = 16035;
  public const int RTF_PIDXFptr_TotalizerType = 16036;
  public const int RTF_PIDXFptr_CapAdditionalLines = 16501;
  public const int RTF_PIDXFptr_CapAmountAdjustment = 16502;
  public const int RTF_PIDXFptr_CapAmountNotPaid = 16503;
  public const int RTF_PIDXFptr_CapCheckTotal = 16504;
  public const int RTF_PIDXFptr_CapCoverSensor = 16505;
  public const int RTF_PIDXFptr_CapDoubleWidth = 16506;
  public const int RTF_PIDXFptr_CapDuplicateReceipt = 16507;
  public const int RTF_PIDXFptr_CapFixedOutput = 16508;
  public const int RTF_PIDXFptr_CapHasVatTable = 16509;
  public const int RTF_PIDXFptr_CapIndependentHeader = 16510;
  public const int RTF_PIDXFptr_CapItemList = 16511;
  public const int RTF_PIDXFptr_CapJrnEmptySensor = 16512;
  public const int RTF_PIDXFptr_CapJrnNearEndSensor = 16513;
  public const int RTF_PIDXFptr_CapJrnPresent = 16514;
  public const int RTF_PIDXFptr_CapNonFiscalMode = 16515;
  public const int RTF_PIDXFptr_CapOrderAdjustmentFirst = 16516;
  public const int RTF_PIDXFptr_CapPercentAdjustment = 16517;
  public const int RTF_PIDXFptr_CapPositiveAdjustment = 16518;
  public const int RTF_PIDXFptr_CapPowerLossReport = 16519;
  public const int RTF_PIDXFptr_CapPredefinedPaymentLines = 16520;
  public const int RTF_PIDXFptr_CapReceiptNotPaid = 16521;
  public const int RTF_PIDXFptr_CapRecEmptySensor = 16522;
  public const int RTF_PIDXFptr_CapRecNearEndSensor = 16523;
  public const int RTF_PIDXFptr_CapRecPresent = 16524;
  public const int RTF_PIDXFptr_CapRemainingFiscalMemory = 16525;
  public const int RTF_PIDXFptr_CapReservedWord = 16526;
  public const int RTF_PIDXFptr_CapSetHeader = 16527;
  public const int RTF_PIDXFptr_CapSetPOSID = 16528;
  public const int RTF_PIDXFptr_CapSetStoreFiscalID = 16529;
  public const int RTF_PIDXFptr_CapSetTrailer = 16530;
  public const int RTF_PIDXFptr_CapSetVatTable = 16531;
  public const int RTF_PIDXFptr_CapSlpEmptySensor = 16532;
  public const int RTF_PIDXFptr_CapSlpFiscalDocument = 16533;
  public const int RTF_PIDXFptr_CapSlpFullSlip = 16534;
  public const int RTF_PIDXFptr_CapSlpNearEndSensor = 16535;
  public const int RTF_PIDXFptr_CapSlpPresent = 16536;
  public const int RTF_PIDXFptr_CapSlpValidation = 16537;
  public const int RTF_PIDXFptr_CapSubAmountAdjustment = 16538;
  public const int RTF_PIDXFptr_CapSubPercentAdjustment = 16539;
  public const int RTF_PIDXFptr_CapSubtotal = 16540;
  public const int RTF_PIDXFptr_CapTrainingMode = 16541;
  public const int RTF_PIDXFptr_CapValidateJournal = 16542;
  public const int RTF_PIDXFptr_CapXReport = 16543;
  public const int RTF_PIDXFptr_CapAdditionalHeader = 16544;
  public const int RTF_PIDXFptr_CapAdditionalTrailer = 16545;
  public const int RTF_PIDXFptr_CapChangeDue = 16546;
  public const int RTF_PIDXFptr_CapEmptyReceiptIsVoidable = 16547;
  public const int RTF_PIDXFptr_CapFiscalReceiptStation = 16548;
  public const int RTF_PIDXFptr_CapFiscalReceiptType = 16549;
  public const int RTF_PIDXFptr_CapMultiContractor = 16550;
  public const int RTF_PIDXFptr_CapOnlyVoidLastItem = 16551;
  public const int RTF_PIDXFptr_CapPackageAdjustment = 16552;
  public const int RTF_PIDXFptr_CapPostPreLine = 16553;
  public const int RTF_PIDXFptr_CapSetCurrency = 16554;
  public const int RTF_PIDXFptr_CapTotalizerType = 16555;
  public const int RTF_PIDXFptr_CapPositiveSubtotalAdjustment = 16556;
  public const int RTF_PIDXFptr_ErrorString = 1016001;
  public const int RTF_PIDXFptr_PredefinedPaymentLines = 1016002;
  public const int RTF_PIDXFptr_ReservedWord = 1016003;
  public const int RTF_PIDXFptr_AdditionalHeader = 1016004;
  public const int RTF_PIDXFptr_AdditionalTrailer = 1016005;
  public const int RTF_PIDXFptr_ChangeDue = 1016006;
  public const int RTF_PIDXFptr_PostLine = 1016007;
  public const int RTF_PIDXFptr_PreLine = 1016008;
  public const int RTF_PIDXFptr_InvoiceSeries = 1016800;
  public const int RTF_PIDXFptr_TaxCode = 1016801;
  public const int RTF_PIDXFptr_InvoiceNumber = 16800;
  public const int RTF_PIDXFptr_EJState = 16802;
  public const int RTF_PIDXFptr_RemainingEJ = 16803;
  public const int RTF_PIDXFptr_CommissioningState = 16804;
  public const int RTF_PIDXFptr_PercentageDecimalPlaces = 16805;
  public const int RTF_PIDXFptr_ZReportSendPending = 16806;
  public const int RTF_PIDXFptr_AmountDecimalPlacesStandard = 16807;
  public const int RTF_PIDXFptr_PercentageDecimalPlacesStandard = 16808;
  public const int RTF_PIDXFptr_UposAmountDecimalPlaces = 16809;
  public const int RTF_PIDXFptr_DeepMode = 16813;
  public const int RTF_PIDXFptr_ZReportType = 16814;
  public const int RTF_PIDXFptr_SendLotteriaAEOnClosure = 16815;
  public const int RTF_PIDXFptr_AutoCloseOnInactivity = 16816;
  public const int RTF_PIDXFptr_EJFreeSpace = 1016810;
  public const int RTF_PIDXFptr_EJTotalSpace = 1016811;
  public const int RTF_FPTR_PS_MONITOR = 1;
  public const int RTF_FPTR_PS_FISCAL_RECEIPT = 2;
  public const int RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL = 3;
  public const int RTF_FPTR_PS_FISCAL_RECEIPT_ENDING = 4;
  public const int RTF_FPTR_PS_FISCAL_DOCUMENT = 5;
  public const int RTF_FPTR_PS_FIXED_OUTPUT = 6;
  public const int RTF_FPTR_PS_ITEM_LIST = 7;
  public const int RTF_FPTR_PS_LOCKED = 8;
  public const int RTF_FPTR_PS_NONFISCAL = 9;
  public const int RTF_FPTR_PS_REPORT = 10;
  public const int RTF_FPTR_AT_AMOUNT_DISCOUNT = 1;
  public const int RTF_FPTR_AT_AMOUNT_SURCHARGE = 2;
  public const int RTF_FPTR_AT_PERCENTAGE_DISCOUNT = 3;
  public const int RTF_FPTR_AT_PERCENTAGE_SURCHARGE = 4;
  public const int RTF_FPTR_AT_COUPON_AMOUNT_DISCOUNT = 5;
  public const int RTF_FPTR_AT_COUPON_PERCENTAGE_DISCOUNT = 6;
  public const int RTF_FPTR_S_JOURNAL = 1;
  public const int RTF_FPTR_S_RECEIPT = 2;
  public const int RTF_FPTR_S_SLIP = 4;
  public const int RTF_FPTR_S_JOURNAL_RECEIPT = 3;
  public const int RTF_FPTR_GD_FIRMWARE = 10;
  public const int RTF_FPTR_GD_PRINTER_ID = 9;
  public const int RTF_FPTR_GD_CURRENT_TOTAL = 1;
  public const int RTF_FPTR_GD_DAILY_TOTAL = 2;
  public const int RTF_FPTR_GD_GRAND_TOTAL = 8;
  public const int RTF_FPTR_GD_MID_VOID = 6;
  public const int RTF_FPTR_GD_NOT_PAID = 5;
  public const int RTF_FPTR_GD_RECEIPT_NUMBER = 3;
  public const int RTF_FPTR_GD_REFUND = 4;
  public const int RTF_FPTR_GD_REFUND_VOID = 12;
  public const int RTF_FPTR_GD_NUMB_CONFIG_BLOCK = 13;
  public const int RTF_FPTR_GD_NUMB_CURRENCY_BLOCK = 14;
  public const int RTF_FPTR_GD_NUMB_HDR_BLOCK = 15;
  public const int RTF_FPTR_GD_NUMB_RESET_BLOCK = 16;
  public const int RTF_FPTR_GD_NUMB_VAT_BLOCK = 17;
  public const int RTF_FPTR_GD_FISCAL_DOC = 18;
  public const int RTF_FPTR_GD_FISCAL_DOC_VOID = 19;
  public const int RTF_FPTR_GD_FISCAL_REC = 20;
  public const int RTF_FPTR_GD_FISCAL_REC_VOID = 21;
  public const int RTF_FPTR_GD_NONFISCAL_DOC = 22;
  public const int RTF_FPTR_GD_NONFISCAL_DOC_VOID = 23;
  public const int RTF_FPTR_GD_NONFISCAL_REC = 24;
  public const int RTF_FPTR_GD_RESTART = 11;
  public const int RTF_FPTR_GD_SIMP_INVOICE = 25;
  public const int RTF_FPTR_GD_Z_REPORT = 7;
  public const int RTF_FPTR_GD_TENDER = 26;
  public const int RTF_FPTR_GD_LINECOUNT = 27;
  public const int RTF_FPTR_GD_DESCRIPTION_LENGTH = 28;
  public const int RTF_FPTR_GT_GROSS = 1;
  public const int RTF_FPTR_GT_NET = 2;
  public const int RTF_FPTR_GT_DISCOUNT = 3;
  public const int RTF_FPTR_GT_DISCOUNT_VOID = 4;
  public const int RTF_FPTR_GT_ITEM = 5;
  public const int RTF_FPTR_GT_ITEM_VOID = 6;
  public const int RTF_FPTR_GT_NOT_PAID = 7;
  public const int RTF_FPTR_GT_REFUND = 8;
  public const int RTF_FPTR_GT_REFUND_VOID = 9;
  public const int RTF_FPTR_GT_SUBTOTAL_DISCOUNT = 10;
  public const int RTF_FPTR_GT_SUBTOTAL_DISCOUNT_VOID = 11;
  public const int RTF_FPTR_GT_SUBTOTAL_SURCHARGES = 12;
  public const int RTF_FPTR_GT_SUBTOTAL_SURCHARGES_VOID = 13;
  public const int RTF_FPTR_GT_SURCHARGE = 14;
  public const int RTF_FPTR_GT_SURCHARGE_VOID = 15;
  public const int RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS = 16;
  public const int RTF_FPTR_GT_VAT_CATEGORY_RECEIPT_GROSS = 17;
  public const int RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS = 18;
  public const int RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS = 19;
  public const int RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS = 20;
  public const int RTF_FPTR_GT_VAT_CATEGORY_DAILY = 21;
  public const int RTF_FPTR_GT_VAT_CATEGORY_RECEIPT = 22;
  public const int RTF_FPTR_GT_VAT_CATEGORY_REFUND = 23;
  public const int RTF_FPTR_GT_VAT_CATEGORY_CANCEL = 24;
  public const int RTF_FPTR_GT_VAT_CATEGORY_INVOICE = 25;
  public const int RTF_FPTR_GT_VAT_CATEGORY_TAXALL = 26;
  public const int RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_QUANTITY = 100;
  public const int RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_GROSS_VALUE = 101;
  public const int RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_GROSS_VALUE = 102;
  public const int RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_DEPARTMENT_NAME = 103;
  public const int RTF_FPTR_GT_VAT_CATEGORY_SERVICES_GROSS = 104;
  public const int RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID_GROSS = 105;
  public const int RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID_GROSS = 106;
  public const int RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID_GROSS = 107;
  public const int RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID_GROSS = 108;
  public const int RTF_FPTR_GT_VAT_CATEGORY_GIFT_GROSS = 110;
  public const int RTF_FPTR_GT_DISCOUNT_ON_PAYMENT = 109;
  public const int RTF_FPTR_GT_GENERIC_VOUCHER_GROSS = 111;
  public const int RTF_FPTR_GT_TICKET_PAYED_GROSS = 112;
  public const int RTF_FPTR_GT_TICKET_PAYED_COUNT = 113;
  public const int RTF_FPTR_GT_ROUNDING_GROSS = 114;
  public const int RTF_FPTR_GT_ROUNDING_COUNT = 115;
  public const int RTF_FPTR_GT_VAT_CATEGORY_SERVICES = 124;
  public const int RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID = 125;
  public const int RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID = 126;
  public const int RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID = 127;
  public const int RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID = 128;
  public const int RTF_FPTR_GT_VAT_CATEGORY_GIFT = 130;
  public const int RTF_FPTR_GT_GIFT_GROSS_RECEIPTS = 131;
  public const int RTF_FPTR_GT_GIFT_GROSS_REFUNDS = 132;
  public const int RTF_FPTR_GT_GIFT_GROSS_CANCELS = 133;
  public const int RTF_FPTR_TT_DOCUMENT = 1;
  public const int RTF_FPTR_TT_DAY = 2;
  public const int RTF_FPTR_TT_RECEIPT = 3;
  public const int RTF_FPTR_TT_GRAND = 4;
  public const int RTF_FPTR_DT_CONF = 1;
  public const int RTF_FPTR_DT_EOD = 2;
  public const int RTF_FPTR_DT_RESET = 3;
  public const int RTF_FPTR_DT_RTC = 4;
  public const int RTF_FPTR_DT_VAT = 5;
  public const int RTF_FPTR_DT_START = 6;
  public const int RTF_FPTR_AC_BRC = 1;
  public const int RTF_FPTR_AC_BGL = 2;
  public const int RTF_FPTR_AC_EUR = 3;
  public const int RTF_FPTR_AC_GRD = 4;
  public const int RTF_FPTR_AC_HUF = 5;
  public const int RTF_FPTR_AC_ITL = 6;
  public const int RTF_FPTR_AC_PLZ = 7;
  public const int RTF_FPTR_AC_ROL = 8;
  public const int RTF_FPTR_AC_RUR = 9;
  public const int RTF_FPTR_AC_TRL = 10;
  public const int RTF_FPTR_AC_CZK = 11;
  public const int RTF_FPTR_AC_UAH = 12;
  public const int RTF_FPTR_AC_SEK = 13;
  public const int RTF_FPTR_AC_OTHER = 200;
  public const int RTF_FPTR_CID_FIRST = 1;
  public const int RTF_FPTR_CID_SECOND = 2;
  public const int RTF_FPTR_CID_SINGLE = 3;
  public const int RTF_FPTR_CC_BRAZIL = 1;
  public const int RTF_FPTR_CC_GREECE = 2;
  public const int RTF_FPTR_CC_HUNGARY = 4;
  public const int RTF_FPTR_CC_ITALY = 8;
  public const int RTF_FPTR_CC_POLAND = 16;
  public const int RTF_FPTR_CC_TURKEY = 32;
  public const int RTF_FPTR_CC_RUSSIA = 64;
  public const int RTF_FPTR_CC_BULGARIA = 128;
  public const int RTF_FPTR_CC_ROMANIA = 256;
  public const int RTF_FPTR_CC_CZECH_REPUBLIC = 512;
  public const int RTF_FPTR_CC_UKRAINE = 1024;
  public const int RTF_FPTR_CC_SWEDEN = 2048;
  public const int RTF_FPTR_CC_OTHER = 1073741824;
  public const int RTF_FPTR_EL_NONE = 1;
  public const int RTF_FPTR_EL_RECOVERABLE = 2;
  public const int RTF_FPTR_EL_FATAL = 3;
  public const int RTF_FPTR_EL_BLOCKED = 4;
  public const int RTF_FPTR_RS_RECEIPT = 1;
  public const int RTF_FPTR_RS_SLIP = 2;
  public const int RTF_FPTR_RT_CASH_IN = 1;
  public const int RTF_FPTR_RT_CASH_OUT = 2;
  public const int RTF_FPTR_RT_GENERIC = 3;
  public const int RTF_FPTR_RT_SALES = 4;
  public const int RTF_FPTR_RT_SERVICE = 5;
  public const int RTF_FPTR_RT_SIMPLE_INVOICE = 6;
  public const int RTF_FPTR_RT_REFUND = 7;
  public const int RTF_FPTR_RT_CANCEL = 1000;
  public const int RTF_FPTR_RT_ORDINAL = 1;
  public const int RTF_FPTR_RT_DATE = 2;
  public const int RTF_FPTR_RT_EOD_ORDINAL = 3;
  public const int RTF_FPTR_MT_ADVANCE = 1;
  public const int RTF_FPTR_MT_ADVANCE_PAID = 2;
  public const int RTF_FPTR_MT_AMOUNT_TO_BE_PAID = 3;
  public const int RTF_FPTR_MT_AMOUNT_TO_BE_PAID_BACK = 4;
  public const int RTF_FPTR_MT_CARD = 5;
  public const int RTF_FPTR_MT_CARD_NUMBER = 6;
  public const int RTF_FPTR_MT_CARD_TYPE = 7;
  public const int RTF_FPTR_MT_CASH = 8;
  public const int RTF_FPTR_MT_CASHIER = 9;
  public const int RTF_FPTR_MT_CASH_REGISTER_NUMBER = 10;
  public const int RTF_FPTR_MT_CHANGE = 11;
  public const int RTF_FPTR_MT_CHEQUE = 12;
  public const int RTF_FPTR_MT_CLIENT_NUMBER = 13;
  public const int RTF_FPTR_MT_CLIENT_SIGNATURE = 14;
  public const int RTF_FPTR_MT_COUNTER_STATE = 15;
  public const int RTF_FPTR_MT_CREDIT_CARD = 16;
  public const int RTF_FPTR_MT_CURRENCY = 17;
  public const int RTF_FPTR_MT_CURRENCY_VALUE = 18;
  public const int RTF_FPTR_MT_DEPOSIT = 19;
  public const int RTF_FPTR_MT_DEPOSIT_RETURNED = 20;
  public const int RTF_FPTR_MT_DOT_LINE = 21;
  public const int RTF_FPTR_MT_DRIVER_NUMB = 22;
  public const int RTF_FPTR_MT_EMPTY_LINE = 23;
  public const int RTF_FPTR_MT_FREE_TEXT = 24;
  public const int RTF_FPTR_MT_FREE_TEXT_WITH_DAY_LIMIT = 25;
  public const int RTF_FPTR_MT_GIVEN_DISCOUNT = 26;
  public const int RTF_FPTR_MT_LOCAL_CREDIT = 27;
  public const int RTF_FPTR_MT_MILEAGE_KM = 28;
  public const int RTF_FPTR_MT_NOTE = 29;
  public const int RTF_FPTR_MT_PAID = 30;
  public const int RTF_FPTR_MT_PAY_IN = 31;
  public const int RTF_FPTR_MT_POINT_GRANTED = 32;
  public const int RTF_FPTR_MT_POINTS_BONUS = 33;
  public const int RTF_FPTR_MT_POINTS_RECEIPT = 34;
  public const int RTF_FPTR_MT_POINTS_TOTAL = 35;
  public const int RTF_FPTR_MT_PROFITED = 36;
  public const int RTF_FPTR_MT_RATE = 37;
  public const int RTF_FPTR_MT_REGISTER_NUMB = 38;
  public const int RTF_FPTR_MT_SHIFT_NUMBER = 39;
  public const int RTF_FPTR_MT_STATE_OF_AN_ACCOUNT = 40;
  public const int RTF_FPTR_MT_SUBSCRIPTION = 41;
  public const int RTF_FPTR_MT_TABLE = 42;
  public const int RTF_FPTR_MT_THANK_YOU_FOR_LOYALTY = 43;
  public const int RTF_FPTR_MT_TRANSACTION_NUMB = 44;
  public const int RTF_FPTR_MT_VALID_TO = 45;
  public const int RTF_FPTR_MT_VOUCHER = 46;
  public const int RTF_FPTR_MT_VOUCHER_PAID = 47;
  public const int RTF_FPTR_MT_VOUCHER_VALUE = 48;
  public const int RTF_FPTR_MT_WITH_DISCOUNT = 49;
  public const int RTF_FPTR_MT_WITHOUT_UPLIFT = 50;
  public const int RTF_FPTR_SS_FULL_LENGTH = 1;
  public const int RTF_FPTR_SS_VALIDATION = 2;
  public const int RTF_FPTR_PDL_CASH = 1;
  public const int RTF_FPTR_PDL_CHEQUE = 2;
  public const int RTF_FPTR_PDL_CHITTY = 3;
  public const int RTF_FPTR_PDL_COUPON = 4;
  public const int RTF_FPTR_PDL_CURRENCY = 5;
  public const int RTF_FPTR_PDL_DRIVEN_OFF = 6;
  public const int RTF_FPTR_PDL_EFT_IMPRINTER = 7;
  public const int RTF_FPTR_PDL_EFT_TERMINAL = 8;
  public const int RTF_FPTR_PDL_TERMINAL_IMPRINTER = 9;
  public const int RTF_FPTR_PDL_FREE_GIFT = 10;
  public const int RTF_FPTR_PDL_GIRO = 11;
  public const int RTF_FPTR_PDL_HOME = 12;
  public const int RTF_FPTR_PDL_IMPRINTER_WITH_ISSUER = 13;
  public const int RTF_FPTR_PDL_LOCAL_ACCOUNT = 14;
  public const int RTF_FPTR_PDL_LOCAL_ACCOUNT_CARD = 15;
  public const int RTF_FPTR_PDL_PAY_CARD = 16;
  public const int RTF_FPTR_PDL_PAY_CARD_MANUAL = 17;
  public const int RTF_FPTR_PDL_PREPAY = 18;
  public const int RTF_FPTR_PDL_PUMP_TEST = 19;
  public const int RTF_FPTR_PDL_SHORT_CREDIT = 20;
  public const int RTF_FPTR_PDL_STAFF = 21;
  public const int RTF_FPTR_PDL_VOUCHER = 22;
  public const int RTF_FPTR_PDL_OTHER = 100;
  public const int RTF_FPTR_PDL_TICKET_PAID = 101;
  public const int RTF_FPTR_PDL_TICKET_NOT_PAID = 102;
  public const int RTF_FPTR_PDL_NUMBER_TICKET_NOT_PAID = 103;
  public const int RTF_FPTR_LC_ITEM = 1;
  public const int RTF_FPTR_LC_ITEM_VOID = 2;
  public const int RTF_FPTR_LC_DISCOUNT = 3;
  public const int RTF_FPTR_LC_DISCOUNT_VOID = 4;
  public const int RTF_FPTR_LC_SURCHARGE = 5;
  public const int RTF_FPTR_LC_SURCHARGE_VOID = 6;
  public const int RTF_FPTR_LC_REFUND = 7;
  public const int RTF_FPTR_LC_REFUND_VOID = 8;
  public const int RTF_FPTR_LC_SUBTOTAL_DISCOUNT = 9;
  public const int RTF_FPTR_LC_SUBTOTAL_DISCOUNT_VOID = 10;
  public const int RTF_FPTR_LC_SUBTOTAL_SURCHARGE = 11;
  public const int RTF_FPTR_LC_SUBTOTAL_SURCHARGE_VOID = 12;
  public const int RTF_FPTR_LC_COMMENT = 13;
  public const int RTF_FPTR_LC_SUBTOTAL = 14;
  public const int RTF_FPTR_LC_TOTAL = 15;
  public const int RTF_FPTR_DL_ITEM = 1;
  public const int RTF_FPTR_DL_ITEM_ADJUSTMENT = 2;
  public const int RTF_FPTR_DL_ITEM_FUEL = 3;
  public const int RTF_FPTR_DL_ITEM_FUEL_VOID = 4;
  public const int RTF_FPTR_DL_NOT_PAID = 5;
  public const int RTF_FPTR_DL_PACKAGE_ADJUSTMENT = 6;
  public const int RTF_FPTR_DL_REFUND = 7;
  public const int RTF_FPTR_DL_REFUND_VOID = 8;
  public const int RTF_FPTR_DL_SUBTOTAL_ADJUSTMENT = 9;
  public const int RTF_FPTR_DL_TOTAL = 10;
  public const int RTF_FPTR_DL_VOID = 11;
  public const int RTF_FPTR_DL_VOID_ITEM = 12;
  public const int RTF_FPTR_SC_EURO = 1;
  public const int RTF_FPTR_SUE_COVER_OPEN = 11;
  public const int RTF_FPTR_SUE_COVER_OK = 12;
  public const int RTF_FPTR_SUE_JRN_EMPTY = 21;
  public const int RTF_FPTR_SUE_JRN_NEAREMPTY = 22;
  public const int RTF_FPTR_SUE_JRN_PAPEROK = 23;
  public const int RTF_FPTR_SUE_REC_EMPTY = 24;
  public const int RTF_FPTR_SUE_REC_NEAREMPTY = 25;
  public const int RTF_FPTR_SUE_REC_PAPEROK = 26;
  public const int RTF_FPTR_SUE_SLP_EMPTY = 27;
  public const int RTF_FPTR_SUE_SLP_NEAREMPTY = 28;
  public const int RTF_FPTR_SUE_SLP_PAPEROK = 29;
  public const int RTF_FPTR_SUE_JRN_COVER_OPEN = 60;
  public const int RTF_FPTR_SUE_JRN_COVER_OK = 61;
  public const int RTF_FPTR_SUE_REC_COVER_OPEN = 62;
  public const int RTF_FPTR_SUE_REC_COVER_OK = 63;
  public const int RTF_FPTR_SUE_SLP_COVER_OPEN = 64;
  public const int RTF_FPTR_SUE_SLP_COVER_OK = 65;
  public const int RTF_FPTR_SUE_IDLE = 1001;

  // --- Functions of the program that the libraries call

  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate IntPtr PECRIO(IntPtr a, IntPtr b, IntPtr c, IntPtr d, IntPtr e, IntPtr f, IntPtr g);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate void PFIREPROGR(IntPtr a, IntPtr b, IntPtr c, IntPtr d, IntPtr e);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  [return: MarshalAs(UnmanagedType.I1)]
  public delegate bool lorimat_device_GetClaimed(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  [return: MarshalAs(UnmanagedType.I1)]
  public delegate bool lorimat_device_GetDeviceEnabled(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetDeviceEnabled(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool enabled);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetState(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetIntProperty(IntPtr user_data, int property, IntPtr value);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetIntProperty(IntPtr user_data, int property, int value);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetStringProperty(IntPtr user_data, int property, IntPtr value,
      UIntPtr value_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetStringProperty(IntPtr user_data, int property, IntPtr value);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetDataInternal(IntPtr user_data, int item, IntPtr text,
      UIntPtr text_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetDataInternal(IntPtr user_data, int item, IntPtr text);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_Close(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_Claim(IntPtr user_data, int timeout);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_Release(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_CheckHealth(IntPtr user_data, int level);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ClearOutput(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_CompareFirmwareVersion(IntPtr user_data, IntPtr firmware_file,
      IntPtr result);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ResetStatistics(IntPtr user_data, IntPtr statistics);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_RetrieveStatistics(IntPtr user_data, IntPtr statistics);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_UpdateFirmware(IntPtr user_data, IntPtr firmware_file);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_UpdateStatistics(IntPtr user_data, IntPtr statistics);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetVatEntryExtended(IntPtr user_data, int vat_id, int optional_args,
      IntPtr vat_rate, UIntPtr vat_rate_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintBarcode(IntPtr user_data, IntPtr tipo, IntPtr scale, IntPtr align,
      IntPtr textPosition, IntPtr data, byte cutMode);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintBarcodeEx(IntPtr user_data, IntPtr tipo, IntPtr scale, IntPtr align,
      IntPtr textPosition, IntPtr data, byte cutMode, [MarshalAs(UnmanagedType.I1)] bool code39checksum);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_InitJournal(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginDocInvoice(IntPtr user_data, IntPtr head1, IntPtr head2,
      IntPtr head3, IntPtr head4, IntPtr head5);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginDocInvoiceOppositionJurisprudence(IntPtr user_data, IntPtr head1,
      IntPtr head2, IntPtr head3, IntPtr head4, IntPtr head5, [MarshalAs(UnmanagedType.I1)] bool opposition);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginDocRefund(IntPtr user_data, int number, int zNumber, IntPtr date);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginDocCancel(IntPtr user_data, int number, int zNumber, IntPtr date,
      [MarshalAs(UnmanagedType.I1)] bool automatic);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginDocTelematicRefund(IntPtr user_data, int number, int zNumber,
      IntPtr date, IntPtr matricola);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginDocTelematicCancel(IntPtr user_data, int number, int zNumber,
      IntPtr date, [MarshalAs(UnmanagedType.I1)] bool automatic, IntPtr text);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginDocRefundEx(IntPtr user_data, int number, int zNumber, IntPtr date,
      [MarshalAs(UnmanagedType.I1)] bool automatic);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SendTelematicSummary(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ExportTelematicSummary(IntPtr user_data, IntPtr file);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SaveTelematicSummary(IntPtr user_data, int from_z, int to_z,
      IntPtr file);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SaveTelematicSummaryEx(IntPtr user_data, int from_z, int to_z,
      IntPtr file, int options);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintBitmap(IntPtr user_data, int ngraex, int cutMode);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SelectBitmap(IntPtr user_data, int number, int position);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ProcessEJournalReportByDate(IntPtr user_data, IntPtr from_date,
      IntPtr to_date, IntPtr file, IntPtr format);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ProcessEJournalReportByZNumber(IntPtr user_data, int from_z, int to_z,
      IntPtr file, IntPtr format);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ProcessEJournalReportByDateZNumber(IntPtr user_data, IntPtr from_date,
      IntPtr to_date, int from_z, int to_z, IntPtr file, IntPtr format);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ProcessEJournalReportByDateNumber(IntPtr user_data, IntPtr from_date,
      IntPtr to_date, int from_number, int to_number, IntPtr file, IntPtr format);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ProcessEJournalReportByDateNumberDocType(IntPtr user_data,
      IntPtr from_date, IntPtr to_date, int from_number, int to_number, int document_type, IntPtr file,
      IntPtr format);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ProcessEJournalReportGlobal(IntPtr user_data, IntPtr file,
      IntPtr format);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ProgramGRC(IntPtr user_data, byte ngraex, IntPtr file,
      [MarshalAs(UnmanagedType.I1)] bool permanent);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EraseLogoArchive(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginAdditionalTrailer(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintPaperCut(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetCurrency(IntPtr user_data, int currency);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetDate(IntPtr user_data, IntPtr date);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetHeaderLine(IntPtr user_data, int line, IntPtr text,
      [MarshalAs(UnmanagedType.I1)] bool double_width);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetPOSID(IntPtr user_data, IntPtr pos_id, IntPtr cashier_id);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetStoreFiscalID(IntPtr user_data, IntPtr fiscal_id);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetTrailerLine(IntPtr user_data, int line, IntPtr text,
      [MarshalAs(UnmanagedType.I1)] bool double_width);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetVatTable(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_SetVatValue(IntPtr user_data, int vat_id, IntPtr vat_rate);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginFiscalReceipt(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool print_header);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EndFiscalReceipt(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool print_header);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintDuplicateReceipt(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecCash(IntPtr user_data, IntPtr amount);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItem(IntPtr user_data, IntPtr description, IntPtr price,
      int quantity, int vatInfo, IntPtr unitPrice, IntPtr unitName);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemVoid(IntPtr user_data, IntPtr description, IntPtr price,
      int quantity, int vatInfo, IntPtr unitPrice, IntPtr unitName);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemAdjustment(IntPtr user_data, int adjustment_type,
      IntPtr description, long amount, int vatInfo);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemAdjustmentVoid(IntPtr user_data, int adjustment_type,
      IntPtr description, long amount, int vatInfo);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemFuel(IntPtr user_data, IntPtr description, IntPtr price,
      int quantity, int vatInfo, IntPtr unitPrice, IntPtr unitName, IntPtr special_tax,
      IntPtr special_tax_name);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemFuelVoid(IntPtr user_data, IntPtr description, IntPtr price,
      int vatInfo, IntPtr special_tax);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemRefund(IntPtr user_data, IntPtr description, IntPtr price,
      int quantity, int vatInfo, IntPtr unitPrice, IntPtr unitName);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemRefundVoid(IntPtr user_data, IntPtr description,
      IntPtr price, int quantity, int vatInfo, IntPtr unitPrice, IntPtr unitName);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecMessage(IntPtr user_data, IntPtr message);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecNotPaid(IntPtr user_data, IntPtr description, IntPtr amount);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecPackageAdjustment(IntPtr user_data, int adjustment_type,
      IntPtr description, IntPtr vat_adjustment);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecPackageAdjustVoid(IntPtr user_data, int adjustment_type,
      IntPtr vat_adjustment);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecRefund(IntPtr user_data, IntPtr description, IntPtr amount,
      int vatInfo);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecRefundVoid(IntPtr user_data, IntPtr description, IntPtr amount,
      int vatInfo);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecSubtotal(IntPtr user_data, long amount);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecSubtotalEx(IntPtr user_data, long iSubTotal,
      [MarshalAs(UnmanagedType.I1)] bool check);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecSubtotalAdjustment(IntPtr user_data, int adjustment_type,
      IntPtr description, long amount);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecSubtotalAdjustVoid(IntPtr user_data, int adjustment_type,
      long amount);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecTaxID(IntPtr user_data, IntPtr tax_id);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecTotal(IntPtr user_data, long total, long payment,
      IntPtr description);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecVoid(IntPtr user_data, IntPtr description);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecVoidItem(IntPtr user_data, IntPtr description, IntPtr amount,
      int quantity, int adjustment_type, IntPtr adjustment, int vatInfo);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_TelematicCensus(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_TelematicActivate(IntPtr user_data, IntPtr vat_number, IntPtr tax_code,
      IntPtr user, IntPtr password, int ateco, IntPtr date);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_TelematicCommissioning(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ZupEcrCmd(IntPtr user_data, IntPtr command, IntPtr length, IntPtr answer,
      UIntPtr answer_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemEx(IntPtr user_data, int pfl_item_type, IntPtr description,
      long price, int quantity, int vatInfo, long unitPrice, IntPtr unitName, int departmentInfo,
      [MarshalAs(UnmanagedType.I1)] bool print_now, IntPtr pluCode);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemAdjustmentEx(IntPtr user_data, int adjustment_type,
      IntPtr description, long amount, int vatInfo, int departmentInfo);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecItemAdjustmentEx2(IntPtr user_data, int adjustment_type,
      IntPtr description, long amount, int vatInfo, int departmentInfo,
      [MarshalAs(UnmanagedType.I1)] bool is_void);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintRecTotalEx(IntPtr user_data, long payment, IntPtr description,
      [MarshalAs(UnmanagedType.I1)] bool auto_payment);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginFiscalDocument(IntPtr user_data, int amount);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EndFiscalDocument(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintFiscalDocumentLine(IntPtr user_data, IntPtr line);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginItemList(IntPtr user_data, int vat_id);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EndItemList(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_VerifyItem(IntPtr user_data, IntPtr item_name, int vat_id);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintPeriodicTotalsReport(IntPtr user_data, IntPtr from_date,
      IntPtr to_date);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintPowerLossReport(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintReport(IntPtr user_data, int report_type, IntPtr from, IntPtr to);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintXReport(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintZReport(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginInsertion(IntPtr user_data, int timeout);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginRemoval(IntPtr user_data, int timeout);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EndInsertion(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EndRemoval(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginFixedOutput(IntPtr user_data, int station, int document_type);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginNonFiscal(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginNonFiscalJournal(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool saveOnJournal);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_BeginTraining(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EndFixedOutput(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EndNonFiscal(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EndTraining(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintFixedOutput(IntPtr user_data, int document_type, int line,
      IntPtr data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintNormal(IntPtr user_data, int station, IntPtr data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetData(IntPtr user_data, int selector, IntPtr number, IntPtr text,
      UIntPtr text_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetDate(IntPtr user_data, IntPtr date, UIntPtr date_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetTotalizer(IntPtr user_data, int vat_id, int selector, IntPtr text,
      UIntPtr text_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetVatEntry(IntPtr user_data, int vat_id, int optional_args,
      IntPtr vat_rate);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ClearError(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ResetPrn(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_OpenDrawer(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_WaitForDrawerClose(IntPtr user_data, int beep_timeout,
      int beep_frequency, int beep_duration, int beep_delay);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ClearText(IntPtr user_data);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_DisplayText(IntPtr user_data, IntPtr text, int attribute);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_DisplayTextAt(IntPtr user_data, int row, int column, IntPtr text,
      int attribute);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_DisplayTextEx(IntPtr user_data, IntPtr text, int attribute, int display,
      int timeout, [MarshalAs(UnmanagedType.I1)] bool clear);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_DisplayTextAtEx(IntPtr user_data, int row, int column, IntPtr text,
      int attribute, int display, int timeout, [MarshalAs(UnmanagedType.I1)] bool clear);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetTotalizerExtend(IntPtr user_data, int vat_id, int totalizer_type,
      int totalizer, IntPtr data, UIntPtr data_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ProgramFirmware(IntPtr user_data, IntPtr file);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_EraseTable(IntPtr user_data, int table);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_DownloadTable(IntPtr user_data, int selector, int index, IntPtr data_row,
      UIntPtr data_row_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_UploadTable(IntPtr user_data, int table, int row_type, IntPtr data_row);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ConfigDepartment(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool write, int dep_id, IntPtr description, UIntPtr description_room,
      IntPtr price, IntPtr max_price, IntPtr quantity, IntPtr vat_id, IntPtr group_id, IntPtr single_shoot,
      IntPtr allow_discount, IntPtr force_description);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ConfigDepartmentEx(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool write, int dep_id, IntPtr description, UIntPtr description_room,
      IntPtr price, IntPtr max_price, IntPtr quantity, IntPtr vat_id, IntPtr group_id, IntPtr single_shoot,
      IntPtr allow_discount, IntPtr force_description, IntPtr is_service);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ConfigGroup(IntPtr user_data, [MarshalAs(UnmanagedType.I1)] bool write,
      int index, IntPtr description, UIntPtr description_room, IntPtr operator_password,
      UIntPtr operator_password_room, IntPtr operator_flags, IntPtr operator_options);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ConfigKeyboard(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool write, byte key_pos, IntPtr key_code, IntPtr keyboard_type,
      IntPtr macro, UIntPtr macro_room, IntPtr macro_size);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_ConfigSubtender(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool write, int subtender_id, IntPtr tender_type, IntPtr description,
      UIntPtr description_room, IntPtr flags, IntPtr preset_value, IntPtr max_digits);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_GetHeaderLine(IntPtr user_data, int line, IntPtr text,
      UIntPtr text_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_KeyCodeInput(IntPtr user_data, IntPtr keys_code_numerics,
      IntPtr keys_code_alfa_fp, IntPtr key_code_alfa_lcd, byte key_code_terminator);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintZReportEx(IntPtr user_data,
      [MarshalAs(UnmanagedType.I1)] bool send);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_DiagnosticsRequest(IntPtr user_data, int test,
      [MarshalAs(UnmanagedType.I1)] bool start, int options);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_DirectIO(IntPtr user_data, int cmd, IntPtr argument, IntPtr data,
      UIntPtr data_room);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PrintXReportEx(IntPtr user_data, int kind,
      [MarshalAs(UnmanagedType.I1)] bool option, IntPtr format, IntPtr file, int outputs);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_FiscalReportMessageEx(IntPtr user_data, int source, int filter,
      int criteria, byte option1, byte option2, uint from_number, uint to_number, IntPtr from_date,
      IntPtr to_date, IntPtr format, IntPtr file, int outputs);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_PeriodicReportMessageEx(IntPtr user_data, int kind, int option,
      IntPtr format, IntPtr file, int outputs, [MarshalAs(UnmanagedType.I1)] bool clear);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate int lorimat_device_TelematicDocument(IntPtr user_data, uint device, byte operation,
      byte document_type, int from_z, int from_number, int to_z, int to_number, IntPtr file);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate void lorimat_device_LogTrace(IntPtr user_data, IntPtr line);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate void lorimat_device_LogError(IntPtr user_data, IntPtr line);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate void lorimat_device_set_wait_event(IntPtr user_data, IntPtr @event);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  public delegate void lorimat_device_set_wait_result_code(IntPtr user_data, int code);
  [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
  [return: MarshalAs(UnmanagedType.I1)]
  public delegate bool lorimat_register_settings_clock(IntPtr user_data, IntPtr now);

  // --- Structs

  [StructLayout(LayoutKind.Sequential)]
  public struct lorimat_device {
    public UIntPtr size;
    public uint abi;
    public IntPtr user_data;
    public lorimat_device_GetClaimed GetClaimed;
    public lorimat_device_GetDeviceEnabled GetDeviceEnabled;
    public lorimat_device_SetDeviceEnabled SetDeviceEnabled;
    public lorimat_device_GetState GetState;
    public lorimat_device_GetIntProperty GetIntProperty;
    public lorimat_device_SetIntProperty SetIntProperty;
    public lorimat_device_GetStringProperty GetStringProperty;
    public lorimat_device_SetStringProperty SetStringProperty;
    public lorimat_device_GetDataInternal GetDataInternal;
    public lorimat_device_SetDataInternal SetDataInternal;
    public lorimat_device_Close Close;
    public lorimat_device_Claim Claim;
    public lorimat_device_Release Release;
    public lorimat_device_CheckHealth CheckHealth;
    public lorimat_device_ClearOutput ClearOutput;
    public lorimat_device_CompareFirmwareVersion CompareFirmwareVersion;
    public lorimat_device_ResetStatistics ResetStatistics;
    public lorimat_device_RetrieveStatistics RetrieveStatistics;
    public lorimat_device_UpdateFirmware UpdateFirmware;
    public lorimat_device_UpdateStatistics UpdateStatistics;
    public lorimat_device_GetVatEntryExtended GetVatEntryExtended;
    public lorimat_device_PrintBarcode PrintBarcode;
    public lorimat_device_PrintBarcodeEx PrintBarcodeEx;
    public lorimat_device_InitJournal InitJournal;
    public lorimat_device_BeginDocInvoice BeginDocInvoice;
    public lorimat_device_BeginDocInvoiceOppositionJurisprudence BeginDocInvoiceOppositionJurisprudence;
    public lorimat_device_BeginDocRefund BeginDocRefund;
    public lorimat_device_BeginDocCancel BeginDocCancel;
    public lorimat_device_BeginDocTelematicRefund BeginDocTelematicRefund;
    public lorimat_device_BeginDocTelematicCancel BeginDocTelematicCancel;
    public lorimat_device_BeginDocRefundEx BeginDocRefundEx;
    public lorimat_device_SendTelematicSummary SendTelematicSummary;
    public lorimat_device_ExportTelematicSummary ExportTelematicSummary;
    public lorimat_device_SaveTelematicSummary SaveTelematicSummary;
    public lorimat_device_SaveTelematicSummaryEx SaveTelematicSummaryEx;
    public lorimat_device_PrintBitmap PrintBitmap;
    public lorimat_device_SelectBitmap SelectBitmap;
    public lorimat_device_ProcessEJournalReportByDate ProcessEJournalReportByDate;
    public lorimat_device_ProcessEJournalReportByZNumber ProcessEJournalReportByZNumber;
    public lorimat_device_ProcessEJournalReportByDateZNumber ProcessEJournalReportByDateZNumber;
    public lorimat_device_ProcessEJournalReportByDateNumber ProcessEJournalReportByDateNumber;
    public lorimat_device_ProcessEJournalReportByDateNumberDocType ProcessEJournalReportByDateNumberDocType;
    public lorimat_device_ProcessEJournalReportGlobal ProcessEJournalReportGlobal;
    public lorimat_device_ProgramGRC ProgramGRC;
    public lorimat_device_EraseLogoArchive EraseLogoArchive;
    public lorimat_device_BeginAdditionalTrailer BeginAdditionalTrailer;
    public lorimat_device_PrintPaperCut PrintPaperCut;
    public lorimat_device_SetCurrency SetCurrency;
    public lorimat_device_SetDate SetDate;
    public lorimat_device_SetHeaderLine SetHeaderLine;
    public lorimat_device_SetPOSID SetPOSID;
    public lorimat_device_SetStoreFiscalID SetStoreFiscalID;
    public lorimat_device_SetTrailerLine SetTrailerLine;
    public lorimat_device_SetVatTable SetVatTable;
    public lorimat_device_SetVatValue SetVatValue;
    public lorimat_device_BeginFiscalReceipt BeginFiscalReceipt;
    public lorimat_device_EndFiscalReceipt EndFiscalReceipt;
    public lorimat_device_PrintDuplicateReceipt PrintDuplicateReceipt;
    public lorimat_device_PrintRecCash PrintRecCash;
    public lorimat_device_PrintRecItem PrintRecItem;
    public lorimat_device_PrintRecItemVoid PrintRecItemVoid;
    public lorimat_device_PrintRecItemAdjustment PrintRecItemAdjustment;
    public lorimat_device_PrintRecItemAdjustmentVoid PrintRecItemAdjustmentVoid;
    public lorimat_device_PrintRecItemFuel PrintRecItemFuel;
    public lorimat_device_PrintRecItemFuelVoid PrintRecItemFuelVoid;
    public lorimat_device_PrintRecItemRefund PrintRecItemRefund;
    public lorimat_device_PrintRecItemRefundVoid PrintRecItemRefundVoid;
    public lorimat_device_PrintRecMessage PrintRecMessage;
    public lorimat_device_PrintRecNotPaid PrintRecNotPaid;
    public lorimat_device_PrintRecPackageAdjustment PrintRecPackageAdjustment;
    public lorimat_device_PrintRecPackageAdjustVoid PrintRecPackageAdjustVoid;
    public lorimat_device_PrintRecRefund PrintRecRefund;
    public lorimat_device_PrintRecRefundVoid PrintRecRefundVoid;
    public lorimat_device_PrintRecSubtotal PrintRecSubtotal;
    public lorimat_device_PrintRecSubtotalEx PrintRecSubtotalEx;
    public lorimat_device_PrintRecSubtotalAdjustment PrintRecSubtotalAdjustment;
    public lorimat_device_PrintRecSubtotalAdjustVoid PrintRecSubtotalAdjustVoid;
    public lorimat_device_PrintRecTaxID PrintRecTaxID;
    public lorimat_device_PrintRecTotal PrintRecTotal;
    public lorimat_device_PrintRecVoid PrintRecVoid;
    public lorimat_device_PrintRecVoidItem PrintRecVoidItem;
    public lorimat_device_TelematicCensus TelematicCensus;
    public lorimat_device_TelematicActivate TelematicActivate;
    public lorimat_device_TelematicCommissioning TelematicCommissioning;
    public lorimat_device_ZupEcrCmd ZupEcrCmd;
    public lorimat_device_PrintRecItemEx PrintRecItemEx;
    public lorimat_device_PrintRecItemAdjustmentEx PrintRecItemAdjustmentEx;
    public lorimat_device_PrintRecItemAdjustmentEx2 PrintRecItemAdjustmentEx2;
    public lorimat_device_PrintRecTotalEx PrintRecTotalEx;
    public lorimat_device_BeginFiscalDocument BeginFiscalDocument;
    public lorimat_device_EndFiscalDocument EndFiscalDocument;
    public lorimat_device_PrintFiscalDocumentLine PrintFiscalDocumentLine;
    public lorimat_device_BeginItemList BeginItemList;
    public lorimat_device_EndItemList EndItemList;
    public lorimat_device_VerifyItem VerifyItem;
    public lorimat_device_PrintPeriodicTotalsReport PrintPeriodicTotalsReport;
    public lorimat_device_PrintPowerLossReport PrintPowerLossReport;
    public lorimat_device_PrintReport PrintReport;
    public lorimat_device_PrintXReport PrintXReport;
    public lorimat_device_PrintZReport PrintZReport;
    public lorimat_device_BeginInsertion BeginInsertion;
    public lorimat_device_BeginRemoval BeginRemoval;
    public lorimat_device_EndInsertion EndInsertion;
    public lorimat_device_EndRemoval EndRemoval;
    public lorimat_device_BeginFixedOutput BeginFixedOutput;
    public lorimat_device_BeginNonFiscal BeginNonFiscal;
    public lorimat_device_BeginNonFiscalJournal BeginNonFiscalJournal;
    public lorimat_device_BeginTraining BeginTraining;
    public lorimat_device_EndFixedOutput EndFixedOutput;
    public lorimat_device_EndNonFiscal EndNonFiscal;
    public lorimat_device_EndTraining EndTraining;
    public lorimat_device_PrintFixedOutput PrintFixedOutput;
    public lorimat_device_PrintNormal PrintNormal;
    public lorimat_device_GetData GetData;
    public lorimat_device_GetDate GetDate;
    public lorimat_device_GetTotalizer GetTotalizer;
    public lorimat_device_GetVatEntry GetVatEntry;
    public lorimat_device_ClearError ClearError;
    public lorimat_device_ResetPrn ResetPrn;
    public lorimat_device_OpenDrawer OpenDrawer;
    public lorimat_device_WaitForDrawerClose WaitForDrawerClose;
    public lorimat_device_ClearText ClearText;
    public lorimat_device_DisplayText DisplayText;
    public lorimat_device_DisplayTextAt DisplayTextAt;
    public lorimat_device_DisplayTextEx DisplayTextEx;
    public lorimat_device_DisplayTextAtEx DisplayTextAtEx;
    public lorimat_device_GetTotalizerExtend GetTotalizerExtend;
    public lorimat_device_ProgramFirmware ProgramFirmware;
    public lorimat_device_EraseTable EraseTable;
    public lorimat_device_DownloadTable DownloadTable;
    public lorimat_device_UploadTable UploadTable;
    public lorimat_device_ConfigDepartment ConfigDepartment;
    public lorimat_device_ConfigDepartmentEx ConfigDepartmentEx;
    public lorimat_device_ConfigGroup ConfigGroup;
    public lorimat_device_ConfigKeyboard ConfigKeyboard;
    public lorimat_device_ConfigSubtender ConfigSubtender;
    public lorimat_device_GetHeaderLine GetHeaderLine;
    public lorimat_device_KeyCodeInput KeyCodeInput;
    public lorimat_device_PrintZReportEx PrintZReportEx;
    public lorimat_device_DiagnosticsRequest DiagnosticsRequest;
    public lorimat_device_DirectIO DirectIO;
    public lorimat_device_PrintXReportEx PrintXReportEx;
    public lorimat_device_FiscalReportMessageEx FiscalReportMessageEx;
    public lorimat_device_PeriodicReportMessageEx PeriodicReportMessageEx;
    public lorimat_device_TelematicDocument TelematicDocument;
    public lorimat_device_LogTrace LogTrace;
    public lorimat_device_LogError LogError;
    public lorimat_device_set_wait_event set_wait_event;
    public lorimat_device_set_wait_result_code set_wait_result_code;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct lorimat_time {
    public int year;
    public int month;
    public int day;
    public int hour;
    public int minute;
    public int second;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct lorimat_register_settings {
    public UIntPtr size;
    public uint abi;
    [MarshalAs(UnmanagedType.I1)]
    public bool not_in_service;
    [MarshalAs(UnmanagedType.LPUTF8Str)]
    public string file;
    [MarshalAs(UnmanagedType.LPUTF8Str)]
    public string serial_number;
    [MarshalAs(UnmanagedType.LPUTF8Str)]
    public string firmware_version;
    [MarshalAs(UnmanagedType.LPUTF8Str)]
    public string vat_number;
    [MarshalAs(UnmanagedType.LPUTF8Str)]
    public string outbox;
    public IntPtr header_lines;
    public UIntPtr header_line_count;
    public int last_closure;
    public int last_invoice;
    public lorimat_register_settings_clock clock;
    public IntPtr user_data;
    [MarshalAs(UnmanagedType.I1)]
    public bool round_cash;
    public IntPtr vat;
    public UIntPtr vat_count;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct lorimat_bytes {
    public IntPtr data;
    public UIntPtr size;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct lorimat_register_state {
    public UIntPtr size;
    public uint abi;
    public int printer_state;
    public int key_position;
    [MarshalAs(UnmanagedType.I1)]
    public bool training;
    [MarshalAs(UnmanagedType.I1)]
    public bool day_open;
    public int drawer_openings;
    public int last_closure;
    public int next_invoice;
    public int pending_summaries;
    public int waiting_faults;
    public long documents;
    public long journal_entries;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct lorimat_register_totals {
    public UIntPtr size;
    public uint abi;
    public int receipts_number;
    public int sales;
    public int invoices;
    public int refunds;
    public int cancels;
    public int abandoned;
    public int non_fiscal;
    public long receipts_amount;
    public long invoices_amount;
    public long refunds_amount;
    public long cancels_amount;
    public long not_paid_amount;
    public long discounts_amount;
    public long surcharges_amount;
    public long net_amount;
    public long grand_amount;
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct lorimat_tender_total {
    [MarshalAs(UnmanagedType.ByValArray, SizeConst = 8)]
    public byte[] tender;
    public long amount;
  }

  // --- Functions of the libraries

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int TradInit(byte[] szNomeFileIni, int iOpzioni, PFIREPROGR pFireProgr, PECRIO pEcrIO);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int TradClose();

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr EcrCmd(byte[] Command, byte[] Result);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr GetEcrConfVal(IntPtr IdVal);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr GetEcrConfStr(IntPtr IdStr);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  [return: MarshalAs(UnmanagedType.I1)]
  public static extern bool GetEnableTradDC();

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void SetEnableTradDC([MarshalAs(UnmanagedType.I1)] bool bNewValue);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr GetQuoteChar();

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void SetQuoteChar(IntPtr nNewValue);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr GetSeparatorChar();

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void SetSeparatorChar(IntPtr nNewValue);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr GetOutEditOptions();

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void SetOutEditOptions(IntPtr nNewValue);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr Trad_DCYEvent(int EcrNum, byte[] pIn, int iLnIn);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr Trad_DCXEvent(int EcrNum, byte[] pIn, int iLnIn);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr Trad_IEvent(int EcrNum, byte[] pIn, int iLnIn);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void Trad_FileExtEnq(int EcrNum, byte[] pIn, int iL, out IntPtr iTipoArt,
      byte[] szCodice, out double Qty);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr Trad_RispExtEnq(int EcrNum, IntPtr iTipoRec, IntPtr iTipoArt, byte[] szDatiApp,
      byte[] sOut, out int iLnOut);

  [DllImport(Translator, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void Trad_FileExtUpd(int EcrNum, byte[] pIn, int iL, out int iTipoArt, byte[] szCodice,
      out double Qty, out double Valore);

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr lorimat_result_text(int result);

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr lorimat_error();

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern uint lorimat_abi();

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_client_new(ref lorimat_device table, out IntPtr client);

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_client_new(IntPtr table, out IntPtr client);

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void lorimat_client_free(IntPtr client);

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr lorimat_client_interface(IntPtr client);

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void lorimat_client_guard(IntPtr client, [MarshalAs(UnmanagedType.I1)] bool on);

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_client_take_fault(IntPtr client, out IntPtr operation);

  [DllImport(Face, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr lorimat_explain(IntPtr code,
      [MarshalAs(UnmanagedType.LPUTF8Str)] string language);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_open(ref lorimat_register_settings settings, out IntPtr device);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_open(IntPtr settings, out IntPtr device);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void lorimat_register_close(IntPtr device);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr lorimat_register_interface(IntPtr device);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern IntPtr lorimat_register_error();

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern void lorimat_bytes_free(ref lorimat_bytes bytes);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_paper(IntPtr device, ref lorimat_bytes bytes);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_png(IntPtr device, ref lorimat_bytes bytes);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_pdf(IntPtr device, ref lorimat_bytes bytes);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_start_notice(IntPtr device, ref lorimat_bytes bytes);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_failure(IntPtr device, ref lorimat_bytes bytes);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_add_fault(IntPtr device,
      [MarshalAs(UnmanagedType.LPUTF8Str)] string name, int code,
      [MarshalAs(UnmanagedType.LPUTF8Str)] string operation, int when, int count);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_clear_faults(IntPtr device);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_get_state(IntPtr device, ref lorimat_register_state state);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_get_totals(IntPtr device, ref lorimat_register_totals totals);

  [DllImport(Register, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
  public static extern int lorimat_register_get_tenders(IntPtr device, [In,
      Out] lorimat_tender_total[] totals, UIntPtr room, out UIntPtr count);
}
