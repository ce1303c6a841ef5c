"""Made from src/rpccommon/client/rtfclientoperations.inc by script/make-bindings: change it there."""

from typing import Optional, Tuple

from .constants import RTF_E_ILLEGAL
from .errors import Refusal


class Operations:
    """The operations of a device, each as one that it has not."""

    # --- Device state and properties

    def GetClaimed(self) -> bool:
        raise Refusal(RTF_E_ILLEGAL)

    def GetDeviceEnabled(self) -> bool:
        raise Refusal(RTF_E_ILLEGAL)

    def SetDeviceEnabled(self, enabled: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def GetState(self) -> int:
        raise Refusal(RTF_E_ILLEGAL)

    def GetIntProperty(self, property: int) -> int:
        raise Refusal(RTF_E_ILLEGAL)

    def SetIntProperty(self, property: int, value: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def GetStringProperty(self, property: int) -> str:
        raise Refusal(RTF_E_ILLEGAL)

    def SetStringProperty(self, property: int, value: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def GetDataInternal(self, item: int) -> str:
        raise Refusal(RTF_E_ILLEGAL)

    def SetDataInternal(self, item: int, text: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Service control and statistics

    def Close(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def Claim(self, timeout: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def Release(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def CheckHealth(self, level: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ClearOutput(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def CompareFirmwareVersion(self, firmware_file: str) -> int:
        raise Refusal(RTF_E_ILLEGAL)

    def ResetStatistics(self, statistics: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def RetrieveStatistics(self, statistics: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def UpdateFirmware(self, firmware_file: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def UpdateStatistics(self, statistics: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Extensions for printing, documents and the telematic summary

    def GetVatEntryExtended(self, vat_id: int, optional_args: int) -> str:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintBarcode(self, tipo: str, scale: str, align: str, textPosition: str, data: str, cutMode: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintBarcodeEx(self, tipo: str, scale: str, align: str, textPosition: str, data: str, cutMode: int, code39checksum: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def InitJournal(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginDocInvoice(self, head1: str, head2: str, head3: str, head4: str, head5: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginDocInvoiceOppositionJurisprudence(self, head1: str, head2: str, head3: str, head4: str, head5: str, opposition: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginDocRefund(self, number: int, zNumber: int, date: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginDocCancel(self, number: int, zNumber: int, date: str, automatic: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginDocTelematicRefund(self, number: int, zNumber: int, date: str, matricola: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginDocTelematicCancel(self, number: int, zNumber: int, date: str, automatic: bool, text: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginDocRefundEx(self, number: int, zNumber: int, date: str, automatic: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SendTelematicSummary(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ExportTelematicSummary(self, file: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SaveTelematicSummary(self, from_z: int, to_z: int, file: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SaveTelematicSummaryEx(self, from_z: int, to_z: int, file: str, options: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintBitmap(self, ngraex: int, cutMode: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SelectBitmap(self, number: int, position: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ProcessEJournalReportByDate(self, from_date: str, to_date: str, file: str, format: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ProcessEJournalReportByZNumber(self, from_z: int, to_z: int, file: str, format: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ProcessEJournalReportByDateZNumber(self, from_date: str, to_date: str, from_z: int, to_z: int, file: str, format: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ProcessEJournalReportByDateNumber(self, from_date: str, to_date: str, from_number: int, to_number: int, file: str, format: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ProcessEJournalReportByDateNumberDocType(self, from_date: str, to_date: str, from_number: int, to_number: int, document_type: int, file: str, format: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ProcessEJournalReportGlobal(self, file: str, format: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ProgramGRC(self, ngraex: int, file: str, permanent: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EraseLogoArchive(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginAdditionalTrailer(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintPaperCut(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Set-up

    def SetCurrency(self, currency: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SetDate(self, date: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SetHeaderLine(self, line: int, text: str, double_width: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SetPOSID(self, pos_id: str, cashier_id: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SetStoreFiscalID(self, fiscal_id: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SetTrailerLine(self, line: int, text: str, double_width: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SetVatTable(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def SetVatValue(self, vat_id: int, vat_rate: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Fiscal receipt

    def BeginFiscalReceipt(self, print_header: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EndFiscalReceipt(self, print_header: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintDuplicateReceipt(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecCash(self, amount: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItem(self, description: str, price: int, quantity: int, vatInfo: int, unitPrice: int, unitName: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemVoid(self, description: str, price: int, quantity: int, vatInfo: int, unitPrice: int, unitName: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemAdjustment(self, adjustment_type: int, description: str, amount: int, vatInfo: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemAdjustmentVoid(self, adjustment_type: int, description: str, amount: int, vatInfo: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemFuel(self, description: str, price: int, quantity: int, vatInfo: int, unitPrice: int, unitName: str, special_tax: int, special_tax_name: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemFuelVoid(self, description: str, price: int, vatInfo: int, special_tax: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemRefund(self, description: str, price: int, quantity: int, vatInfo: int, unitPrice: int, unitName: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemRefundVoid(self, description: str, price: int, quantity: int, vatInfo: int, unitPrice: int, unitName: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecMessage(self, message: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecNotPaid(self, description: str, amount: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecPackageAdjustment(self, adjustment_type: int, description: str, vat_adjustment: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecPackageAdjustVoid(self, adjustment_type: int, vat_adjustment: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecRefund(self, description: str, amount: int, vatInfo: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecRefundVoid(self, description: str, amount: int, vatInfo: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecSubtotal(self, amount: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecSubtotalEx(self, iSubTotal: int, check: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecSubtotalAdjustment(self, adjustment_type: int, description: str, amount: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecSubtotalAdjustVoid(self, adjustment_type: int, amount: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecTaxID(self, tax_id: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecTotal(self, total: int, payment: int, description: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecVoid(self, description: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecVoidItem(self, description: str, amount: int, quantity: int, adjustment_type: int, adjustment: int, vatInfo: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Telematic set-up and the pass-through line

    def TelematicCensus(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def TelematicActivate(self, vat_number: str, tax_code: str, user: str, password: str, ateco: int, date: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def TelematicCommissioning(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ZupEcrCmd(self, command: str, length: int, answer: str) -> Tuple[int, str]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Extended receipt operations

    def PrintRecItemEx(self, pfl_item_type: int, description: str, price: int, quantity: int, vatInfo: int, unitPrice: int, unitName: str, departmentInfo: int, print_now: bool, pluCode: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemAdjustmentEx(self, adjustment_type: int, description: str, amount: int, vatInfo: int, departmentInfo: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecItemAdjustmentEx2(self, adjustment_type: int, description: str, amount: int, vatInfo: int, departmentInfo: int, is_void: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintRecTotalEx(self, payment: int, description: str, auto_payment: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Fiscal documents and item lists

    def BeginFiscalDocument(self, amount: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EndFiscalDocument(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintFiscalDocumentLine(self, line: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginItemList(self, vat_id: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EndItemList(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def VerifyItem(self, item_name: str, vat_id: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Reports

    def PrintPeriodicTotalsReport(self, from_date: str, to_date: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintPowerLossReport(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintReport(self, report_type: int, from_: str, to: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintXReport(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintZReport(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Slip handling

    def BeginInsertion(self, timeout: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginRemoval(self, timeout: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EndInsertion(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EndRemoval(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Non-fiscal printing

    def BeginFixedOutput(self, station: int, document_type: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginNonFiscal(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginNonFiscalJournal(self, saveOnJournal: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def BeginTraining(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EndFixedOutput(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EndNonFiscal(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EndTraining(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintFixedOutput(self, document_type: int, line: int, data: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintNormal(self, station: int, data: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Reading

    def GetData(self, selector: int, number: int, text: str) -> Tuple[int, str]:
        raise Refusal(RTF_E_ILLEGAL)

    def GetDate(self) -> str:
        raise Refusal(RTF_E_ILLEGAL)

    def GetTotalizer(self, vat_id: int, selector: int) -> str:
        raise Refusal(RTF_E_ILLEGAL)

    def GetVatEntry(self, vat_id: int, optional_args: int) -> int:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Recovery, drawer and display

    def ClearError(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ResetPrn(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def OpenDrawer(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def WaitForDrawerClose(self, beep_timeout: int, beep_frequency: int, beep_duration: int, beep_delay: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ClearText(self) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def DisplayText(self, text: str, attribute: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def DisplayTextAt(self, row: int, column: int, text: str, attribute: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def DisplayTextEx(self, text: str, attribute: int, display: int, timeout: int, clear: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def DisplayTextAtEx(self, row: int, column: int, text: str, attribute: int, display: int, timeout: int, clear: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Machine data, keyboard and device reports

    def GetTotalizerExtend(self, vat_id: int, totalizer_type: int, totalizer: int) -> str:
        raise Refusal(RTF_E_ILLEGAL)

    def ProgramFirmware(self, file: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def EraseTable(self, table: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def DownloadTable(self, selector: int, index: int) -> str:
        raise Refusal(RTF_E_ILLEGAL)

    def UploadTable(self, table: int, row_type: int, data_row: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def ConfigDepartment(self, write: bool, dep_id: int, description: str, price: int, max_price: int, quantity: int, vat_id: int, group_id: int, single_shoot: bool, allow_discount: bool, force_description: bool) -> Optional[Tuple[str, int, int, int, int, int, bool, bool, bool]]:
        raise Refusal(RTF_E_ILLEGAL)

    def ConfigDepartmentEx(self, write: bool, dep_id: int, description: str, price: int, max_price: int, quantity: int, vat_id: int, group_id: int, single_shoot: bool, allow_discount: bool, force_description: bool, is_service: bool) -> Optional[Tuple[str, int, int, int, int, int, bool, bool, bool, bool]]:
        raise Refusal(RTF_E_ILLEGAL)

    def ConfigGroup(self, write: bool, index: int, description: str, operator_password: str, operator_flags: int, operator_options: int) -> Optional[Tuple[str, str, int, int]]:
        raise Refusal(RTF_E_ILLEGAL)

    def ConfigKeyboard(self, write: bool, key_pos: int, key_code: int, keyboard_type: int, macro: bytes, macro_size: int) -> Optional[Tuple[int, int, bytes, int]]:
        raise Refusal(RTF_E_ILLEGAL)

    def ConfigSubtender(self, write: bool, subtender_id: int, tender_type: int, description: str, flags: int, preset_value: int, max_digits: int) -> Optional[Tuple[int, str, int, int, int]]:
        raise Refusal(RTF_E_ILLEGAL)

    def GetHeaderLine(self, line: int) -> str:
        raise Refusal(RTF_E_ILLEGAL)

    def KeyCodeInput(self, keys_code_numerics: str, keys_code_alfa_fp: str, key_code_alfa_lcd: str, key_code_terminator: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintZReportEx(self, send: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def DiagnosticsRequest(self, test: int, start: bool, options: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def DirectIO(self, cmd: int, argument: int, data: str) -> Optional[Tuple[int, str]]:
        raise Refusal(RTF_E_ILLEGAL)

    def PrintXReportEx(self, kind: int, option: bool, format: str, file: str, outputs: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def FiscalReportMessageEx(self, source: int, filter: int, criteria: int, option1: int, option2: int, from_number: int, to_number: int, from_date: str, to_date: str, format: str, file: str, outputs: int) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def PeriodicReportMessageEx(self, kind: int, option: int, format: str, file: str, outputs: int, clear: bool) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    def TelematicDocument(self, device: int, operation: int, document_type: int, from_z: int, from_number: int, to_z: int, to_number: int, file: str) -> Optional[int]:
        raise Refusal(RTF_E_ILLEGAL)

    # --- Logging and waiting

    def LogTrace(self, line: str) -> None:
        raise Refusal(RTF_E_ILLEGAL)

    def LogError(self, line: str) -> None:
        raise Refusal(RTF_E_ILLEGAL)

    def set_wait_event(self) -> None:
        raise Refusal(RTF_E_ILLEGAL)

    def set_wait_result_code(self, code: int) -> None:
        raise Refusal(RTF_E_ILLEGAL)
