// Constants of the device client interface that hold for every device class:
// result codes, states and the numbering of properties. The names and values
// follow the UnifiedPOS control model. The fiscal printer's own constants are
// in rtffptrconst.h.
#pragma once

// Device kinds.
inline constexpr int RTF_D_LINEDISPLAY = 1;
inline constexpr int RTF_D_CASHDRAWER = 2;
inline constexpr int RTF_D_FISCALPRINTER = 3;

// States of the device, the results of RtfClientInterface::GetState.
inline constexpr int RTF_S_CLOSED = 1;
inline constexpr int RTF_S_IDLE = 2;
inline constexpr int RTF_S_BUSY = 3;
inline constexpr int RTF_S_ERROR = 4;

// Result of an operation: success, and the base of the common errors.
inline constexpr int RTF_SUCCESS = 0;
inline constexpr int RTFERR = 100;

// Common errors of every device class (UnifiedPOS OPOS_E_* values).
inline constexpr int RTF_E_CLOSED = 101;
inline constexpr int RTF_E_CLAIMED = 102;
inline constexpr int RTF_E_NOTCLAIMED = 103;
inline constexpr int RTF_E_NOSERVICE = 104;
inline constexpr int RTF_E_DISABLED = 105;
inline constexpr int RTF_E_ILLEGAL = 106;
inline constexpr int RTF_E_NOHARDWARE = 107;
inline constexpr int RTF_E_OFFLINE = 108;
inline constexpr int RTF_E_NOEXIST = 109;
inline constexpr int RTF_E_EXISTS = 110;
inline constexpr int RTF_E_FAILURE = 111;
inline constexpr int RTF_E_TIMEOUT = 112;
inline constexpr int RTF_E_BUSY = 113;
inline constexpr int RTF_E_EXTENDED = 114;
inline constexpr int RTF_E_DEPRECATED = 115;

// Base of the extended errors; statistics and firmware errors.
inline constexpr int RTFERREXT = 200;
inline constexpr int RTF_ESTATS_ERROR = 280;
inline constexpr int RTF_ESTATS_DEPENDENCY = 282;
inline constexpr int RTF_EFIRMWARE_BAD_FILE = 281;

// Results of opening a device or its service object.
inline constexpr int RTF_OR_ALREADYOPEN = 301;
inline constexpr int RTF_OR_REGBADNAME = 302;
inline constexpr int RTF_OR_REGPROGID = 303;
inline constexpr int RTF_OR_CREATE = 304;
inline constexpr int RTF_OR_BADIF = 305;
inline constexpr int RTF_OR_FAILEDOPEN = 306;
inline constexpr int RTF_OR_BADVERSION = 307;
inline constexpr int RTF_ORS_NOPORT = 401;
inline constexpr int RTF_ORS_NOTSUPPORTED = 402;
inline constexpr int RTF_ORS_CONFIG = 403;
inline constexpr int RTF_ORS_SPECIFIC = 450;

// Property numbers: base, class and index are added up. Numeric properties start
// at RTF_PIDX_NUMBER, text properties at RTF_PIDX_STRING.
inline constexpr int RTF_PIDX_NUMBER = 0;
inline constexpr int RTF_PIDX_STRING = 1000000;

// Class bases of property numbers.
inline constexpr int RTF_PIDX_CASH = 1000;
inline constexpr int RTF_PIDX_COIN = 2000;
inline constexpr int RTF_PIDX_TOT = 3000;
inline constexpr int RTF_PIDX_LOCK = 4000;
inline constexpr int RTF_PIDX_DISP = 5000;
inline constexpr int RTF_PIDX_MICR = 6000;
inline constexpr int RTF_PIDX_MSR = 7000;
inline constexpr int RTF_PIDX_PTR = 8000;
inline constexpr int RTF_PIDX_SCAL = 9000;
inline constexpr int RTF_PIDX_SCAN = 10000;
inline constexpr int RTF_PIDX_SIG = 11000;
inline constexpr int RTF_PIDX_KBD = 12000;
inline constexpr int RTF_PIDX_CHAN = 13000;
inline constexpr int RTF_PIDX_TONE = 14000;
inline constexpr int RTF_PIDX_BB = 15000;
inline constexpr int RTF_PIDX_FPTR = 16000;
inline constexpr int RTF_PIDX_PPAD = 17000;
inline constexpr int RTF_PIDX_ROD = 18000;
inline constexpr int RTF_PIDX_CAT = 19000;
inline constexpr int RTF_PIDX_PCRW = 20000;
inline constexpr int RTF_PIDX_PWR = 21000;
inline constexpr int RTF_PIDX_CHK = 22000;
inline constexpr int RTF_PIDX_MOTION = 23000;
inline constexpr int RTF_PIDX_SCRW = 24000;
inline constexpr int RTF_PIDX_BIO = 25000;
inline constexpr int RTF_PIDX_EJ = 26000;
inline constexpr int RTF_PIDX_BACC = 27000;
inline constexpr int RTF_PIDX_BDSP = 28000;
inline constexpr int RTF_PIDX_CACC = 29000;
inline constexpr int RTF_PIDX_IMG = 30000;
inline constexpr int RTF_PIDX_BELT = 31000;
inline constexpr int RTF_PIDX_EVRW = 32000;
inline constexpr int RTF_PIDX_GATE = 33000;
inline constexpr int RTF_PIDX_ITEM = 34000;
inline constexpr int RTF_PIDX_LGT = 35000;
inline constexpr int RTF_PIDX_RFID = 36000;

// Common properties.
inline constexpr int RTF_PIDX_Claimed = 1;
inline constexpr int RTF_PIDX_DataEventEnabled = 2;
inline constexpr int RTF_PIDX_DeviceEnabled = 3;
inline constexpr int RTF_PIDX_FreezeEvents = 4;
inline constexpr int RTF_PIDX_OutputID = 5;
inline constexpr int RTF_PIDX_ResultCode = 6;
inline constexpr int RTF_PIDX_ResultCodeExtended = 7;
inline constexpr int RTF_PIDX_ServiceObjectVersion = 8;
inline constexpr int RTF_PIDX_State = 9;
inline constexpr int RTF_PIDX_AutoDisable = 10;
inline constexpr int RTF_PIDX_BinaryConversion = 11;
inline constexpr int RTF_PIDX_DataCount = 12;
inline constexpr int RTF_PIDX_PowerNotify = 13;
inline constexpr int RTF_PIDX_PowerState = 14;
inline constexpr int RTF_PIDX_CapPowerReporting = 501;
inline constexpr int RTF_PIDX_CapStatisticsReporting = 502;
inline constexpr int RTF_PIDX_CapUpdateStatistics = 503;
inline constexpr int RTF_PIDX_CapCompareFirmwareVersion = 504;
inline constexpr int RTF_PIDX_CapUpdateFirmware = 505;
inline constexpr int RTF_PIDX_CheckHealthText = 1000001;
inline constexpr int RTF_PIDX_DeviceDescription = 1000002;
inline constexpr int RTF_PIDX_DeviceName = 1000003;
inline constexpr int RTF_PIDX_ServiceObjectDescription = 1000004;

// Binary conversion.
inline constexpr int RTF_BC_NONE = 0;
inline constexpr int RTF_BC_NIBBLE = 1;
inline constexpr int RTF_BC_DECIMAL = 2;

// Levels of CheckHealth.
inline constexpr int RTF_CH_INTERNAL = 1;
inline constexpr int RTF_CH_EXTERNAL = 2;
inline constexpr int RTF_CH_INTERACTIVE = 3;

// Power reporting, power notification and power states.
inline constexpr int RTF_PR_NONE = 0;
inline constexpr int RTF_PR_STANDARD = 1;
inline constexpr int RTF_PR_ADVANCED = 2;
inline constexpr int RTF_PN_DISABLED = 0;
inline constexpr int RTF_PN_ENABLED = 1;
inline constexpr int RTF_PS_UNKNOWN = 2000;
inline constexpr int RTF_PS_ONLINE = 2001;
inline constexpr int RTF_PS_OFF = 2002;
inline constexpr int RTF_PS_OFFLINE = 2003;
inline constexpr int RTF_PS_OFF_OFFLINE = 2004;

// Results of CompareFirmwareVersion.
inline constexpr int RTF_CFV_FIRMWARE_OLDER = 1;
inline constexpr int RTF_CFV_FIRMWARE_SAME = 2;
inline constexpr int RTF_CFV_FIRMWARE_NEWER = 3;
inline constexpr int RTF_CFV_FIRMWARE_DIFFERENT = 4;
inline constexpr int RTF_CFV_FIRMWARE_UNKNOWN = 5;

// Error loci and error responses.
inline constexpr int RTF_EL_OUTPUT = 1;
inline constexpr int RTF_EL_INPUT = 2;
inline constexpr int RTF_EL_INPUT_DATA = 3;
inline constexpr int RTF_ER_RETRY = 11;
inline constexpr int RTF_ER_CLEAR = 12;
inline constexpr int RTF_ER_CONTINUEINPUT = 13;

// Status update events.
inline constexpr int RTF_SUE_POWER_ONLINE = 2001;
inline constexpr int RTF_SUE_POWER_OFF = 2002;
inline constexpr int RTF_SUE_POWER_OFFLINE = 2003;
inline constexpr int RTF_SUE_POWER_OFF_OFFLINE = 2004;
inline constexpr int RTF_SUE_UF_PROGRESS = 2100;
inline constexpr int RTF_SUE_UF_COMPLETE = 2200;
inline constexpr int RTF_SUE_UF_COMPLETE_DEV_NOT_RESTORED = 2205;
inline constexpr int RTF_SUE_UF_FAILED_DEV_OK = 2201;
inline constexpr int RTF_SUE_UF_FAILED_DEV_UNRECOVERABLE = 2202;
inline constexpr int RTF_SUE_UF_FAILED_DEV_NEEDS_FIRMWARE = 2203;
inline constexpr int RTF_SUE_UF_FAILED_DEV_UNKNOWN = 2204;

// A wait without limit, for time-outs in milliseconds.
inline constexpr int RTF_FOREVER = -1;
