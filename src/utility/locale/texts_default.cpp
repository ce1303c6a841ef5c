// Made from texts.tsv by script/make-texts: change the text there, not here.
#include "utility/locale/texts_default.h"

// clang-format off
namespace texts_default {

const char text_kNull[] = "";
const char text_kMAC[] = "MAC";
const char text_kCode[] = "CODICE";
const char text_kDate[] = "DATA";
const char text_kTime[] = "ORA";
const char text_kError[] = "ERRORE";
const char text_kShortError[] = "ERR.";
const char text_kTotalClearRequest[] = "AZZERARE TOTALI?";
const char text_kZReport[] = "AZZERAMENTO FISCALE";
const char text_kTotalDaily[] = "TOTALE GIORNALIERO";
const char text_kTotalPaid[] = "TOTALE PAGATO";
const char text_kTotalNotPaid[] = "TOTALE NON PAGATO";
const char text_kTotalSurcharge[] = "TOTALE MAGGIORAZ.";
const char text_kTotalDiscount[] = "TOTALE SCONTI";
const char text_kTotalVoids[] = "TOTALE STORNI";
const char text_kVoids[] = "STORNI";
const char text_kTotalVoidPrinted[] = "TOTALE ANNULLI";
const char text_kTotalRefund[] = "TOTALE RESI";
const char text_kTotalNotPayed[] = "TOT. NON RISCOSSO";
const char text_kTotalProg[] = "GRAN TOTALE";
const char text_kReceipts[] = "SCONTRINI";
const char text_kFMQuery[] = "INTERROGAZIONI M.F.";
const char text_kGest[] = "GESTIONALI";
const char text_kAdministrativeDocument[] = "DOC. GESTIONALE";
const char text_kAdministrativeDocuments[] = "DOC. GESTIONALI";
const char text_kRefundDocuments[] = "DOCUMENTI DI RESO";
const char text_kTotCreditNotes[] = "TOT. NOTE CREDITO";
const char text_kNumZReport[] = "NUMERO AZZERAM.";
const char text_kNumMAC[] = "NUMERO MAC";
const char text_kRegKey[] = "REG";
const char text_kReadingKey[] = "X";
const char text_kResettingKey[] = "Z";
const char text_kSettingKey[] = "PRG";
const char text_kFiscalNumber[] = "NUMERO FISCALE";
const char text_kFiscalCode[] = "MF";
const char text_kTelematicCode[] = "RT";
const char text_kEJournalRead[] = "LETTURA DGFE";
const char text_kReprint[] = "RISTAMPA";
const char text_kReturn[] = "RESO";
const char text_kTotals[] = "TOTALI";
const char text_kClose[] = "CHIUSURA";
const char text_kEftPos[] = "EFT-POS";
const char text_kTelematicEJournalRead[] = "LETTURA DGFE RT";
const char text_kFMRead[] = "LETTURA MEM.FISCALE";
const char text_kTelematicFMRead[] = "LETT. MEM.FISC. RT";
const char text_kTelematicRegistration[] = "REGISTRAZIONE RT";
const char text_kPeriodicItemsRead[] = "LETTURA PERIOD. PLU";
const char text_kEftPosReport[] = "RAPPORTO EFT-POS";
const char text_kReportOptions[] = "OPZIONI RAPPORTI";
const char text_kPLUOptions[] = "OPZIONI PLU";
const char text_kExtRegistrationNumber[] = "MATRICOLA ESTESA";
const char text_kFiscalisation[] = "FISCALIZZAZIONE";
const char text_kRegistration[] = "REGISTRAZIONE";
const char text_kConfirm[] = "CONFERMA";
const char text_kJournalInitialisation[] = "INIZIALIZZ. DGFE";
const char text_kJournalExtension[] = "ESTENSIONE DGFE";
const char text_kJournalCode[] = "CODICE DGFE";
const char text_kCash[] = "CONTANTI";
const char text_kCredit[] = "CREDITO";
const char text_kCheque[] = "ASSEGNO";
const char text_kCreditCard[] = "CARTA DI CREDITO";
const char text_kDebitCard[] = "CARTA DI DEBITO";
const char text_kCreditCard2[] = "CARTA CREDITO";
const char text_kElectronCurrency[] = "MONETA ELETTRONICA";
const char text_kVoucher[] = "BUONO";
const char text_kVoucher1[] = "BUONO PASTO";
const char text_kTicket1[] = "TICKET";
const char text_kLastReceiptsReprint[] = "RIST. ULTIMI SCONTR.";
const char text_kVatRate[] = "ALIQUOTA IVA";
const char text_kHeaderLine[] = "RIGA INTESTAZIONE";
const char text_kScontrFiscEnding[] = "FINE SCONTR. FISCALE";
const char text_kReportDaily[] = "RAPP. GIORNALIERO";
const char text_kReportLongDaily[] = "GIORNALIERO LUNGO";
const char text_kReportMiddleDaily[] = "GIORNALIERO MEDIO";
const char text_kReportShortDaily[] = "GIORNALIERO BREVE";
const char text_kReportPeriodicRegister[] = "PERIODICO CASSA";
const char text_kReportPeriodicTax[] = "PERIODICO IVA";
const char text_kReportPeriodicDepartments[] = "PERIODICO REPARTI";
const char text_kReportPeriodicItems[] = "PERIODICO ARTICOLI";
const char text_kReportSelectiveItem[] = "SELETTIVO ARTICOLI";
const char text_kReportPeriodicGroups[] = "PERIODICO GRUPPI";
const char text_kReportPeriodicOperators[] = "PERIODICO OPERATORI";
const char text_kReportMonthlyDepartments[] = "MENSILE REPARTI";
const char text_kDepartments[] = "REPARTI";
const char text_kGroups[] = "GRUPPI";
const char text_kGroup[] = "GRUPPO";
const char text_kOperators[] = "OPERATORI";
const char text_kOperatorsSearch[] = "RICERCA OPERATORI";
const char text_kOperatorPassword[] = "PASSWORD OPERATORE";
const char text_kOperatorFlags[] = "ABILITAZ. OPERATORE";
const char text_kOperatorOptions[] = "OPZIONI OPERATORE";
const char text_kDepartmentsSearch[] = "RICERCA REPARTI";
const char text_kGroupsSearch[] = "RICERCA GRUPPI";
const char text_kNewItem[] = "NUOVO ARTICOLO";
const char text_kDeleteItem[] = "CANCELLA ARTICOLO";
const char text_kPLUTotal[] = "TOTALE PLU";
const char text_kDepartmentTotal[] = "TOTALE REPARTO";
const char text_kItems[] = "ARTICOLI";
const char text_kDeleteItem1[] = "CANCELLA PLU";
const char text_kNewItem1[] = "NUOVO PLU";
const char text_kModifyItem1[] = "MODIFICA PLU";
const char text_kVatRates[] = "ALIQUOTE IVA";
const char text_kHeader[] = "INTESTAZIONE";
const char text_kRegistring[] = "REGISTRAZIONE";
const char text_kReading[] = "LETTURA";
const char text_kResetting[] = "AZZERAMENTO";
const char text_kSetting[] = "PROGRAMMAZIONE";
const char text_kStationOpened[] = "CASSA APERTA";
const char text_kStationClosed[] = "CASSA CHIUSA";
const char text_kSubtotal[] = "SUBTOTALE";
const char text_kChange[] = "RESTO";
const char text_kTotal[] = "TOTALE";
const char text_kDiscount[] = "SCONTO";
const char text_kSurcharge[] = "MAGGIORAZIONE";
const char text_kSurchargeShort[] = "MAGG.";
const char text_kDiscountsSurcharges[] = "SCONTI/MAGGIORAZ.";
const char text_kDiscountPercentage[] = "SCONTO %";
const char text_kSurchargePercentage[] = "MAGGIORAZIONE %";
const char text_kDiscountsPercentage[] = "SCONTI %";
const char text_kSurchargesPercentage[] = "MAGGIORAZIONI %";
const char text_kItemAdjustments[] = "VARIAZIONI ARTICOLO";
const char text_kCancel[] = "ANNULLO";
const char text_kRefund[] = "RESO MERCE";
const char text_kVoid[] = "STORNO";
const char text_kEuro[] = "EURO";
const char text_kPercentageA[] = "PERCENTUALE A";
const char text_kPercentageB[] = "PERCENTUALE B";
const char text_kMiscellaneous[] = "VARIE";
const char text_kCurrencies[] = "VALUTE";
const char text_kEthernetPort[] = "PORTA ETHERNET";
const char text_kSerial1Port[] = "PORTA SERIALE 1";
const char text_kGraphics[] = "GRAFICA";
const char text_kSubTender[] = "SOTTOPAGAMENTO";
const char text_kChipcard[] = "CHIP-CARD";
const char text_kPromotions[] = "PROMOZIONI";
const char text_kFortune[] = "GIOCO FORTUNA";
const char text_kSerial2Port[] = "PORTA SERIALE 2";
const char text_kBlockedCards[] = "CARTE BLOCCATE";
const char text_kGraphicsTrailer[] = "GRAFICA DI CODA";
const char text_kGraphicsTime[] = "GRAFICA A ORARIO";
const char text_kGraphicsHeader[] = "GRAFICA DI TESTA";
const char text_kNumber[] = "NUMERO";
const char text_kDrawing[] = "DISEGNO";
const char text_kName[] = "NOME";
const char text_kPrice[] = "PREZZO";
const char text_kMaxPrice[] = "PREZZO MASSIMO";
const char text_kVatCode[] = "CODICE IVA";
const char text_kSingleShoot[] = "BATTUTA SINGOLA";
const char text_kAllowDiscount[] = "SCONTO AMMESSO";
const char text_kForceDescription[] = "DESCRIZIONE OBBLIG.";
const char text_kYes[] = "SI";
const char text_kNo[] = "NO";
const char text_kOk[] = "OK";
const char text_kKo[] = "KO";
const char text_kManual[] = "MANUALE";
const char text_kScheduled[] = "PROGRAMMATO";
const char text_kRate[] = "ALIQUOTA";
const char text_kRate2[] = "CAMBIO";
const char text_kSign[] = "SEGNO";
const char text_kPositiveSign[] = "+";
const char text_kNegativeSign[] = "-";
const char text_kMultiplySign[] = "X";
const char text_kLeft[] = "SINISTRA";
const char text_kRight[] = "DESTRA";
const char text_kCenter[] = "CENTRO";
const char text_kStationNumber[] = "NUMERO CASSA";
const char text_kStationClosureAvailability[] = "CHIUSURA CASSA ABIL.";
const char text_kRounding[] = "ARROTONDAMENTO";
const char text_kRounding2[] = "ARROTOND.";
const char text_kRoundings[] = "ARROTONDAMENTI";
const char text_kRoundingType[] = "TIPO ARROTONDAM.";
const char text_kRoundingValue[] = "VALORE ARROTONDAM.";
const char text_kReceiptDocVatReport[] = "IVA DOC. DI VENDITA";
const char text_kCancelDocVatReport[] = "IVA DOC. DI ANNULLO";
const char text_kRefundDocVatReport[] = "IVA DOC. DI RESO";
const char text_kInvoiceDocVatReport[] = "IVA FATTURE";
const char text_kReceiptDocVatReportShort[] = "IVA VENDITE";
const char text_kCancelDocVatReportShort[] = "IVA ANNULLI";
const char text_kRefundDocVatReportShort[] = "IVA RESI";
const char text_kTallonsManagement[] = "GESTIONE TALLONI";
const char text_kAllowPluPrice[] = "PREZZO PLU LIBERO";
const char text_kBeeper[] = "CICALINO";
const char text_kResetProgressiveNumber[] = "AZZERA PROGRESSIVO";
const char text_kPaperType[] = "TIPO CARTA";
const char text_kPrinterOptions[] = "OPZIONI STAMPANTE";
const char text_kLookAheadOptions[] = "OPZIONI ANTICIPO";
const char text_kPowerButton[] = "TASTO ACCENSIONE";
const char text_kPrintUnitaryQunatity[] = "STAMPA Q.TA' UNO";
const char text_kRequestSubtotal[] = "SUBTOTALE OBBLIG.";
const char text_kPrintTotalItems[] = "STAMPA TOT. PEZZI";
const char text_kClousureType[] = "TIPO CHIUSURA";
const char text_kFixedShift[] = "SHIFT FISSO";
const char text_kClousureAlert[] = "AVVISO CHIUSURA";
const char text_kAllowZeroPrice[] = "PREZZO ZERO AMMESSO";
const char text_kShowTime[] = "MOSTRA ORA";
const char text_kDrawerThreshold[] = "SOGLIA CASSETTO";
const char text_kPrintVatSummary[] = "STAMPA RIEPILOGO IVA";
const char text_kCheckChange[] = "CONTROLLO RESTO";
const char text_kRotatingMessage[] = "MESSAGGIO ROTANTE";
const char text_kTaxReceiptStart[] = "INIZIO RIC. FISCALE";
const char text_kTaxReceiptEnd[] = "FINE RIC. FISCALE";
const char text_kNotAReceiptLine1[] = "NON E' UNO SCONTRINO";
const char text_kNotAReceiptLine2[] = "FISCALE";
const char text_kRegistrationNumber[] = "MATRICOLA";
const char text_kOperator[] = "OPERATORE";
const char text_kRegister[] = "CASSA";
const char text_kDigit0[] = "0";
const char text_kDigit1[] = "1";
const char text_kDigit2[] = "2";
const char text_kDigit3[] = "3";
const char text_kDigit4[] = "4";
const char text_kDigit5[] = "5";
const char text_kDigit6[] = "6";
const char text_kDigit7[] = "7";
const char text_kDigit8[] = "8";
const char text_kDigit9[] = "9";
const char text_kEllipsis[] = "...";
const char text_kPhysicalAddress[] = "INDIRIZZO MAC";
const char text_kIPAddress[] = "INDIRIZZO IP";
const char text_kSubnetMask[] = "SUBNET MASK";
const char text_kGateway[] = "GATEWAY";
const char text_kDNS1[] = "DNS 1";
const char text_kDNS2[] = "DNS 2";
const char text_kPrice1[] = "PREZZO 1";
const char text_kPrice2[] = "PREZZO 2";
const char text_kPrice3[] = "PREZZO 3";
const char text_kTicketChange[] = "RESTO TICKET";
const char text_kTicketChanges[] = "RESTI TICKET";
const char text_kCashChanges[] = "RESTI IN CONTANTI";
const char text_kOptions[] = "OPZIONI";
const char text_kOldPassword[] = "VECCHIA PASSWORD";
const char text_kNewPassword[] = "NUOVA PASSWORD";
const char text_kConfirmPassword[] = "CONFERMA PASSWORD";
const char text_kInsertPassword[] = "INSERIRE PASSWORD";
const char text_kPasswordAccepted[] = "PASSWORD ACCETTATA";
const char text_kPasswordRefused[] = "PASSWORD ERRATA";
const char text_kTCPPort[] = "PORTA TCP";
const char text_kTimeout[] = "TIMEOUT";
const char text_kType[] = "TIPO";
const char text_kHost[] = "HOST";
const char text_kPort[] = "PORTA";
const char text_kPortNumber[] = "NUMERO PORTA";
const char text_kPortConfig[] = "CONFIGURAZ. PORTA";
const char text_kProtocol[] = "PROTOCOLLO";
const char text_kCustomerDisplay[] = "DISPLAY CLIENTE";
const char text_kOperatorDisplay[] = "DISPLAY OPERATORE";
const char text_kExtDisplay[] = "DISPLAY ESTERNO";
const char text_kBarCodeReader[] = "LETTORE BARCODE";
const char text_kPosTerminal[] = "TERMINALE POS";
const char text_kScaleCheckout[] = "BILANCIA DI CASSA";
const char text_kWeight[] = "PESO";
const char text_kTare[] = "TARA";
const char text_kScale[] = "BILANCIA";
const char text_kRedirect[] = "REINDIRIZZAMENTO";
const char text_kExternFiles[] = "FILE ESTERNI";
const char text_kKeyboardEmulation[] = "EMULAZ. TASTIERA";
const char text_kDataCollect[] = "RACCOLTA DATI";
const char text_kPrintMonitor[] = "MONITOR STAMPA";
const char text_kInteractivity[] = "INTERATTIVITA'";
const char text_kUpdateExternFiles[] = "AGGIORNA FILE EST.";
const char text_kDepartment[] = "REPARTO";
const char text_kNonFiscalHeader[] = "INTEST. NON FISCALE";
const char text_kDeferredPrint[] = "STAMPA DIFFERITA";
const char text_kEnableBeep[] = "ABILITA CICALINO";
const char text_kAutoReprint[] = "RISTAMPA AUTOMATICA";
const char text_kModel[] = "MODELLO";
const char text_kSlipPrinter[] = "STAMPANTE SLIP";
const char text_kOn[] = "ON";
const char text_kOff[] = "OFF";
const char text_kHostPC[] = "PC HOST";
const char text_kXOnXOff[] = "XON/XOFF";
const char text_kRemotePC[] = "PC REMOTO";
const char text_kAccountActivity[] = "MOVIMENTO DI CASSA";
const char text_kFiscalReceipt[] = "SCONTRINO FISCALE";
const char text_kInvoice[] = "FATTURA";
const char text_kInvoices[] = "FATTURE";
const char text_kInvoiceAndReceipt[] = "FATTURA E SCONTRINO";
const char text_kWithdrawal[] = "PRELIEVO";
const char text_kDeposit[] = "VERSAMENTO";
const char text_kCashFund[] = "FONDO CASSA";
const char text_kAdvanceReceipt1[] = "SCONTRINO DI";
const char text_kAdvanceReceipt2[] = "ACCONTO";
const char text_kAmountRequest[] = "RICHIESTA IMPORTO";
const char text_kAmount[] = "IMPORTO";
const char text_kRow[] = "RIGA";
const char text_kTest[] = "TEST";
const char text_kKeyNumber[] = "NUMERO TASTO";
const char text_kMacro[] = "MACRO";
const char text_kSpecialCode[] = "CODICE SPECIALE";
const char text_kFunctionCode[] = "CODICE FUNZIONE";
const char text_kInvoiceNumber[] = "NUMERO FATTURA";
const char text_kTotalDocInvoice[] = "TOTALE FATTURE";
const char text_kTotalDocRefund[] = "TOTALE DOC. RESO";
const char text_kTotalAmount[] = "IMPORTO TOTALE";
const char text_kDocRefund[] = "DOCUMENTO DI RESO";
const char text_kDocCancel[] = "DOCUMENTO DI ANNULLO";
const char text_kTelematicDocRefund[] = "DOC. RESO RT";
const char text_kDocCreditNote[] = "NOTA DI CREDITO";
const char text_kDocRefRecipt[] = "RIF. SCONTRINO";
const char text_kDocDate[] = "DATA DOCUMENTO";
const char text_kDocCommentRefundRow1[] = "RESO MERCE PER";
const char text_kDocCommentRefundRow2[] = "DOCUMENTO N.";
const char text_kInvoiceHeaderCustomer[] = "DATI CLIENTE";
const char text_kDocRefundHeader[] = "RESO MERCE";
const char text_kDocCommentHeader2[] = "DI VENDITA";
const char text_kDocCommentHeader[] = "DOCUMENTO COMMERCIALE";
const char text_kDocCommentDemoHeader[] = "DOCUMENTO DI PROVA";
const char text_kDocCommentSale[] = "DI VENDITA O PRESTAZIONE";
const char text_kDocCommentRefund2[] = "EMESSO PER RESO";
const char text_kDocCommentCancel[] = "EMESSO PER ANNULLO";
const char text_kDocCommentRef[] = "DOCUMENTO DI RIF.";
const char text_kRegistrationNumRef[] = "MATRICOLA DI RIF.";
const char text_kDocNumberShort[] = "N.";
const char text_kDocOf[] = "DEL";
const char text_kDocVatId[] = "PARTITA IVA";
const char text_kDocCF[] = "CODICE FISCALE";
const char text_kDocNumber[] = "DOCUMENTO N.";
const char text_kDocCFCustomer[] = "COD.FISC. CLIENTE";
const char text_kDocVatIDCustomer[] = "P.IVA CLIENTE";
const char text_kReceiptDate[] = "DATA SCONTRINO";
const char text_kReceiptNumber[] = "NUMERO SCONTRINO";
const char text_kReceiptNumberTrailer[] = "SCONTRINO N.";
const char text_kShortReceiptNumberTrailer[] = "SC. N.";
const char text_kReceiptNumberReference[] = "RIF. SCONTRINO N.";
const char text_kFrom[] = "DA";
const char text_kTo[] = "A";
const char text_kFromNumber[] = "DAL NUMERO";
const char text_kToNumber[] = "AL NUMERO";
const char text_kFromReceiptNumber[] = "DALLO SCONTRINO N.";
const char text_kToReceiptNumber[] = "ALLO SCONTRINO N.";
const char text_kFromZReportNumber[] = "DA AZZERAMENTO N.";
const char text_kToZReportNumber[] = "A AZZERAMENTO N.";
const char text_kMACNumber[] = "MAC N.";
const char text_kZReportAcronym[] = "Z";
const char text_kEJournalNumber[] = "DGFE N.";
const char text_kSeal[] = "SIGILLO";
const char text_kFiscalTotalDaily[] = "TOT. FISC. GIORNAL.";
const char text_kDocClassIICount[] = "N. DOC. CLASSE II";
const char text_kDocClassIITotal[] = "TOT. DOC. CLASSE II";
const char text_kCreditNoteCount[] = "N. NOTE DI CREDITO";
const char text_kCreditNoteTotal[] = "TOT. NOTE CREDITO";
const char text_kProRefundCount[] = "N. PRATICHE RESO";
const char text_kProRefundTotal[] = "TOT. PRATICHE RESO";
const char text_kDocCancelCount[] = "N. DOC. DI ANNULLO";
const char text_kDocCancelTotal[] = "TOT. DOC. ANNULLO";
const char text_kDocRefundCount[] = "N. DOC. DI RESO";
const char text_kDocRefundTotal[] = "TOT. DOC. DI RESO";
const char text_kSetHeader[] = "IMPOSTA INTESTAZ.";
const char text_kFiscalTotalPeriodic[] = "TOT. FISC. PERIODICO";
const char text_kTaxCode[] = "CODICE FISCALE";
const char text_kLotteryCode[] = "CODICE LOTTERIA";
const char text_kCustomerTaxCode[] = "CODICE FISC. CLIENTE";
const char text_kAlphaInput[] = "INSERIM. ALFABETICO";
const char text_kFixedDecimal[] = "VIRGOLA FISSA";
const char text_kAutoDecimal[] = "VIRGOLA AUTOMATICA";
const char text_kShortVatNameBase[] = "IVA";
const char text_kFixedVatCode0[] = "AL";
const char text_kFixedVatCode1[] = "ES";
const char text_kFixedVatCode2[] = "EE";
const char text_kFixedVatCode3[] = "NS";
const char text_kFixedVatCode4[] = "NI";
const char text_kFixedVatCode5[] = "RM";
const char text_kFixedVatCode6[] = "VI";
const char text_kFixedVatCodeRT0[] = "N6";
const char text_kFixedVatCodeRT1[] = "N4";
const char text_kFixedVatCodeRT2[] = "N1";
const char text_kFixedVatCodeRT3[] = "N2";
const char text_kFixedVatCodeRT4[] = "N3";
const char text_kFixedVatCodeRT5[] = "N5";
const char text_kFixedVatCodeRT6[] = "VI";
const char text_kFixedVatDescriptionMF0[] = "ALTRO NON IVA";
const char text_kFixedVatDescriptionMF1[] = "ESENTE";
const char text_kFixedVatDescriptionMF2[] = "ESCLUSO ART.15";
const char text_kFixedVatDescriptionMF3[] = "NON SOGGETTO";
const char text_kFixedVatDescriptionMF4[] = "NON IMPONIBILE";
const char text_kFixedVatDescriptionMF5[] = "REGIME DEL MARGINE";
const char text_kFixedVatDescriptionMF6[] = "VENTILAZIONE IVA";
const char text_kFixedVatDescriptionRT0[] = "N6 ALTRO NON IVA";
const char text_kFixedVatDescriptionRT1[] = "N4 ESENTE";
const char text_kFixedVatDescriptionRT2[] = "N1 ESCLUSO ART.15";
const char text_kFixedVatDescriptionRT3[] = "N2 NON SOGGETTO";
const char text_kFixedVatDescriptionRT4[] = "N3 NON IMPONIBILE";
const char text_kFixedVatDescriptionRT5[] = "N5 REGIME MARGINE";
const char text_kFixedVatDescriptionRT6[] = "VENTILAZIONE IVA";
const char text_kFWUpdateAnnotation[] = "AGGIORNAMENTO FW";
const char text_kFWUpdateNonFiscalDesc[] = "AGGIORN. FIRMWARE";
const char text_kActInfo[] = "DATI ATTIVAZIONE";
const char text_kDeclarationInfo[] = "DATI DICHIARAZIONE";
const char text_kTechFiscalCode[] = "COD.FISC. TECNICO";
const char text_kTechVatCode[] = "P.IVA TECNICO";
const char text_kTechCountryCode[] = "NAZIONE TECNICO";
const char text_kFirmwareUpdate[] = "AGGIORNA FIRMWARE";
const char text_kBuildDate[] = "DATA COMPILAZIONE";
const char text_kLearningActivation[] = "ATTIVA ADDESTRAM.";
const char text_kVat[] = "IVA";
const char text_kTaxable[] = "IMPONIBILE";
const char text_kTotVat[] = "TOTALE IVA";
const char text_kTotVat2[] = "DI CUI IVA";
const char text_kTotTaxable[] = "TOTALE IMPONIBILE";
const char text_kExempts[] = "ESENTI";
const char text_kCopyForCustomer[] = "COPIA PER CLIENTE";
const char text_kCopyForIssuer[] = "COPIA PER EMITTENTE";
const char text_kNoFiscal[] = "NON FISCALE";
const char text_kEJournal[] = "DGFE";
const char text_kNewEJournal[] = "NUOVO DGFE";
const char text_kAvailableResets[] = "AZZERAM. DISPONIBILI";
const char text_kEJournalReport[] = "RAPPORTO DGFE";
const char text_kState[] = "STATO";
const char text_kUsedSpace[] = "SPAZIO USATO";
const char text_kQuantity[] = "QUANTITA'";
const char text_kPLUAmount[] = "IMPORTO PLU";
const char text_kMaxDigits[] = "CIFRE MASSIME";
const char text_kStockQuantity[] = "GIACENZA";
const char text_kDifference[] = "DIFFERENZA";
const char text_kTelematicReport[] = "RAPPORTO RT";
const char text_kTelematicState[] = "STATO RT";
const char text_kTelematicNumber[] = "NUMERO RT";
const char text_kTelematicVirgin[] = "RT VERGINE";
const char text_kTelematicInit[] = "RT INIZIALIZZATO";
const char text_kTelematicCensus[] = "RT CENSITO";
const char text_kTelematicActivated[] = "RT ATTIVATO";
const char text_kTelematicCommissioned[] = "RT IN SERVIZIO";
const char text_kTelematicSuspended[] = "RT SOSPESO";
const char text_kFiscalMode[] = "MODO MF";
const char text_kTelematicMode[] = "MODO RT";
const char text_kSales[] = "VENDITE";
const char text_kWaitedCustomers[] = "CLIENTI IN ATTESA";
const char text_kTotalGross[] = "TOTALE LORDO";
const char text_kTotalNet[] = "TOTALE NETTO";
const char text_kTotalReceipts[] = "TOTALE SCONTRINI";
const char text_kCashReceipts[] = "INCASSO CONTANTI";
const char text_kCashReceipts2[] = "SCONTRINI CONTANTI";
const char text_kTaxReceipts[] = "RICEVUTE FISCALI";
const char text_kCreditReceipts[] = "INCASSO A CREDITO";
const char text_kTaxTotal[] = "TOTALE IMPOSTA";
const char text_kRegisterTotals[] = "TOTALI DI CASSA";
const char text_kAccountActivities[] = "MOVIMENTI DI CASSA";
const char text_kWithdrawals[] = "PRELIEVI";
const char text_kDeposits[] = "VERSAMENTI";
const char text_kRegisterTotal[] = "TOTALE IN CASSA";
const char text_kTelematicService[] = "SERVIZIO TELEMATICO";
const char text_kTelematicInitialisation[] = "INIZIALIZZAZIONE RT";
const char text_kX509Request[] = "RICHIESTA CERTIFIC.";
const char text_kActivation[] = "ATTIVAZIONE";
const char text_kCommissioning[] = "MESSA IN SERVIZIO";
const char text_kDecommissioning[] = "FUORI SERVIZIO";
const char text_kDeactivation[] = "DISATTIVAZIONE";
const char text_kLearning[] = "ADDESTRAMENTO";
const char text_kChecking[] = "VERIFICA";
const char text_kCheckingResult[] = "ESITO VERIFICA";
const char text_kService[] = "ASSISTENZA";
const char text_kMalfunction[] = "GUASTO";
const char text_kDismissing[] = "DISMISSIONE";
const char text_kAnnotation[] = "ANNOTAZIONE";
const char text_kSendTotals[] = "INVIO CORRISPETTIVI";
const char text_kSendLottery[] = "INVIO LOTTERIA";
const char text_kExportTotals[] = "EXPORT CORRISPETTIVI";
const char text_kExportLottery[] = "EXPORT LOTTERIA";
const char text_kExportJournal[] = "EXPORT DGFE";
const char text_kExportTelematicResults[] = "EXPORT ESITI RT";
const char text_kTelemSave[] = "SALVA CORRISPETTIVI";
const char text_kSaveLottery[] = "SALVA LOTTERIA";
const char text_kReportTelematicResults[] = "RAPPORTO ESITI RT";
const char text_kReportDocumentResults[] = "RAPPORTO ESITI DOC.";
const char text_kZReportNumber[] = "NUMERO CHIUSURA";
const char text_kZReportDate[] = "DATA CHIUSURA";
const char text_kDispatchResult[] = "ESITO INVIO";
const char text_kOperationResult[] = "ESITO OPERAZIONE";
const char text_kErrorCodeResult[] = "CODICE ERRORE";
const char text_kSendDate[] = "DATA INVIO";
const char text_kOwnerVATCode[] = "P.IVA ESERCENTE";
const char text_kTechnicianFiscalCode[] = "C.F. TECNICO";
const char text_kTechnicianVATCode[] = "P.IVA TECNICO";
const char text_kPositive[] = "POSITIVO";
const char text_kNegative[] = "NEGATIVO";
const char text_kCollection[] = "INCASSO";
const char text_kWarning[] = "ATTENZIONE";
const char text_kWarningsReport[] = "RAPPORTO AVVISI";
const char text_kModelCodeShort[] = "MOD.";
const char text_kProducerCodeShort[] = "PROD.";
const char text_kInterrupt[] = "INTERROMPERE";
const char text_kCutter[] = "TAGLIERINA";
const char text_kCutTotal[] = "TAGLIO TOTALE";
const char text_kCutPartial[] = "TAGLIO PARZIALE";
const char text_kHeaderMode[] = "MODO INTESTAZIONE";
const char text_kAutoClear[] = "AZZERAM. AUTOMATICO";
const char text_kAbortedOperation[] = "OPERAZ. INTERROTTA";
const char text_kDescription[] = "DESCRIZIONE";
const char text_kPaymentCash[] = "PAGAMENTO CONTANTE";
const char text_kPaymentElectronic[] = "PAGAM. ELETTRONICO";
const char text_kPaymentCredit[] = "NON RISCOSSO";
const char text_kPaymentChargeVoucher[] = "BUONO CON RESTO";
const char text_kPaymentNotChargeVoucher[] = "BUONO SENZA RESTO";
const char text_kPaymentVoucher[] = "PAGAMENTO CON BUONO";
const char text_kCheque2[] = "ASSEGNI";
const char text_kCredit2[] = "CREDITI";
const char text_kTotalCredit[] = "TOTALE CREDITO";
const char text_kTotalCredits[] = "TOTALE CREDITI";
const char text_kCash2[] = "CONTANTE";
const char text_kOther[] = "ALTRO";
const char text_kTelematicChange[] = "PASSAGGIO A RT";
const char text_kTotalPayed[] = "TOTALE INCASSATO";
const char text_kRetries[] = "TENTATIVI";
const char text_kPause[] = "PAUSA";
const char text_kDocsSale[] = "DOC. DI VENDITA";
const char text_kDocsClasseII[] = "DOC. CLASSE II";
const char text_kDocsRefund[] = "DOC. DI RESO";
const char text_kDocsCancel[] = "DOC. DI ANNULLO";
const char text_kProgressiveSale[] = "PROGRESSIVO VENDITE";
const char text_kInvoiceOptions[] = "OPZIONI FATTURA";
const char text_kHeaderOffset[] = "SCOSTAM. INTESTAZ.";
const char text_kMaxLines[] = "RIGHE MASSIME";
const char text_kInvoiceProgressive[] = "PROGRESSIVO FATTURE";
const char text_kSeries[] = "SERIE";
const char text_kDHCP[] = "DHCP";
const char text_kTelematic[] = "TELEMATICO";
const char text_kAuthorityHost[] = "HOST AG. ENTRATE";
const char text_kAuthorityPort[] = "PORTA AG. ENTRATE";
const char text_kAuthoritySummaryEndpoint[] = "ENDPOINT CORRISP.";
const char text_kAuthorityQRCodeEndpoint[] = "ENDPOINT QR CODE";
const char text_kServerHost[] = "HOST SERVER";
const char text_kServerPort[] = "PORTA SERVER";
const char text_kServerUsername[] = "UTENTE SERVER";
const char text_kServerPassword[] = "PASSWORD SERVER";
const char text_kRequestToken[] = "RICHIESTA TOKEN";
const char text_kSendData[] = "INVIO DATI";
const char text_kCheckSignature[] = "VERIFICA FIRMA";
const char text_kInvalidSignature[] = "FIRMA NON VALIDA";
const char text_kClosureAvailability[] = "CHIUSURA DISPON.";
const char text_kCorrection[] = "CORREZIONE";
const char text_kCorrections[] = "CORREZIONI";
const char text_kLevel[] = "LIVELLO";
const char text_kModules[] = "MODULI";
const char text_kOutputs[] = "USCITE";
const char text_kTrace[] = "TRACCIA";
const char text_kDebug[] = "DEBUG";
const char text_kInfo[] = "INFORMAZIONI";
const char text_kWarn[] = "AVVISO";
const char text_kFatal[] = "ERRORE FATALE";
const char text_kReserved539[] = "RISERVATO";
const char text_kReserved540[] = "RISERVATO";
const char text_kErrorNull[] = "ERR.INTERNO";
const char text_kErrorSettings[] = "ERR.DI IMPOSTAZ.";
const char text_kErrorPrize[] = "$$$$$$$$$$$$$$$$";
const char text_kErrorClock[] = "* ERR.OROLOGIO *";
const char text_kErrorKey[] = "ERR.CHIAVE MACCH";
const char text_kErrorTransactionOverflow[] = "SUP. C.TA'TOTALE";
const char text_kErrorFirmwareMismatch[] = "ERR. VERS.EPROM";
const char text_kErrorOutOfSequence[] = "FUNZ.NON AMMESSA";
const char text_kErrorPluNotFound[] = "PLU NON TROVATO";
const char text_kErrorChangeInsufficient[] = "MANCANZA RESTO";
const char text_kErrorSlipOff[] = "INSERIRE MODULO";
const char text_kErrorDrawerThreshold[] = "EFFET. PRELIEVO";
const char text_kErrorFMTotalOverflow[] = "SUPERATA C.TA'MF";
const char text_kErrorFMError[] = "MEM.FISC. GUASTA";
const char text_kErrorCustomerNotFound[] = "CLI. NON TROVATO";
const char text_kErrorFMMissing[] = "M.FISC. ASSENTE";
const char text_kErrorTotalNegative[] = "TOTALE NEGATIVO";
const char text_kErrorJournalPaperEnd[] = "SOST.CARTA GIORN";
const char text_kErrorFMFull[] = "* M.F.ESAURITA *";
const char text_kErrorFiscalDataInvalid[] = "* MAC NECESSARIO *";
const char text_KErrorReceiptEnding[] = "FINIRE SCONTRINO";
const char text_kErrorPrinterVoltage[] = "ERR.TENS. STAMP.";
const char text_kErrorPaperEnd[] = "ERR.STAMP.SCONT.";
const char text_kErrorDailyReport[] = "ERR.STAMP.GIORN";
const char text_kErrorActivityInvalid[] = "MOV. NON AMMESSO";
const char text_kErrorCurrencyInvalid[] = "C. VALUTA ERRATO";
const char text_kErrorPluInvalid[] = "PLU NON VALIDO";
const char text_kErrorConnection[] = "ERR. COLLEGAM.";
const char text_kErrorFMWriting[] = "ERR. SCRIT. M.F.";
const char text_kErrorFMReading[] = "ERR. LETT. M.F.";
const char text_kErrorInterfaceMissing[] = "INTERF. ASSENTE";
const char text_kErrorZReportNeeded[] = "FARE AZZ.FISCALE";
const char text_kErrorFMMACOverflow[] = "SUP. MAX RIPRIST";
const char text_kErrorDateInvalid[] = "DATA ERRATA";
const char text_kErrorFMHeaderSetOverflow[] = "FINE SPAZIO INT";
const char text_kErrorSlipPrinterMissing[] = "SLIP ASSENTE";
const char text_kErrorSlipFormMissing[] = "MODULO ASSENTE";
const char text_kErrorSlipFormEnd[] = "MODULO FINITO";
const char text_kErrorSlipFormNeeded[] = "INSERIRE MODULO";
const char text_kErrorLearningSequence[] = "NON AMM.IN APPR.";
const char text_kErrorFiscalDataOverflow[] = "SOGLIE FISCALI";
const char text_kErrorHostError[] = "ERRORE HOST";
const char text_kErrorOperatorNeeded[] = "INSERIRE OPERAT.";
const char text_kErrorCoverOpened[] = "TESTA SOLLEVATA";
const char text_kErrorFMDataMismatch[] = "ERR. ALLIN. M.F.";
const char text_kErrorAmountNeeded[] = "INSERIRE IMPORTO";
const char text_kErrorSubtotalNeeded[] = "OBBL.SUBTOTALE";
const char text_kErrorModemError[] = "ERR. MODEM";
const char text_kErrorCutterJam[] = "ERR. TAGLIERINA";
const char text_kErrorChipCardInvalid[] = "CARTA NON VALIDA";
const char text_kErrorChipCardError[] = "ERRORE CHIP-CARD";
const char text_kErrorZReportAlert[] = "FARE CHIUSURA";
const char text_kErrorSubtenderDisabled[] = "S.T. NON ABIL.";
const char text_kErrorFMLogoInvalid[] = "ERR. LOGO MF";
const char text_kError54[] = "";
const char text_kError55[] = "";
const char text_kErrorEMMissing[] = "SCHEDA EM ASSENTE";
const char text_kErrorEMIOError[] = "ERR. I/O SU EM";
const char text_kErrorEMError[] = "ERRORE EM";
const char text_kErrorOfferInvalid[] = "ERR.OFFERTA";
const char text_kErrorOfferCountOverflow[] = "TROPPE OFFERTE";
const char text_kErrorChipCardExpired[] = "CARTA SCADUTA";
const char text_kErrorEftPosError[] = "ERRORE EFT-POS";
const char text_kErrorEftPosAborting[] = "OPER. RESPINTA";
const char text_kErrorEftPosClear[] = "OPER. ANNULLATA";
const char text_kErrorPumpError[] = "ERRORE POMPA";
const char text_kErrorEuroNeeded[] = "ATTIVARE EURO";
const char text_kErrorTicketOverflow[] = "FINE MEM.TICKETS";
const char text_kErrorChipCardLocked[] = "CARTA BLOCCATA";
const char text_kErrorPrinterError[] = "CONN. STAMPANTE";
const char text_kErrorBatteryMissing[] = "BATTERIA ASSENTE";
const char text_kErrorBillInvalid[] = "ERRORE CONTO";
const char text_kErrorBillEMError[] = "MEMORIA CONTO";
const char text_kErrorBillClosed[] = "CONTO NON APERTO";
const char text_kErrorBillOpened[] = "CONTO APERTO";
const char text_kErrorOrderPrinterMissing[] = "KIT.PRN ASSENTE";
const char text_kErrorChipCardNeeded[] = "INSERIRE CARD";
const char text_kErrorCreditInsufficient[] = "CRED.INSUFFIC";
const char text_kErrorBillClosing[] = "CHIUDERE ORDINAZ";
const char text_kErrorOrderPrinterError[] = "ERR.STAMP.CUCINA";
const char text_kErrorScaleIOError[] = "ERRORE BILANCIA";
const char text_kErrorScaleOutRange[] = "ERR. RANGE BIL.";
const char text_kErrorMacEnabled[] = "MAC ATTIVO";
const char text_kErrorEJournalError[] = "ERR.ACC.GIO.ELE.";
const char text_kErrorEJournalMissign[] = "DGFE ASSENTE";
const char text_kErrorEJournalBlank[] = "DGFE VERGINE";
const char text_kErrorEJournalFull[] = "DGFE ESAURITO";
const char text_kErrorServerConnection[] = "NON CONNESSO";
const char text_kErrorServerError[] = "NON CONNESSO";
const char text_kErrorZReportWarning[] = "FARE AZZERAMENTO";
const char text_kErrorCurrencySubtotalZero[] = "ERR. SUB. VALUTA";
const char text_kErrorServerBusy[] = "LINEA OCCUPATA";
const char text_kError92[] = "";
const char text_kError93[] = "";
const char text_kError94[] = "";
const char text_kError95[] = "";
const char text_kError96[] = "";
const char text_kError97[] = "";
const char text_kError98[] = "";
const char text_kError99[] = "";
const char text_kErrorFiscalBusy[] = "SISTEMA OCCUPATO";
const char text_kErrorTotalMismatch[] = "ERRORE TOTALE";
const char text_kErrorParameterWrong[] = "ERRORE PARAMETRO";
const char text_kErrorTransactionError[] = "ERRORE TRANSAZ.";
const char text_kErrorFMAddressError[] = "ERR. IND. M.F.";
const char text_kErrorFMVatSetOverflow[] = "FINE SPAZIO IVA";
const char text_kErrorFMEJournalInitOverflow[] = "FINE SPAZIO G.E.";
const char text_kErrorFMZReportOverflow[] = "FINE SPAZIO AZZ";
const char text_kErrorEJournalClosed[] = "GIO.ELE. CHIUSO";
const char text_kErrorEJournalInvalid[] = "GIO.ELE. INV.";
const char text_kErrorEJournalUnrelated[] = "GIO.ELE. ESTR.";
const char text_kErrorCutterOpened[] = "TAGLIERINA APER.";
const char text_kErrorStorageError[] = "ERR. ACCES. DATI";
const char text_kErrorManagerDataInvalid[] = "ERRORE DATI";
const char text_kErrorTZReportOverflow[] = "INVIA AZZERAM.";
const char text_kErrorSignatureError[] = "ERR. FIRMA FILE";
const char text_kErrorTelematicSendError[] = "ERR. INVIO FILE";
const char text_kErrorTelematicServerBusy[] = "SERVER OCCUPATO";
const char text_kErrorPaperNearEndError[] = "QUASI FINE CARTA";
const char text_kFMNearEndError[] = "MF IN ESAURIMENTO";
const char text_kEJournalNearEndError[] = "DGFE IN ESAURIMENTO";
const char text_kFiscalDisplayDisconnected[] = "ERRORE DISPLAY";
const char text_kUSBError[] = "ERRORE USB";
const char text_kBackupBatteryFailure[] = "ERRORE BAT. BCK";
const char text_kSetAtecoNumberError[] = "SETTARE ATECO!";
const char text_kNotRoundedAmount[] = "VALORE NON ARROT.";
const char text_kPaymentServiceError[] = "ERR. SERV. PAGAM.";
const char text_kFileExportError[] = "ERR. EXPORT FILE";
const char text_kFileExportNeededError[] = "FARE EXPORT FILE";
const char text_kFidelityError[] = "ERR. FIDELITY";
const char text_kFidelityConnect[] = "ERR. CONNESSIONE";
const char text_kFidelityProtocol[] = "ERR. PROTOCOL";
const char text_kFidelityInactive[] = "CARTA INATTIVA";
const char text_kFidelityLocked[] = "CARTA BLOCCATA";
const char text_kFidelityCardInvalidStatus[] = "CARTA INV/STATUS";
const char text_kFidelityWrongPin[] = "PIN ERRATO";
const char text_kFidelityCardNotLoaded[] = "CARTA NON CARICATA";
const char text_kFidelityCardNotEnabled[] = "CARTA NON ABILITATA";
const char text_kFidelityCardInsufficientCredit[] = "CREDITO INSUFFICIENTE";
const char text_kFidelityCardDisconnected[] = "DISCONNESSA";
const char text_kFidelityCardUnauthorized[] = "NON AUTORIZZATO";
const char text_kErrorMandatoryClientVatCode[] = "OBB. P.I.CLIENTE";
const char text_kErrorSimplifiedInvoiceThreshold[] = "SOGLIA FATT.SEM.";
const char text_kFidelityEmpty[] = "ERR. FIDELITY GEN.";
const char text_kFidelityCardNotFound[] = "CARTA INESISTENTE";
const char text_kLowBatteryError[] = "BATT.QUASI SCAR.";
const char text_kDeadBatteryError[] = "BATTERIA SCARICA";
const char text_kFidelityCardSuspended[] = "CARTA SOSPESA";
const char text_kFidelityCardExpired[] = "CARTA SCADUTA";
const char text_kBurnInTest[] = "TEST BURN-IN";
const char text_kFiscalMemoryTest[] = "TEST MEM. FISCALE";
const char text_kEJournalTest[] = "TEST DGFE";
const char text_kStorageTest[] = "TEST MEMORIA DATI";
const char text_kRTCTest[] = "TEST OROLOGIO";
const char text_kWriteTest[] = "TEST SCRITTURA";
const char text_kSerialTest[] = "TEST SERIALE";
const char text_kRemainingZ[] = "AZZERAM. RESIDUI";
const char text_kPing[] = "PING";
const char text_kNetworkReport[] = "RAPPORTO RETE";
const char text_kSureQuestion[] = "SEI SICURO?";
const char text_kNoError[] = "NESSUN ERRORE";
const char text_kBadXmlSyntax[] = "ERR. SINTASSI XML";
const char text_kAccountExisting[] = "ACCOUNT ESISTENTE";
const char text_kAccountNotFound[] = "ACCOUNT INESISTENTE";
const char text_kAccountUsed[] = "ACCOUNT IN USO";
const char text_kMissingUsername[] = "MANCA NOME UTENTE";
const char text_kNotEnoughParams[] = "PARAMETRI MANCANTI";
const char text_kNotAllowed[] = "NON CONSENTITO";
const char text_kNoRoomLeft[] = "SPAZIO ESAURITO";
const char text_kWrongParameter[] = "PARAMETRO ERRATO";
const char text_kOutOfRangeParam[] = "PARAM. FUORI LIMITI";
const char text_kTooManyValues[] = "TROPPI VALORI";
const char text_kXmlElementValueError[] = "ERR. VALORE XML";
const char text_kTooManyAccounts[] = "TROPPI ACCOUNT";
const char text_kUSBDevice[] = "DISPOSITIVO USB";
const char text_kServerRTSignatureError[] = "SRV-RT: ERR. FIRMA";
const char text_kServerRTSequenceError[] = "SRV-RT: ERR. SEQ.";
const char text_kServerRTDuplicatedDocument[] = "SRV-RT: DOC. DOPPIO";
const char text_kServerRTNonProgressive[] = "SRV-RT: NON PROGR.";
const char text_kServerRTInvalidUpgrade[] = "SRV-RT: AGG. ERRATO";
const char text_kServerRTHttpClientError[] = "SRV-RT: ERR. HTTP";
const char text_kSoftReset[] = "RIAVVIO SOFTWARE";
const char text_kInternalReport[] = "RAPPORTO INTERNO";
const char text_kVersionReport[] = "RAPPORTO VERSIONI";
const char text_kFirmwareVersion[] = "VERSIONE FIRMWARE";
const char text_kFirmwareDate[] = "DATA FIRMWARE";
const char text_kBootVersion[] = "VERSIONE BOOT";
const char text_kFirmwareRevision[] = "REVISIONE FIRMWARE";
const char text_kInternalFirmwareVersion[] = "VERS. FW INTERNA";
const char text_kWait[] = "ATTENDERE";
const char text_kBrand[] = "MARCA";
const char text_kCard[] = "CARTA";
const char text_kCardPAN[] = "PAN CARTA";
const char text_kAuthorizationCode[] = "COD. AUTORIZZAZIONE";
const char text_kEftConnection[] = "COLLEGAMENTO EFT";
const char text_kSafeMoneyConnection[] = "COLL. CASSA SICURA";
const char text_kIntervention[] = "INTERVENTO TECNICO";
const char text_kOppositionJurisprudence1[] = "IL CLIENTE SI OPPONE";
const char text_kOppositionJurisprudence2[] = "ALL'INVIO DEI DATI";
const char text_kOppositionJurisprudence3[] = "DI SPESA SANITARIA";
const char text_kOppositionJurisprudence4[] = "AL SISTEMA TS";
const char text_kOppositionJurisprudence5[] = "AI SENSI DELLA";
const char text_kOppositionJurisprudence6[] = "NORMATIVA VIGENTE";
const char text_kRegisterCode[] = "CODICE CASSA";
const char text_kServerCode[] = "CODICE SERVER";
const char text_kProducerBuild[] = "BUILD PRODUTTORE";
const char text_kMemoryErase[] = "CANCELLA MEMORIA";
const char text_kFiscalMemory[] = "MEMORIA FISCALE";
const char text_kStorage[] = "MEMORIA DATI";
const char text_kUserStorage[] = "MEMORIA UTENTE";
const char text_kConfiguration[] = "CONFIGURAZIONE";
const char text_kDump[] = "SALVATAGGIO DATI";
const char text_kUnDump[] = "RIPRISTINO DATI";
const char text_kAll[] = "TUTTI";
const char text_kEverything[] = "TUTTO";
const char text_kPLUDownload[] = "CARICAMENTO PLU";
const char text_kUpgradeErase[] = "CANC. AGGIORNAMENTO";
const char text_kFtpEnabled[] = "FTP ABILITATO";
const char text_kFtpUsername[] = "UTENTE FTP";
const char text_kFtpPassword[] = "PASSWORD FTP";
const char text_kWifiEnable[] = "ABILITA WIFI";
const char text_kWifi[] = "WIFI";
const char text_kEthernet[] = "ETHERNET";
const char text_kWifiSSID[] = "SSID WIFI";
const char text_kWifiPassword[] = "PASSWORD WIFI";
const char text_kConnected[] = "CONNESSO";
const char text_kNotConnected[] = "NON CONNESSO";
const char text_kAutoReboot[] = "RIAVVIO AUTOMATICO";
const char text_kEnabled[] = "ABILITATO";
const char text_kStartLearning[] = "INIZIO ADDESTRAM.";
const char text_kEndLearning[] = "FINE ADDESTRAMENTO";
const char text_kServError[] = "ERRORE SERVER";
const char text_kCheckConn[] = "VERIFICA CONNESS.";
const char text_kTelematicDismissed[] = "RT DISMESSO";
const char text_kServerRTVatRateNotCorrespondingToVatIndex[] = "SRV-RT: IVA ERRATA";
const char text_kServerRTNonProgressiveClosure[] = "SRV-RT: CHIUS. ERR.";
const char text_kTransactionVoid[] = "ANNULLO TRANSAZIONE";
const char text_kFragmentation[] = "FRAMMENTAZIONE";
const char text_kEJournalsReport[] = "RAPPORTO DEI DGFE";
const char text_kEJournalCode[] = "CODICE DGFE";
const char text_kGiftCoupon[] = "BUONO REGALO";
const char text_kMonitorEnabled[] = "MONITOR ABILITATO";
const char text_kMonitorHost[] = "HOST MONITOR";
const char text_kMonitorPort[] = "PORTA MONITOR";
const char text_kMonitorInterval[] = "INTERVALLO MONITOR";
const char text_kStock[] = "MAGAZZINO";
const char text_kOutOfService[] = "FUORI SERVIZIO";
const char text_kDetailCode[] = "CODICE DETTAGLIO";
const char text_kAvailableDays[] = "GIORNI DISPONIBILI";
const char text_kVentilazioneIVA[] = "VENTILAZIONE IVA";
const char text_kHourInterval[] = "FASCIA ORARIA";
const char text_kCheckPending[] = "VERIFICA PENDENTI";
const char text_kNetworkSocketReport[] = "RAPPORTO SOCKET";
const char text_kTimedSend[] = "INVIO A TEMPO";
const char text_kDocumentSend[] = "INVIO DOCUMENTI";
const char text_kLotteryThreshold[] = "SOGLIA LOTTERIA";
const char text_kMaxDocsPerFile[] = "MAX DOC. PER FILE";
const char text_kMaxLotteryDocs[] = "MAX DOC. LOTTERIA";
const char text_kLotteryMinTime[] = "TEMPO MIN. LOTTERIA";
const char text_kLotteryPending[] = "LOTTERIA PENDENTE";
const char text_kSendReceipt[] = "INVIO SCONTRINO";
const char text_kLotteryEmptyHeader[] = "LOTTERIA VUOTA";
const char text_kSecureConnection[] = "CONNESSIONE SICURA";
const char text_kAuthentication[] = "AUTENTICAZIONE";
const char text_kEndpoint[] = "ENDPOINT";
const char text_kTimeInterval[] = "INTERVALLO";
const char text_kTimeStart[] = "ORA DI INIZIO";
const char text_kTimeEnd[] = "ORA DI FINE";
const char text_kResetting2[] = "AZZERAMENTI";
const char text_kTelematicSendSimulated[] = "INVIO RT SIMULATO";
const char text_kTelematicSimulationActive[] = "SIMULAZ. RT ATTIVA";
const char text_kLoyaltyBalance[] = "SALDO FEDELTA'";
const char text_kCardNumber[] = "NUMERO CARTA";
const char text_kOwner[] = "TITOLARE";
const char text_kPoints[] = "PUNTI";
const char text_kMonitoringStart[] = "INIZIO MONITORAGGIO";
const char text_kMonitoringProgramLogo[] = "PROGRAMMA LOGO";
const char text_kMonitoringUpdateFirmware[] = "AGGIORNA FIRMWARE";
const char text_kMonitoringGetStatus[] = "LETTURA STATO";
const char text_kMonitoringGetLogs[] = "LETTURA LOG";
const char text_kMonitoringWarmMAC[] = "MAC A CALDO";
const char text_kMonitoringReboot[] = "RIAVVIO";
const char text_kMonitoringTelematicExport[] = "EXPORT TELEMATICO";
const char text_kMonitoringTelematicResults[] = "ESITI TELEMATICI";
const char text_kMonitoringTelematicStatus[] = "STATO TELEMATICO";
const char text_kMonitoringTelematicSave[] = "SALVATAGGIO RT";
const char text_kMonitoringTelematicSend[] = "INVIO TELEMATICO";
const char text_kMonitoringTelematicGetPendingNum[] = "N. INVII PENDENTI";
const char text_kMonitoringGetUsedSpace[] = "LETT. SPAZIO USATO";
const char text_kMonitoringGetServiceDate[] = "LETT. DATA ASSIST.";
const char text_kMonitoringSetServiceDate[] = "IMP. DATA ASSIST.";
const char text_kMonitoringGetDump[] = "LETTURA DUMP";
const char text_kMonitoringGetDailyStats[] = "STATIST. GIORNALIERE";
const char text_kMonitoringGetClock[] = "LETTURA OROLOGIO";
const char text_kMonitoringLotterySend[] = "INVIO LOTTERIA";
const char text_kMonitoringEnd[] = "FINE MONITORAGGIO";
const char text_kCommissioningDate[] = "DATA MESSA SERVIZIO";
const char text_kNearPaperEnd[] = "CARTA IN ESAURIM.";
const char text_kRoundingLaw[] = "ARROTOND. DI LEGGE";
const char text_kRoundingLaw2[] = "ARR. DI LEGGE";
const char text_kClosuresNumberCheck[] = "CONTROLLO N.CHIUSURE";
const char text_kMACRecover[] = "RECUPERO MAC";
const char text_kSettingBrightnessText[] = "LUMINOSITA'";
const char text_kSettingContrastText[] = "CONTRASTO";
const char text_kSettingKeypressFreqText[] = "FREQUENZA TASTI";
const char text_kTextTrailer[] = "TESTO DI CODA";
const char text_kTextTrailerExt[] = "TESTO DI CODA EST.";
const char text_kTotalFiscal[] = "TOTALE FISCALE";
const char text_kPrintOperator[] = "STAMPA OPERATORE";
const char text_kPrinterHeadSize[] = "LARGHEZZA TESTINA";
const char text_kDepService[] = "REPARTO SERVIZI";
const char text_kNotPaidService[] = "NON RISC. SERVIZI";
const char text_kNotPaidServiceLower[] = "Non risc. servizi";
const char text_kNotPaidSSN[] = "NON RISCOSSO SSN";
const char text_kNotPaidSSNLower[] = "Non riscosso SSN";
const char text_kNotPaidGift[] = "NON RISC. OMAGGIO";
const char text_kNotPaidGiftLower[] = "Non risc. omaggio";
const char text_kNotPaidInvoice[] = "NON RISC. FATTURA";
const char text_kNotPaidInvoiceLower[] = "Non risc. fattura";
const char text_kDiscountOnPayment[] = "SCONTO A PAGARE";
const char text_kDiscountOnPaymentLower[] = "Sconto a pagare";
const char text_kServiceShort[] = "SERV.";
const char text_kWorkingActivity[] = "ATTIVITA' SVOLTA";
const char text_kAteco[] = "ATECO";
const char text_kPrintAteco[] = "STAMPA ATECO";
const char text_kReceiptDocVatReportShortest[] = "IVA VEN.";
const char text_kCancelDocVatReportShortest[] = "IVA ANN.";
const char text_kRefundDocVatReportShortest[] = "IVA RES.";
const char text_kReportByActivity[] = "RAPPORTO PER ATECO";
const char text_kMonitorReceiptsEnabled[] = "MONITOR SCONTRINI";
const char text_kMonitorZEnabled[] = "MONITOR CHIUSURE";
const char text_kExternalServicesUrlTransaction[] = "URL TRANSAZIONI";
const char text_kEnableFiscalMemories[] = "ABILITA MEM. FISCALI";
const char text_kMonitoringServerBinding[] = "ASSOCIAZ. SERVER";
const char text_kMonitorUrlAssociation[] = "URL ASSOCIAZIONE";
const char text_kMonitorAssociationPort[] = "PORTA ASSOCIAZIONE";
const char text_kMonitorAssociationProtocol[] = "PROTOC. ASSOCIAZIONE";
const char text_kToken[] = "TOKEN";
const char text_kDrawerAutoOpen[] = "APERT. AUT. CASSETTO";
const char text_kMinimumBalance[] = "SALDO MINIMO";
const char text_kAutoUpdateSlu[] = "AGGIORN. AUT. SLU";
const char text_kUpdateServices[] = "AGGIORNA SERVIZI";
const char text_kPrintTabSlu[] = "STAMPA TABELLA SLU";
const char text_kBalance[] = "SALDO";
const char text_kReadMessages[] = "LEGGI MESSAGGI";
const char text_kRechargeService[] = "SERVIZIO RICARICHE";
const char text_kTestConnectCs[] = "TEST CONNESSIONE CS";
const char text_kTestConnect[] = "TEST CONNESSIONE";
const char text_kImei[] = "IMEI";
const char text_kPhoneNumber[] = "NUMERO TELEFONO";
const char text_kReadTabSlu[] = "LEGGI TABELLA SLU";
const char text_kReadTabVoucher[] = "LEGGI TAB. BUONI";
const char text_kActiveOffer[] = "OFFERTA ATTIVA";
const char text_kTableVersionSlu[] = "VERS. TABELLA SLU";
const char text_kTableVersionVouchers[] = "VERS. TABELLA BUONI";
const char text_kSluQuantity[] = "NUMERO SLU";
const char text_kPrefixQuantity[] = "NUMERO PREFISSI";
const char text_kDisabled[] = "DISABILITATO";
const char text_kTableSlu[] = "TABELLA SLU";
const char text_kTableVouchers[] = "TABELLA BUONI";
const char text_kSuspended[] = "SOSPESO";
const char text_kUnknown[] = "SCONOSCIUTO";
const char text_kLayoutEco[] = "FORMATO ECO";
const char text_kNtpDateTimeSync[] = "SINCRONIZZ. NTP";
const char text_kTemperature[] = "TEMPERATURA";
const char text_kLogo[] = "LOGO";
const char text_kAESKey[] = "CHIAVE AES";
const char text_kSalesReportByVat[] = "VENDITE PER IVA";
const char text_kSalesReportByDepartment[] = "VENDITE PER REPARTO";
const char text_kFMProgressiveData[] = "DATI PROGRESSIVI MF";
const char text_kTechnicalInterventions[] = "INTERVENTI TECNICI";
const char text_kDisconnections[] = "DISCONNESSIONI";
const char text_kPrinterDisconnections[] = "DISCONN. STAMPANTE";
const char text_kDGFEDisconnections[] = "DISCONNESSIONI DGFE";
const char text_kCMOSErrors[] = "ERRORI CMOS";
const char text_kHeaderChanges[] = "VARIAZIONI INTESTAZ.";
const char text_kVatRateChanges[] = "VARIAZIONI ALIQUOTE";
const char text_kDailySalesReport[] = "VENDITE GIORNALIERE";
const char text_kZReportCopyLine1[] = "COPIA DEL";
const char text_kZReportCopyLine2[] = "RAPPORTO DI CHIUSURA";
const char text_kUnsuccessfulZReport[] = "CHIUSURA FALLITA";
const char text_kNonFiscalReceipts[] = "SCONTR. NON FISCALI";
const char text_kGlobalDailyReceiptNo[] = "N. TOT. SCONTR. GG";
const char text_kSignatureReportHeaderLine1[] = "RAPPORTO";
const char text_kSignatureReportHeaderLine2[] = "DELLE FIRME";
const char text_kDailyExportSuccessLine1[] = "EXPORT GIORNALIERO";
const char text_kDailyExportSuccessLine2[] = "ESEGUITO";
const char text_kDailyExportSuccessLine3[] = "CON SUCCESSO";
const char text_kDailyExportErrorLine1[] = "EXPORT GIORNALIERO";
const char text_kDailyExportErrorLine2[] = "NON RIUSCITO";
const char text_kEJournalRemovedLine1[] = "DGFE";
const char text_kEJournalRemovedLine2[] = "RIMOSSO";
const char text_kECRLocked[] = "CASSA BLOCCATA";
const char text_kPowerFail[] = "MANCANZA RETE";
const char text_kCMOSRecoverLine1[] = "RIPRISTINO";
const char text_kCMOSRecoverLine2[] = "MEMORIA CMOS";
const char text_kDocumentDuplicate[] = "COPIA DOCUMENTO";
const char text_kDSTSummerTimeChange[] = "PASSAGGIO ORA LEGALE";
const char text_kDSTWinterTimeChange[] = "PASSAGGIO ORA SOLARE";
const char text_kDSTSummerTimeChangeShort[] = "ORA LEGALE";
const char text_kDSTWinterTimeChangeShort[] = "ORA SOLARE";
const char text_kReserved942[] = "RISERVATO";
const char text_kReserved943[] = "RISERVATO";
const char text_kReserved944[] = "RISERVATO";
const char text_kReserved945[] = "RISERVATO";
const char text_kReserved946[] = "RISERVATO";
const char text_kReserved947[] = "RISERVATO";
const char text_kReserved948[] = "RISERVATO";
const char text_kReserved949[] = "RISERVATO";
const char text_kReserved950[] = "RISERVATO";
const char text_kReserved951[] = "RISERVATO";
const char text_kReserved952[] = "RISERVATO";
const char text_kReserved953[] = "RISERVATO";
const char text_kReserved954[] = "RISERVATO";
const char text_kReserved955[] = "RISERVATO";
const char text_kReserved956[] = "RISERVATO";
const char text_kReserved957[] = "RISERVATO";
const char text_kReserved958[] = "RISERVATO";
const char text_kLanguage[] = "LINGUA";
const char text_kLanguageDefault[] = "DEFAULT";
const char text_kLanguageItalian[] = "ITALIANO";
const char text_kLanguageEnglish[] = "INGLESE";
const char text_kLanguageFrench[] = "FRANCESE";
const char text_kLanguageGreek[] = "GRECO";
const char text_kUSBHID[] = "USB HID";
const char text_kFidelityCard[] = "CARTA FEDELTA'";
const char text_kFidelityReadCard[] = "LEGGERE CARTA";
const char text_kFidelityDisplayCode[] = "MOSTRA CODICE CARTA";
const char text_kFidelityName[] = "NOME TITOLARE";
const char text_kFidelityBalance[] = "SALDO CARTA";
const char text_kFidelityPoints[] = "PUNTI CARTA";
const char text_kFidelityPrint[] = "STAMPA FEDELTA'";
const char text_kFidelityCardNumber[] = "NUMERO CARTA FED.";
const char text_kFidelityCardTotalCredits[] = "CREDITO TOTALE";
const char text_kFidelityCardEarnedPoints[] = "PUNTI ACQUISITI";
const char text_kFidelityCardPreviousPoints[] = "PUNTI PRECEDENTI";
const char text_kFidelityCardTotalPoints[] = "PUNTI TOTALI";
const char text_kFidelityCardSpentCredits[] = "CREDITO SPESO";
const char text_kPinCode[] = "CODICE PIN";
const char text_kDueDate[] = "DATA SCADENZA";
const char text_kCardType[] = "TIPO CARTA";
const char text_kProtection[] = "PROTEZIONE";
const char text_kFidelityCardPrint[] = "STAMPA CARTA FED.";
const char text_kFidelityCardDiscount[] = "SCONTO CARTA";
const char text_kFidelityCardPayCreditMessage[] = "PAGARE CON CREDITO?";
const char text_kFidelityCardPutSales[] = "CARICO ACQUISTI";
const char text_kFidelityCardConnect[] = "CONNESSIONE CARTA";
const char text_kSellDeposit[] = "STORNO ACCONTO";
const char text_kVoidSellDeposit[] = "ANNULLO STORNO ACC.";
const char text_kUndelivered[] = "NON CONSEGNATO";
const char text_kGift[] = "OMAGGIO";
const char text_kVoucher1Lower[] = "Buono pasto";
const char text_kBuoniMonouso[] = "BUONI MONOUSO";
const char text_kBuoniMonousoLower[] = "Buoni monouso";
const char text_kVoidBuoniMonouso[] = "STORNO BUONI MONOUSO";
const char text_kAcquireDeposit[] = "ACCONTO";
const char text_kSummaryXmlV7Enabled[] = "XML 7.0 ABILITATO";
const char text_kSummaryXmlV7Disabled[] = "XML 7.0 DISABILITATO";
const char text_kSummaryXmlV7[] = "TRACCIATO XML 7.0";
const char text_kFiscalMemoriesReadEnabled[] = "LETT. MF ABILITATA";
const char text_kFiscalMemoriesReadDisabled[] = "LETT. MF DISABILIT.";
const char text_kGifts[] = "OMAGGI";
const char text_kFirmwareReady[] = "FIRMWARE PRONTO";
const char text_kReceiptPrintEnable[] = "STAMPA SCONTRINO";
const char text_kName2[] = "NOME 2";
const char text_kNKey[] = "N. TASTO";
const char text_kDocManager[] = "GESTIONE DOCUMENTI";
const char text_kDocManagerShort[] = "GEST. DOC.";
const char text_kKeyboardConfiguration[] = "CONFIG. TASTIERA";
const char text_kReceiptQRCode[] = "QR CODE SCONTRINO";
const char text_kReceiptQRCodeVerifyUrlPath[] = "URL VERIFICA QR";
const char text_kExternalServices[] = "SERVIZI ESTERNI";
const char text_kSendReceipts[] = "INVIO SCONTRINI";
const char text_kExternalServicesUpdate[] = "AGGIORNA SERV. EST.";
const char text_kWebSocket[] = "WEBSOCKET";
const char text_kWebSocketPort[] = "PORTA WEBSOCKET";
const char text_kMandatoryClientVatCode[] = "P.IVA CLIENTE OBBL.";
const char text_kDayCumulative[] = "CUMULATIVO GIORNO";
const char text_kClosuresToday[] = "CHIUSURE DI OGGI";
const char text_kTelematicInvoice[] = "FATTURA ELETTRONICA";
const char text_kTelematicInvoiceOwnerData[] = "DATI CEDENTE";
const char text_kCompanyName[] = "RAGIONE SOCIALE";
const char text_kSurname[] = "COGNOME";
const char text_kAddress[] = "INDIRIZZO";
const char text_kPostalCode[] = "CAP";
const char text_kCity[] = "COMUNE";
const char text_kProvince[] = "PROVINCIA";
const char text_kCountry[] = "NAZIONE";
const char text_kTaxRegime[] = "REGIME FISCALE";
const char text_kProfession[] = "PROFESSIONE";
const char text_kSimplifiedInvoiceThreshold[] = "SOGLIA FATT. SEMPL.";
const char text_kVatSummary[] = "RIEPILOGO IVA";
const char text_kDOY[] = "UFFICIO IMPOSTE";
const char text_kPendingMonitoringReceipts[] = "SCONTR. DA INVIARE";
const char text_kInternalMemoryFragmentation[] = "FRAMM. MEM. INTERNA";
const char text_kBootloaderReport[] = "RAPPORTO BOOTLOADER";
const char text_kGoodsInvoice[] = "FATTURA BENI";
const char text_kServicesInvoice[] = "FATTURA SERVIZI";
const char text_kGoodsInvoiceSeries[] = "SERIE FATTURE BENI";
const char text_kServicesInvoiceSeries[] = "SERIE FATT. SERVIZI";
const char text_kGoodsInvoices[] = "FATTURE BENI";
const char text_kServicesInvoices[] = "FATTURE SERVIZI";
const char text_kSettingsSummary[] = "RIEPILOGO IMPOSTAZ.";
const char text_kTotalCashFund[] = "TOTALE FONDO CASSA";
const char text_kSignature[] = "FIRMA";
const char text_kZReportsLeft[] = "CHIUSURE RESIDUE";
const char text_kLastActivationVatCode[] = "P.IVA ULT. ATTIVAZ.";
const char text_kUdpMonitoring[] = "MONITORAGGIO UDP";
const char text_kLastSentMonitoringLotteryResult[] = "ESITO ULT. LOTTERIA";
const char text_kLastSentMonitoringLotteryTransaction[] = "TRANS. ULT. LOTTERIA";
const char text_kDwsOperations[] = "OPERAZIONI DWS";
const char text_kDwsQrCode[] = "QR CODE DWS";
const char text_kWifiActivation[] = "ATTIVAZIONE WIFI";
const char text_kWifiDeactivation[] = "DISATTIVAZIONE WIFI";
const char text_kWifiNetSearch[] = "RICERCA RETI WIFI";
const char text_kWifiConnecting[] = "CONNESSIONE WIFI";
const char text_kPreviousTotal[] = "TOTALE PRECEDENTE";
const char text_kSignatureQrCode[] = "QR CODE FIRMA";
const char text_kSalesInvoiceHeader[] = "FATTURA DI VENDITA";
const char text_kServicesInvoiceHeader[] = "FATTURA DI SERVIZI";
const char text_kServicesInvoiceProgressive[] = "PROGR. FATT. SERVIZI";
const char text_kPaymentElectronicInfo[] = "DATI PAGAM. ELETTR.";
const char text_kPaymentElectronicStan[] = "STAN";
const char text_kPaymentElectronicOpNumber[] = "NUMERO OPERAZIONE";
const char text_kPaymentElectronicTimestamp[] = "DATA/ORA OPERAZIONE";
const char text_kPaymentElectronicAcquireId[] = "CODICE ACQUIRER";
const char text_kProcessDisabling[] = "DISABILIT. IN CORSO";
const char text_kErrorMessage[] = "MESSAGGIO DI ERRORE";
const char text_kNewCustomer[] = "NUOVO CLIENTE";
const char text_kDeleteCustomer[] = "CANCELLA CLIENTE";
const char text_kCustomers[] = "CLIENTI";
const char text_kOnlinePayment[] = "PAGAMENTO ONLINE";
const char text_kOfflinePayment[] = "PAGAMENTO OFFLINE";
const char text_kInsertAuthCode[] = "INSERIRE COD. AUTOR.";
const char text_kInactiveRT[] = "RT NON ATTIVO";
const char text_kContactTechnicalAssistance[] = "CHIAMARE ASSISTENZA";
const char text_kWarning2[] = "AVVERTENZA";
const char text_kDocCommentHeaderElectronicPaid[] = "PAGATO ELETTRONICO";
const char text_kEMail[] = "E-MAIL";
const char text_kLastIssuedDoc[] = "ULTIMO DOC. EMESSO";
const char text_kLastSentDoc[] = "ULTIMO DOC. INVIATO";
const char text_kDigitalReceipt[] = "SCONTRINO DIGITALE";
const char text_kDigitalReceiptAutoSend[] = "INVIO AUT. DIGITALE";
const char text_kDigitalReceiptPeriodicSend[] = "INVIO PERIOD. DIGIT.";
const char text_kEnableDigitalReceipt[] = "ABIL. SC. DIGITALE";
const char text_kDigitalReceiptStoreBitmaps[] = "SALVA IMM. DIGITALI";
const char text_kDigitalReceiptSending[] = "INVIO SC. DIGITALE";
const char text_kTransmitted[] = "TRASMESSO";
const char text_kPrinterEnabled[] = "STAMPANTE ABILITATA";
const char text_kPrinterDisabled[] = "STAMPANTE DISABIL.";
const char text_kTallon[] = "TALLONE";
const char text_kOnSendError[] = "SU ERRORE DI INVIO";
const char text_kDuration[] = "DURATA";
const char text_kTotalGrossWVat[] = "TOT. LORDO CON IVA";
const char text_kCustomerNumber[] = "NUMERO CLIENTE";
const char text_kReportPeriodicRegisterHeader[] = "RAPP. PERIOD. CASSA";
const char text_kReportPeriodicTaxHeader[] = "RAPP. PERIODICO IVA";
const char text_kReportPeriodicDepartmentsHeader[] = "RAPP. PERIOD. REP.";
const char text_kReportPeriodicItemsHeader[] = "RAPP. PERIODICO PLU";
const char text_kReportSelectiveItemsHeader[] = "RAPP. SELETTIVO PLU";
const char text_kReportPeriodicOperatorsHeader[] = "RAPP. PERIOD. OPER.";
const char text_kReportMonthlyDepartmentsHeader[] = "RAPP. MENSILE REP.";
const char text_kDGFEErrorCount[] = "NUMERO ERRORI DGFE";
const char text_kTaxableShort[] = "IMPON.";
const char text_kDigitalReceiptSendError[] = "ERR. INVIO DIGITALE";
const char text_kDigitalReceiptsPending[] = "SC. DIGIT. PENDENTI";
const char text_kDigitalReceiptsPendingHeader[] = "SC. DIGITALI SOSPESI";
const char text_kDWSQRCodeAcquired[] = "QR CODE ACQUISITO";
const char text_kDigitalReceiptSendOnSummarySend[] = "DIGIT. CON CORRISP.";
const char text_kPrinterVoltageCompensation[] = "COMPENS. TENSIONE";
const char text_kDigitalReceiptEnabled[] = "SC. DIGIT. ABILITATO";
const char text_kCurrency[] = "VALUTA";
const char text_kSafeMoney[] = "CASSA SICURA";
const char text_kAutoStart[] = "AVVIO AUTOMATICO";
const char text_kMaxReceiptSubtotal[] = "SUBTOT. MAX SCONTR.";
const char text_kPrintFMDigestOnlyHeader[] = "STAMPA MF SINTETICA";
const char text_kPrintFMSummaryOnlyHeader[] = "STAMPA MF RIEPILOGO";
const char text_kZeroSalesWarning[] = "NESSUNA VENDITA";
const char text_kJournalShortExtension[] = "EST. DGFE";
const char text_kBatteryPowerSupply[] = "ALIM. A BATTERIA";
const char text_kMainsPowerSupply[] = "ALIM. DI RETE";
const char text_kBatteryChargeComplete[] = "BATTERIA CARICA";
const char text_kBatteryCharging[] = "BATTERIA IN CARICA";
const char text_kBatteryChargeSuspended[] = "CARICA SOSPESA";
const char text_kErrors[] = "ERRORI";
const char text_kEnd[] = "";

const char* const texts[TextCode::kEnd + 1] = {
    text_kNull,
    text_kMAC,
    text_kCode,
    text_kDate,
    text_kTime,
    text_kError,
    text_kShortError,
    text_kTotalClearRequest,
    text_kZReport,
    text_kTotalDaily,
    text_kTotalPaid,
    text_kTotalNotPaid,
    text_kTotalSurcharge,
    text_kTotalDiscount,
    text_kTotalVoids,
    text_kVoids,
    text_kTotalVoidPrinted,
    text_kTotalRefund,
    text_kTotalNotPayed,
    text_kTotalProg,
    text_kReceipts,
    text_kFMQuery,
    text_kGest,
    text_kAdministrativeDocument,
    text_kAdministrativeDocuments,
    text_kRefundDocuments,
    text_kTotCreditNotes,
    text_kNumZReport,
    text_kNumMAC,
    text_kRegKey,
    text_kReadingKey,
    text_kResettingKey,
    text_kSettingKey,
    text_kFiscalNumber,
    text_kFiscalCode,
    text_kTelematicCode,
    text_kEJournalRead,
    text_kReprint,
    text_kReturn,
    text_kTotals,
    text_kClose,
    text_kEftPos,
    text_kTelematicEJournalRead,
    text_kFMRead,
    text_kTelematicFMRead,
    text_kTelematicRegistration,
    text_kPeriodicItemsRead,
    text_kEftPosReport,
    text_kReportOptions,
    text_kPLUOptions,
    text_kExtRegistrationNumber,
    text_kFiscalisation,
    text_kRegistration,
    text_kConfirm,
    text_kJournalInitialisation,
    text_kJournalExtension,
    text_kJournalCode,
    text_kCash,
    text_kCredit,
    text_kCheque,
    text_kCreditCard,
    text_kDebitCard,
    text_kCreditCard2,
    text_kElectronCurrency,
    text_kVoucher,
    text_kVoucher1,
    text_kTicket1,
    text_kLastReceiptsReprint,
    text_kVatRate,
    text_kHeaderLine,
    text_kScontrFiscEnding,
    text_kReportDaily,
    text_kReportLongDaily,
    text_kReportMiddleDaily,
    text_kReportShortDaily,
    text_kReportPeriodicRegister,
    text_kReportPeriodicTax,
    text_kReportPeriodicDepartments,
    text_kReportPeriodicItems,
    text_kReportSelectiveItem,
    text_kReportPeriodicGroups,
    text_kReportPeriodicOperators,
    text_kReportMonthlyDepartments,
    text_kDepartments,
    text_kGroups,
    text_kGroup,
    text_kOperators,
    text_kOperatorsSearch,
    text_kOperatorPassword,
    text_kOperatorFlags,
    text_kOperatorOptions,
    text_kDepartmentsSearch,
    text_kGroupsSearch,
    text_kNewItem,
    text_kDeleteItem,
    text_kPLUTotal,
    text_kDepartmentTotal,
    text_kItems,
    text_kDeleteItem1,
    text_kNewItem1,
    text_kModifyItem1,
    text_kVatRates,
    text_kHeader,
    text_kRegistring,
    text_kReading,
    text_kResetting,
    text_kSetting,
    text_kStationOpened,
    text_kStationClosed,
    text_kSubtotal,
    text_kChange,
    text_kTotal,
    text_kDiscount,
    text_kSurcharge,
    text_kSurchargeShort,
    text_kDiscountsSurcharges,
    text_kDiscountPercentage,
    text_kSurchargePercentage,
    text_kDiscountsPercentage,
    text_kSurchargesPercentage,
    text_kItemAdjustments,
    text_kCancel,
    text_kRefund,
    text_kVoid,
    text_kEuro,
    text_kPercentageA,
    text_kPercentageB,
    text_kMiscellaneous,
    text_kCurrencies,
    text_kEthernetPort,
    text_kSerial1Port,
    text_kGraphics,
    text_kSubTender,
    text_kChipcard,
    text_kPromotions,
    text_kFortune,
    text_kSerial2Port,
    text_kBlockedCards,
    text_kGraphicsTrailer,
    text_kGraphicsTime,
    text_kGraphicsHeader,
    text_kNumber,
    text_kDrawing,
    text_kName,
    text_kPrice,
    text_kMaxPrice,
    text_kVatCode,
    text_kSingleShoot,
    text_kAllowDiscount,
    text_kForceDescription,
    text_kYes,
    text_kNo,
    text_kOk,
    text_kKo,
    text_kManual,
    text_kScheduled,
    text_kRate,
    text_kRate2,
    text_kSign,
    text_kPositiveSign,
    text_kNegativeSign,
    text_kMultiplySign,
    text_kLeft,
    text_kRight,
    text_kCenter,
    text_kStationNumber,
    text_kStationClosureAvailability,
    text_kRounding,
    text_kRounding2,
    text_kRoundings,
    text_kRoundingType,
    text_kRoundingValue,
    text_kReceiptDocVatReport,
    text_kCancelDocVatReport,
    text_kRefundDocVatReport,
    text_kInvoiceDocVatReport,
    text_kReceiptDocVatReportShort,
    text_kCancelDocVatReportShort,
    text_kRefundDocVatReportShort,
    text_kTallonsManagement,
    text_kAllowPluPrice,
    text_kBeeper,
    text_kResetProgressiveNumber,
    text_kPaperType,
    text_kPrinterOptions,
    text_kLookAheadOptions,
    text_kPowerButton,
    text_kPrintUnitaryQunatity,
    text_kRequestSubtotal,
    text_kPrintTotalItems,
    text_kClousureType,
    text_kFixedShift,
    text_kClousureAlert,
    text_kAllowZeroPrice,
    text_kShowTime,
    text_kDrawerThreshold,
    text_kPrintVatSummary,
    text_kCheckChange,
    text_kRotatingMessage,
    text_kTaxReceiptStart,
    text_kTaxReceiptEnd,
    text_kNotAReceiptLine1,
    text_kNotAReceiptLine2,
    text_kRegistrationNumber,
    text_kOperator,
    text_kRegister,
    text_kDigit0,
    text_kDigit1,
    text_kDigit2,
    text_kDigit3,
    text_kDigit4,
    text_kDigit5,
    text_kDigit6,
    text_kDigit7,
    text_kDigit8,
    text_kDigit9,
    text_kEllipsis,
    text_kPhysicalAddress,
    text_kIPAddress,
    text_kSubnetMask,
    text_kGateway,
    text_kDNS1,
    text_kDNS2,
    text_kPrice1,
    text_kPrice2,
    text_kPrice3,
    text_kTicketChange,
    text_kTicketChanges,
    text_kCashChanges,
    text_kOptions,
    text_kOldPassword,
    text_kNewPassword,
    text_kConfirmPassword,
    text_kInsertPassword,
    text_kPasswordAccepted,
    text_kPasswordRefused,
    text_kTCPPort,
    text_kTimeout,
    text_kType,
    text_kHost,
    text_kPort,
    text_kPortNumber,
    text_kPortConfig,
    text_kProtocol,
    text_kCustomerDisplay,
    text_kOperatorDisplay,
    text_kExtDisplay,
    text_kBarCodeReader,
    text_kPosTerminal,
    text_kScaleCheckout,
    text_kWeight,
    text_kTare,
    text_kScale,
    text_kRedirect,
    text_kExternFiles,
    text_kKeyboardEmulation,
    text_kDataCollect,
    text_kPrintMonitor,
    text_kInteractivity,
    text_kUpdateExternFiles,
    text_kDepartment,
    text_kNonFiscalHeader,
    text_kDeferredPrint,
    text_kEnableBeep,
    text_kAutoReprint,
    text_kModel,
    text_kSlipPrinter,
    text_kOn,
    text_kOff,
    text_kHostPC,
    text_kXOnXOff,
    text_kRemotePC,
    text_kAccountActivity,
    text_kFiscalReceipt,
    text_kInvoice,
    text_kInvoices,
    text_kInvoiceAndReceipt,
    text_kWithdrawal,
    text_kDeposit,
    text_kCashFund,
    text_kAdvanceReceipt1,
    text_kAdvanceReceipt2,
    text_kAmountRequest,
    text_kAmount,
    text_kRow,
    text_kTest,
    text_kKeyNumber,
    text_kMacro,
    text_kSpecialCode,
    text_kFunctionCode,
    text_kInvoiceNumber,
    text_kTotalDocInvoice,
    text_kTotalDocRefund,
    text_kTotalAmount,
    text_kDocRefund,
    text_kDocCancel,
    text_kTelematicDocRefund,
    text_kDocCreditNote,
    text_kDocRefRecipt,
    text_kDocDate,
    text_kDocCommentRefundRow1,
    text_kDocCommentRefundRow2,
    text_kInvoiceHeaderCustomer,
    text_kDocRefundHeader,
    text_kDocCommentHeader2,
    text_kDocCommentHeader,
    text_kDocCommentDemoHeader,
    text_kDocCommentSale,
    text_kDocCommentRefund2,
    text_kDocCommentCancel,
    text_kDocCommentRef,
    text_kRegistrationNumRef,
    text_kDocNumberShort,
    text_kDocOf,
    text_kDocVatId,
    text_kDocCF,
    text_kDocNumber,
    text_kDocCFCustomer,
    text_kDocVatIDCustomer,
    text_kReceiptDate,
    text_kReceiptNumber,
    text_kReceiptNumberTrailer,
    text_kShortReceiptNumberTrailer,
    text_kReceiptNumberReference,
    text_kFrom,
    text_kTo,
    text_kFromNumber,
    text_kToNumber,
    text_kFromReceiptNumber,
    text_kToReceiptNumber,
    text_kFromZReportNumber,
    text_kToZReportNumber,
    text_kMACNumber,
    text_kZReportAcronym,
    text_kEJournalNumber,
    text_kSeal,
    text_kFiscalTotalDaily,
    text_kDocClassIICount,
    text_kDocClassIITotal,
    text_kCreditNoteCount,
    text_kCreditNoteTotal,
    text_kProRefundCount,
    text_kProRefundTotal,
    text_kDocCancelCount,
    text_kDocCancelTotal,
    text_kDocRefundCount,
    text_kDocRefundTotal,
    text_kSetHeader,
    text_kFiscalTotalPeriodic,
    text_kTaxCode,
    text_kLotteryCode,
    text_kCustomerTaxCode,
    text_kAlphaInput,
    text_kFixedDecimal,
    text_kAutoDecimal,
    text_kShortVatNameBase,
    text_kFixedVatCode0,
    text_kFixedVatCode1,
    text_kFixedVatCode2,
    text_kFixedVatCode3,
    text_kFixedVatCode4,
    text_kFixedVatCode5,
    text_kFixedVatCode6,
    text_kFixedVatCodeRT0,
    text_kFixedVatCodeRT1,
    text_kFixedVatCodeRT2,
    text_kFixedVatCodeRT3,
    text_kFixedVatCodeRT4,
    text_kFixedVatCodeRT5,
    text_kFixedVatCodeRT6,
    text_kFixedVatDescriptionMF0,
    text_kFixedVatDescriptionMF1,
    text_kFixedVatDescriptionMF2,
    text_kFixedVatDescriptionMF3,
    text_kFixedVatDescriptionMF4,
    text_kFixedVatDescriptionMF5,
    text_kFixedVatDescriptionMF6,
    text_kFixedVatDescriptionRT0,
    text_kFixedVatDescriptionRT1,
    text_kFixedVatDescriptionRT2,
    text_kFixedVatDescriptionRT3,
    text_kFixedVatDescriptionRT4,
    text_kFixedVatDescriptionRT5,
    text_kFixedVatDescriptionRT6,
    text_kFWUpdateAnnotation,
    text_kFWUpdateNonFiscalDesc,
    text_kActInfo,
    text_kDeclarationInfo,
    text_kTechFiscalCode,
    text_kTechVatCode,
    text_kTechCountryCode,
    text_kFirmwareUpdate,
    text_kBuildDate,
    text_kLearningActivation,
    text_kVat,
    text_kTaxable,
    text_kTotVat,
    text_kTotVat2,
    text_kTotTaxable,
    text_kExempts,
    text_kCopyForCustomer,
    text_kCopyForIssuer,
    text_kNoFiscal,
    text_kEJournal,
    text_kNewEJournal,
    text_kAvailableResets,
    text_kEJournalReport,
    text_kState,
    text_kUsedSpace,
    text_kQuantity,
    text_kPLUAmount,
    text_kMaxDigits,
    text_kStockQuantity,
    text_kDifference,
    text_kTelematicReport,
    text_kTelematicState,
    text_kTelematicNumber,
    text_kTelematicVirgin,
    text_kTelematicInit,
    text_kTelematicCensus,
    text_kTelematicActivated,
    text_kTelematicCommissioned,
    text_kTelematicSuspended,
    text_kFiscalMode,
    text_kTelematicMode,
    text_kSales,
    text_kWaitedCustomers,
    text_kTotalGross,
    text_kTotalNet,
    text_kTotalReceipts,
    text_kCashReceipts,
    text_kCashReceipts2,
    text_kTaxReceipts,
    text_kCreditReceipts,
    text_kTaxTotal,
    text_kRegisterTotals,
    text_kAccountActivities,
    text_kWithdrawals,
    text_kDeposits,
    text_kRegisterTotal,
    text_kTelematicService,
    text_kTelematicInitialisation,
    text_kX509Request,
    text_kActivation,
    text_kCommissioning,
    text_kDecommissioning,
    text_kDeactivation,
    text_kLearning,
    text_kChecking,
    text_kCheckingResult,
    text_kService,
    text_kMalfunction,
    text_kDismissing,
    text_kAnnotation,
    text_kSendTotals,
    text_kSendLottery,
    text_kExportTotals,
    text_kExportLottery,
    text_kExportJournal,
    text_kExportTelematicResults,
    text_kTelemSave,
    text_kSaveLottery,
    text_kReportTelematicResults,
    text_kReportDocumentResults,
    text_kZReportNumber,
    text_kZReportDate,
    text_kDispatchResult,
    text_kOperationResult,
    text_kErrorCodeResult,
    text_kSendDate,
    text_kOwnerVATCode,
    text_kTechnicianFiscalCode,
    text_kTechnicianVATCode,
    text_kPositive,
    text_kNegative,
    text_kCollection,
    text_kWarning,
    text_kWarningsReport,
    text_kModelCodeShort,
    text_kProducerCodeShort,
    text_kInterrupt,
    text_kCutter,
    text_kCutTotal,
    text_kCutPartial,
    text_kHeaderMode,
    text_kAutoClear,
    text_kAbortedOperation,
    text_kDescription,
    text_kPaymentCash,
    text_kPaymentElectronic,
    text_kPaymentCredit,
    text_kPaymentChargeVoucher,
    text_kPaymentNotChargeVoucher,
    text_kPaymentVoucher,
    text_kCheque2,
    text_kCredit2,
    text_kTotalCredit,
    text_kTotalCredits,
    text_kCash2,
    text_kOther,
    text_kTelematicChange,
    text_kTotalPayed,
    text_kRetries,
    text_kPause,
    text_kDocsSale,
    text_kDocsClasseII,
    text_kDocsRefund,
    text_kDocsCancel,
    text_kProgressiveSale,
    text_kInvoiceOptions,
    text_kHeaderOffset,
    text_kMaxLines,
    text_kInvoiceProgressive,
    text_kSeries,
    text_kDHCP,
    text_kTelematic,
    text_kAuthorityHost,
    text_kAuthorityPort,
    text_kAuthoritySummaryEndpoint,
    text_kAuthorityQRCodeEndpoint,
    text_kServerHost,
    text_kServerPort,
    text_kServerUsername,
    text_kServerPassword,
    text_kRequestToken,
    text_kSendData,
    text_kCheckSignature,
    text_kInvalidSignature,
    text_kClosureAvailability,
    text_kCorrection,
    text_kCorrections,
    text_kLevel,
    text_kModules,
    text_kOutputs,
    text_kTrace,
    text_kDebug,
    text_kInfo,
    text_kWarn,
    text_kFatal,
    text_kReserved539,
    text_kReserved540,
    text_kErrorNull,
    text_kErrorSettings,
    text_kErrorPrize,
    text_kErrorClock,
    text_kErrorKey,
    text_kErrorTransactionOverflow,
    text_kErrorFirmwareMismatch,
    text_kErrorOutOfSequence,
    text_kErrorPluNotFound,
    text_kErrorChangeInsufficient,
    text_kErrorSlipOff,
    text_kErrorDrawerThreshold,
    text_kErrorFMTotalOverflow,
    text_kErrorFMError,
    text_kErrorCustomerNotFound,
    text_kErrorFMMissing,
    text_kErrorTotalNegative,
    text_kErrorJournalPaperEnd,
    text_kErrorFMFull,
    text_kErrorFiscalDataInvalid,
    text_KErrorReceiptEnding,
    text_kErrorPrinterVoltage,
    text_kErrorPaperEnd,
    text_kErrorDailyReport,
    text_kErrorActivityInvalid,
    text_kErrorCurrencyInvalid,
    text_kErrorPluInvalid,
    text_kErrorConnection,
    text_kErrorFMWriting,
    text_kErrorFMReading,
    text_kErrorInterfaceMissing,
    text_kErrorZReportNeeded,
    text_kErrorFMMACOverflow,
    text_kErrorDateInvalid,
    text_kErrorFMHeaderSetOverflow,
    text_kErrorSlipPrinterMissing,
    text_kErrorSlipFormMissing,
    text_kErrorSlipFormEnd,
    text_kErrorSlipFormNeeded,
    text_kErrorLearningSequence,
    text_kErrorFiscalDataOverflow,
    text_kErrorHostError,
    text_kErrorOperatorNeeded,
    text_kErrorCoverOpened,
    text_kErrorFMDataMismatch,
    text_kErrorAmountNeeded,
    text_kErrorSubtotalNeeded,
    text_kErrorModemError,
    text_kErrorCutterJam,
    text_kErrorChipCardInvalid,
    text_kErrorChipCardError,
    text_kErrorZReportAlert,
    text_kErrorSubtenderDisabled,
    text_kErrorFMLogoInvalid,
    text_kError54,
    text_kError55,
    text_kErrorEMMissing,
    text_kErrorEMIOError,
    text_kErrorEMError,
    text_kErrorOfferInvalid,
    text_kErrorOfferCountOverflow,
    text_kErrorChipCardExpired,
    text_kErrorEftPosError,
    text_kErrorEftPosAborting,
    text_kErrorEftPosClear,
    text_kErrorPumpError,
    text_kErrorEuroNeeded,
    text_kErrorTicketOverflow,
    text_kErrorChipCardLocked,
    text_kErrorPrinterError,
    text_kErrorBatteryMissing,
    text_kErrorBillInvalid,
    text_kErrorBillEMError,
    text_kErrorBillClosed,
    text_kErrorBillOpened,
    text_kErrorOrderPrinterMissing,
    text_kErrorChipCardNeeded,
    text_kErrorCreditInsufficient,
    text_kErrorBillClosing,
    text_kErrorOrderPrinterError,
    text_kErrorScaleIOError,
    text_kErrorScaleOutRange,
    text_kErrorMacEnabled,
    text_kErrorEJournalError,
    text_kErrorEJournalMissign,
    text_kErrorEJournalBlank,
    text_kErrorEJournalFull,
    text_kErrorServerConnection,
    text_kErrorServerError,
    text_kErrorZReportWarning,
    text_kErrorCurrencySubtotalZero,
    text_kErrorServerBusy,
    text_kError92,
    text_kError93,
    text_kError94,
    text_kError95,
    text_kError96,
    text_kError97,
    text_kError98,
    text_kError99,
    text_kErrorFiscalBusy,
    text_kErrorTotalMismatch,
    text_kErrorParameterWrong,
    text_kErrorTransactionError,
    text_kErrorFMAddressError,
    text_kErrorFMVatSetOverflow,
    text_kErrorFMEJournalInitOverflow,
    text_kErrorFMZReportOverflow,
    text_kErrorEJournalClosed,
    text_kErrorEJournalInvalid,
    text_kErrorEJournalUnrelated,
    text_kErrorCutterOpened,
    text_kErrorStorageError,
    text_kErrorManagerDataInvalid,
    text_kErrorTZReportOverflow,
    text_kErrorSignatureError,
    text_kErrorTelematicSendError,
    text_kErrorTelematicServerBusy,
    text_kErrorPaperNearEndError,
    text_kFMNearEndError,
    text_kEJournalNearEndError,
    text_kFiscalDisplayDisconnected,
    text_kUSBError,
    text_kBackupBatteryFailure,
    text_kSetAtecoNumberError,
    text_kNotRoundedAmount,
    text_kPaymentServiceError,
    text_kFileExportError,
    text_kFileExportNeededError,
    text_kFidelityError,
    text_kFidelityConnect,
    text_kFidelityProtocol,
    text_kFidelityInactive,
    text_kFidelityLocked,
    text_kFidelityCardInvalidStatus,
    text_kFidelityWrongPin,
    text_kFidelityCardNotLoaded,
    text_kFidelityCardNotEnabled,
    text_kFidelityCardInsufficientCredit,
    text_kFidelityCardDisconnected,
    text_kFidelityCardUnauthorized,
    text_kErrorMandatoryClientVatCode,
    text_kErrorSimplifiedInvoiceThreshold,
    text_kFidelityEmpty,
    text_kFidelityCardNotFound,
    text_kLowBatteryError,
    text_kDeadBatteryError,
    text_kFidelityCardSuspended,
    text_kFidelityCardExpired,
    text_kBurnInTest,
    text_kFiscalMemoryTest,
    text_kEJournalTest,
    text_kStorageTest,
    text_kRTCTest,
    text_kWriteTest,
    text_kSerialTest,
    text_kRemainingZ,
    text_kPing,
    text_kNetworkReport,
    text_kSureQuestion,
    text_kNoError,
    text_kBadXmlSyntax,
    text_kAccountExisting,
    text_kAccountNotFound,
    text_kAccountUsed,
    text_kMissingUsername,
    text_kNotEnoughParams,
    text_kNotAllowed,
    text_kNoRoomLeft,
    text_kWrongParameter,
    text_kOutOfRangeParam,
    text_kTooManyValues,
    text_kXmlElementValueError,
    text_kTooManyAccounts,
    text_kUSBDevice,
    text_kServerRTSignatureError,
    text_kServerRTSequenceError,
    text_kServerRTDuplicatedDocument,
    text_kServerRTNonProgressive,
    text_kServerRTInvalidUpgrade,
    text_kServerRTHttpClientError,
    text_kSoftReset,
    text_kInternalReport,
    text_kVersionReport,
    text_kFirmwareVersion,
    text_kFirmwareDate,
    text_kBootVersion,
    text_kFirmwareRevision,
    text_kInternalFirmwareVersion,
    text_kWait,
    text_kBrand,
    text_kCard,
    text_kCardPAN,
    text_kAuthorizationCode,
    text_kEftConnection,
    text_kSafeMoneyConnection,
    text_kIntervention,
    text_kOppositionJurisprudence1,
    text_kOppositionJurisprudence2,
    text_kOppositionJurisprudence3,
    text_kOppositionJurisprudence4,
    text_kOppositionJurisprudence5,
    text_kOppositionJurisprudence6,
    text_kRegisterCode,
    text_kServerCode,
    text_kProducerBuild,
    text_kMemoryErase,
    text_kFiscalMemory,
    text_kStorage,
    text_kUserStorage,
    text_kConfiguration,
    text_kDump,
    text_kUnDump,
    text_kAll,
    text_kEverything,
    text_kPLUDownload,
    text_kUpgradeErase,
    text_kFtpEnabled,
    text_kFtpUsername,
    text_kFtpPassword,
    text_kWifiEnable,
    text_kWifi,
    text_kEthernet,
    text_kWifiSSID,
    text_kWifiPassword,
    text_kConnected,
    text_kNotConnected,
    text_kAutoReboot,
    text_kEnabled,
    text_kStartLearning,
    text_kEndLearning,
    text_kServError,
    text_kCheckConn,
    text_kTelematicDismissed,
    text_kServerRTVatRateNotCorrespondingToVatIndex,
    text_kServerRTNonProgressiveClosure,
    text_kTransactionVoid,
    text_kFragmentation,
    text_kEJournalsReport,
    text_kEJournalCode,
    text_kGiftCoupon,
    text_kMonitorEnabled,
    text_kMonitorHost,
    text_kMonitorPort,
    text_kMonitorInterval,
    text_kStock,
    text_kOutOfService,
    text_kDetailCode,
    text_kAvailableDays,
    text_kVentilazioneIVA,
    text_kHourInterval,
    text_kCheckPending,
    text_kNetworkSocketReport,
    text_kTimedSend,
    text_kDocumentSend,
    text_kLotteryThreshold,
    text_kMaxDocsPerFile,
    text_kMaxLotteryDocs,
    text_kLotteryMinTime,
    text_kLotteryPending,
    text_kSendReceipt,
    text_kLotteryEmptyHeader,
    text_kSecureConnection,
    text_kAuthentication,
    text_kEndpoint,
    text_kTimeInterval,
    text_kTimeStart,
    text_kTimeEnd,
    text_kResetting2,
    text_kTelematicSendSimulated,
    text_kTelematicSimulationActive,
    text_kLoyaltyBalance,
    text_kCardNumber,
    text_kOwner,
    text_kPoints,
    text_kMonitoringStart,
    text_kMonitoringProgramLogo,
    text_kMonitoringUpdateFirmware,
    text_kMonitoringGetStatus,
    text_kMonitoringGetLogs,
    text_kMonitoringWarmMAC,
    text_kMonitoringReboot,
    text_kMonitoringTelematicExport,
    text_kMonitoringTelematicResults,
    text_kMonitoringTelematicStatus,
    text_kMonitoringTelematicSave,
    text_kMonitoringTelematicSend,
    text_kMonitoringTelematicGetPendingNum,
    text_kMonitoringGetUsedSpace,
    text_kMonitoringGetServiceDate,
    text_kMonitoringSetServiceDate,
    text_kMonitoringGetDump,
    text_kMonitoringGetDailyStats,
    text_kMonitoringGetClock,
    text_kMonitoringLotterySend,
    text_kMonitoringEnd,
    text_kCommissioningDate,
    text_kNearPaperEnd,
    text_kRoundingLaw,
    text_kRoundingLaw2,
    text_kClosuresNumberCheck,
    text_kMACRecover,
    text_kSettingBrightnessText,
    text_kSettingContrastText,
    text_kSettingKeypressFreqText,
    text_kTextTrailer,
    text_kTextTrailerExt,
    text_kTotalFiscal,
    text_kPrintOperator,
    text_kPrinterHeadSize,
    text_kDepService,
    text_kNotPaidService,
    text_kNotPaidServiceLower,
    text_kNotPaidSSN,
    text_kNotPaidSSNLower,
    text_kNotPaidGift,
    text_kNotPaidGiftLower,
    text_kNotPaidInvoice,
    text_kNotPaidInvoiceLower,
    text_kDiscountOnPayment,
    text_kDiscountOnPaymentLower,
    text_kServiceShort,
    text_kWorkingActivity,
    text_kAteco,
    text_kPrintAteco,
    text_kReceiptDocVatReportShortest,
    text_kCancelDocVatReportShortest,
    text_kRefundDocVatReportShortest,
    text_kReportByActivity,
    text_kMonitorReceiptsEnabled,
    text_kMonitorZEnabled,
    text_kExternalServicesUrlTransaction,
    text_kEnableFiscalMemories,
    text_kMonitoringServerBinding,
    text_kMonitorUrlAssociation,
    text_kMonitorAssociationPort,
    text_kMonitorAssociationProtocol,
    text_kToken,
    text_kDrawerAutoOpen,
    text_kMinimumBalance,
    text_kAutoUpdateSlu,
    text_kUpdateServices,
    text_kPrintTabSlu,
    text_kBalance,
    text_kReadMessages,
    text_kRechargeService,
    text_kTestConnectCs,
    text_kTestConnect,
    text_kImei,
    text_kPhoneNumber,
    text_kReadTabSlu,
    text_kReadTabVoucher,
    text_kActiveOffer,
    text_kTableVersionSlu,
    text_kTableVersionVouchers,
    text_kSluQuantity,
    text_kPrefixQuantity,
    text_kDisabled,
    text_kTableSlu,
    text_kTableVouchers,
    text_kSuspended,
    text_kUnknown,
    text_kLayoutEco,
    text_kNtpDateTimeSync,
    text_kTemperature,
    text_kLogo,
    text_kAESKey,
    text_kSalesReportByVat,
    text_kSalesReportByDepartment,
    text_kFMProgressiveData,
    text_kTechnicalInterventions,
    text_kDisconnections,
    text_kPrinterDisconnections,
    text_kDGFEDisconnections,
    text_kCMOSErrors,
    text_kHeaderChanges,
    text_kVatRateChanges,
    text_kDailySalesReport,
    text_kZReportCopyLine1,
    text_kZReportCopyLine2,
    text_kUnsuccessfulZReport,
    text_kNonFiscalReceipts,
    text_kGlobalDailyReceiptNo,
    text_kSignatureReportHeaderLine1,
    text_kSignatureReportHeaderLine2,
    text_kDailyExportSuccessLine1,
    text_kDailyExportSuccessLine2,
    text_kDailyExportSuccessLine3,
    text_kDailyExportErrorLine1,
    text_kDailyExportErrorLine2,
    text_kEJournalRemovedLine1,
    text_kEJournalRemovedLine2,
    text_kECRLocked,
    text_kPowerFail,
    text_kCMOSRecoverLine1,
    text_kCMOSRecoverLine2,
    text_kDocumentDuplicate,
    text_kDSTSummerTimeChange,
    text_kDSTWinterTimeChange,
    text_kDSTSummerTimeChangeShort,
    text_kDSTWinterTimeChangeShort,
    text_kReserved942,
    text_kReserved943,
    text_kReserved944,
    text_kReserved945,
    text_kReserved946,
    text_kReserved947,
    text_kReserved948,
    text_kReserved949,
    text_kReserved950,
    text_kReserved951,
    text_kReserved952,
    text_kReserved953,
    text_kReserved954,
    text_kReserved955,
    text_kReserved956,
    text_kReserved957,
    text_kReserved958,
    text_kLanguage,
    text_kLanguageDefault,
    text_kLanguageItalian,
    text_kLanguageEnglish,
    text_kLanguageFrench,
    text_kLanguageGreek,
    text_kUSBHID,
    text_kFidelityCard,
    text_kFidelityReadCard,
    text_kFidelityDisplayCode,
    text_kFidelityName,
    text_kFidelityBalance,
    text_kFidelityPoints,
    text_kFidelityPrint,
    text_kFidelityCardNumber,
    text_kFidelityCardTotalCredits,
    text_kFidelityCardEarnedPoints,
    text_kFidelityCardPreviousPoints,
    text_kFidelityCardTotalPoints,
    text_kFidelityCardSpentCredits,
    text_kPinCode,
    text_kDueDate,
    text_kCardType,
    text_kProtection,
    text_kFidelityCardPrint,
    text_kFidelityCardDiscount,
    text_kFidelityCardPayCreditMessage,
    text_kFidelityCardPutSales,
    text_kFidelityCardConnect,
    text_kSellDeposit,
    text_kVoidSellDeposit,
    text_kUndelivered,
    text_kGift,
    text_kVoucher1Lower,
    text_kBuoniMonouso,
    text_kBuoniMonousoLower,
    text_kVoidBuoniMonouso,
    text_kAcquireDeposit,
    text_kSummaryXmlV7Enabled,
    text_kSummaryXmlV7Disabled,
    text_kSummaryXmlV7,
    text_kFiscalMemoriesReadEnabled,
    text_kFiscalMemoriesReadDisabled,
    text_kGifts,
    text_kFirmwareReady,
    text_kReceiptPrintEnable,
    text_kName2,
    text_kNKey,
    text_kDocManager,
    text_kDocManagerShort,
    text_kKeyboardConfiguration,
    text_kReceiptQRCode,
    text_kReceiptQRCodeVerifyUrlPath,
    text_kExternalServices,
    text_kSendReceipts,
    text_kExternalServicesUpdate,
    text_kWebSocket,
    text_kWebSocketPort,
    text_kMandatoryClientVatCode,
    text_kDayCumulative,
    text_kClosuresToday,
    text_kTelematicInvoice,
    text_kTelematicInvoiceOwnerData,
    text_kCompanyName,
    text_kSurname,
    text_kAddress,
    text_kPostalCode,
    text_kCity,
    text_kProvince,
    text_kCountry,
    text_kTaxRegime,
    text_kProfession,
    text_kSimplifiedInvoiceThreshold,
    text_kVatSummary,
    text_kDOY,
    text_kPendingMonitoringReceipts,
    text_kInternalMemoryFragmentation,
    text_kBootloaderReport,
    text_kGoodsInvoice,
    text_kServicesInvoice,
    text_kGoodsInvoiceSeries,
    text_kServicesInvoiceSeries,
    text_kGoodsInvoices,
    text_kServicesInvoices,
    text_kSettingsSummary,
    text_kTotalCashFund,
    text_kSignature,
    text_kZReportsLeft,
    text_kLastActivationVatCode,
    text_kUdpMonitoring,
    text_kLastSentMonitoringLotteryResult,
    text_kLastSentMonitoringLotteryTransaction,
    text_kDwsOperations,
    text_kDwsQrCode,
    text_kWifiActivation,
    text_kWifiDeactivation,
    text_kWifiNetSearch,
    text_kWifiConnecting,
    text_kPreviousTotal,
    text_kSignatureQrCode,
    text_kSalesInvoiceHeader,
    text_kServicesInvoiceHeader,
    text_kServicesInvoiceProgressive,
    text_kPaymentElectronicInfo,
    text_kPaymentElectronicStan,
    text_kPaymentElectronicOpNumber,
    text_kPaymentElectronicTimestamp,
    text_kPaymentElectronicAcquireId,
    text_kProcessDisabling,
    text_kErrorMessage,
    text_kNewCustomer,
    text_kDeleteCustomer,
    text_kCustomers,
    text_kOnlinePayment,
    text_kOfflinePayment,
    text_kInsertAuthCode,
    text_kInactiveRT,
    text_kContactTechnicalAssistance,
    text_kWarning2,
    text_kDocCommentHeaderElectronicPaid,
    text_kEMail,
    text_kLastIssuedDoc,
    text_kLastSentDoc,
    text_kDigitalReceipt,
    text_kDigitalReceiptAutoSend,
    text_kDigitalReceiptPeriodicSend,
    text_kEnableDigitalReceipt,
    text_kDigitalReceiptStoreBitmaps,
    text_kDigitalReceiptSending,
    text_kTransmitted,
    text_kPrinterEnabled,
    text_kPrinterDisabled,
    text_kTallon,
    text_kOnSendError,
    text_kDuration,
    text_kTotalGrossWVat,
    text_kCustomerNumber,
    text_kReportPeriodicRegisterHeader,
    text_kReportPeriodicTaxHeader,
    text_kReportPeriodicDepartmentsHeader,
    text_kReportPeriodicItemsHeader,
    text_kReportSelectiveItemsHeader,
    text_kReportPeriodicOperatorsHeader,
    text_kReportMonthlyDepartmentsHeader,
    text_kDGFEErrorCount,
    text_kTaxableShort,
    text_kDigitalReceiptSendError,
    text_kDigitalReceiptsPending,
    text_kDigitalReceiptsPendingHeader,
    text_kDWSQRCodeAcquired,
    text_kDigitalReceiptSendOnSummarySend,
    text_kPrinterVoltageCompensation,
    text_kDigitalReceiptEnabled,
    text_kCurrency,
    text_kSafeMoney,
    text_kAutoStart,
    text_kMaxReceiptSubtotal,
    text_kPrintFMDigestOnlyHeader,
    text_kPrintFMSummaryOnlyHeader,
    text_kZeroSalesWarning,
    text_kJournalShortExtension,
    text_kBatteryPowerSupply,
    text_kMainsPowerSupply,
    text_kBatteryChargeComplete,
    text_kBatteryCharging,
    text_kBatteryChargeSuspended,
    text_kErrors,
    text_kEnd,
};

}  // namespace texts_default
