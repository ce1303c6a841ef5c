PRAGMA application_id = 1280135750;
PRAGMA user_version = 3;
BEGIN TRANSACTION;
CREATE TABLE article (
  place INTEGER PRIMARY KEY, code TEXT NOT NULL UNIQUE, description TEXT NOT NULL,
  department INTEGER NOT NULL, price INTEGER NOT NULL);
CREATE TABLE closure (
  number INTEGER PRIMARY KEY, time INTEGER NOT NULL, documents INTEGER NOT NULL,
  sales INTEGER NOT NULL, invoices INTEGER NOT NULL, refunds INTEGER NOT NULL,
  cancels INTEGER NOT NULL, abandoned INTEGER NOT NULL, non_fiscal INTEGER NOT NULL,
  grand_total INTEGER NOT NULL, vat_rates TEXT NOT NULL, totals TEXT NOT NULL);
INSERT INTO "closure" VALUES(1,20240115103000,2,2,1,0,0,0,0,409000,'5 220000 0: 100000 0: 50000 0: 40000 0: 0 3:ES* ','2 165000 0 10000 0 2 1 110000 19800 0 0 0 0 0 0 0 0 0 0 140000 0 20000 0 10000 0 0 0 0 0 0 0 2 55000 5000 0 0 0 0 0 0 0 0 0 0 55000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 110000 2 1000 55000 2 1 2000 130000 2 1000 55000 2 1:0 125000 2:10 40000 2 1:0 1 2:10 1 1 1 165000 1 1 2 1 244000 244000 0 0 1 1 244000 44000 0 0 0 0 0 0 244000 44000 0 0 244000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 244000 1 1 1000 244000 1 1:5 244000 1 1:5 1 1 1 244000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
CREATE TABLE department (
  number INTEGER PRIMARY KEY, name TEXT NOT NULL, vat INTEGER NOT NULL, price INTEGER NOT NULL,
  max_price INTEGER NOT NULL, department_group INTEGER NOT NULL, quantity INTEGER NOT NULL,
  single_shoot INTEGER NOT NULL, allow_discount INTEGER NOT NULL,
  force_description INTEGER NOT NULL, is_service INTEGER NOT NULL);
INSERT INTO "department" VALUES(1,'REPARTO 1',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(2,'REPARTO 2',2,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(3,'REPARTO 3',3,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(4,'REPARTO 4',4,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(5,'REPARTO 5',5,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(6,'REPARTO 6',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(7,'REPARTO 7',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(8,'REPARTO 8',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(9,'REPARTO 9',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(10,'REPARTO 10',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(11,'REPARTO 11',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(12,'REPARTO 12',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(13,'REPARTO 13',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(14,'REPARTO 14',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(15,'REPARTO 15',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(16,'REPARTO 16',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(17,'REPARTO 17',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(18,'REPARTO 18',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(19,'REPARTO 19',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(20,'REPARTO 20',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(21,'REPARTO 21',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(22,'REPARTO 22',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(23,'REPARTO 23',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(24,'REPARTO 24',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(25,'REPARTO 25',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(26,'REPARTO 26',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(27,'REPARTO 27',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(28,'REPARTO 28',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(29,'REPARTO 29',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(30,'REPARTO 30',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(31,'REPARTO 31',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(32,'REPARTO 32',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(33,'REPARTO 33',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(34,'REPARTO 34',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(35,'REPARTO 35',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(36,'REPARTO 36',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(37,'REPARTO 37',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(38,'REPARTO 38',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(39,'REPARTO 39',1,0,0,0,0,0,1,0,0);
INSERT INTO "department" VALUES(40,'REPARTO 40',1,0,0,0,0,0,1,0,0);
CREATE TABLE device_option (number INTEGER PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE document (
  id INTEGER PRIMARY KEY, kind INTEGER NOT NULL, closure INTEGER NOT NULL,
  number INTEGER NOT NULL, time INTEGER NOT NULL, operator INTEGER NOT NULL,
  total INTEGER NOT NULL, not_paid INTEGER NOT NULL, change INTEGER NOT NULL,
  discounts INTEGER NOT NULL, surcharges INTEGER NOT NULL, lottery_code TEXT NOT NULL,
  referred_closure INTEGER NOT NULL, referred_number INTEGER NOT NULL, sums TEXT NOT NULL);
INSERT INTO "document" VALUES(1,0,1,1,20240115103000,1,125000,0,75000,10000,0,'',0,0,'2 1 70000 2 55000 2 1 70000 12600 0 0 0 0 0 0 0 0 0 0 100000 0 20000 0 10000 0 0 0 0 0 0 0 2 55000 5000 0 0 0 0 0 0 0 0 0 0 55000 0 0 0 0 0 0 0 0 0 0 0 2 1 0 70000 2 1000 55000 2 1 1000 90000 2 1000 55000 1 1:0 125000 1 1:0 1 ');
INSERT INTO "document" VALUES(2,0,1,2,20240115103000,1,40000,0,0,0,0,'',0,0,'1 1 40000 1 1 40000 7200 0 0 0 0 0 0 0 0 0 0 40000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 40000 1 1 1000 40000 1 2:10 40000 1 2:10 1 ');
INSERT INTO "document" VALUES(3,1,1,1,20240115103000,1,244000,244000,0,0,0,'',0,0,'1 1 244000 1 1 244000 44000 0 0 0 0 0 0 244000 44000 0 0 244000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 244000 1 1 1000 244000 1 1:5 244000 1 1:5 1 ');
INSERT INTO "document" VALUES(4,0,2,1,20240116103000,1,75000,0,0,5000,0,'',0,0,'1 1 75000 1 1 75000 13500 0 0 0 0 0 0 0 0 0 0 80000 0 0 0 5000 0 0 0 0 0 0 0 1 1 1000 75000 1 1 1000 75000 1 2:10 75000 1 2:10 1 ');
CREATE TABLE document_line (
  document INTEGER NOT NULL REFERENCES document (id), place INTEGER NOT NULL,
  kind INTEGER NOT NULL, adjustment_type INTEGER NOT NULL, description TEXT NOT NULL,
  article TEXT NOT NULL, department INTEGER NOT NULL, vat INTEGER NOT NULL,
  quantity INTEGER NOT NULL, unit_price INTEGER NOT NULL, amount INTEGER NOT NULL,
  quantity_taken_back INTEGER NOT NULL, taken_back INTEGER NOT NULL,
  PRIMARY KEY (document, place)) WITHOUT ROWID;
INSERT INTO "document_line" VALUES(1,1,0,0,'TAZZA','',1,1,1000,100000,100000,0,0);
INSERT INTO "document_line" VALUES(1,2,0,0,'REPARTO 2','',2,2,1000,55000,55000,0,0);
INSERT INTO "document_line" VALUES(1,3,1,0,'REPARTO 1','',1,1,1000,20000,20000,0,0);
INSERT INTO "document_line" VALUES(1,4,4,1,'','',0,1,0,10000,-10000,0,0);
INSERT INTO "document_line" VALUES(2,1,0,0,'REPARTO 1','',1,1,1000,40000,40000,0,0);
INSERT INTO "document_line" VALUES(3,1,0,0,'REPARTO 1','',1,1,1000,244000,244000,0,0);
INSERT INTO "document_line" VALUES(4,1,0,0,'REPARTO 1','',1,1,1000,80000,80000,0,0);
INSERT INTO "document_line" VALUES(4,2,4,1,'','',0,1,0,5000,-5000,0,0);
CREATE TABLE document_payment (
  document INTEGER NOT NULL REFERENCES document (id), place INTEGER NOT NULL,
  tender TEXT NOT NULL, amount INTEGER NOT NULL, PRIMARY KEY (document, place)) WITHOUT ROWID;
INSERT INTO "document_payment" VALUES(1,1,'0',200000);
INSERT INTO "document_payment" VALUES(2,1,'10',40000);
INSERT INTO "document_payment" VALUES(3,1,'5',244000);
INSERT INTO "document_payment" VALUES(4,1,'10',75000);
CREATE TABLE event (
  place INTEGER PRIMARY KEY, entry INTEGER NOT NULL, kind INTEGER NOT NULL,
  time INTEGER NOT NULL, subject TEXT NOT NULL, value TEXT NOT NULL, hash TEXT NOT NULL);
INSERT INTO "event" VALUES(1,0,1,20240115103000,'','0 1 0 0 6 0 0 0 1 1 0 0 1 2 0 0 1 3 0 0 1 4 0 0 1 5 0 0 1 0 0 ','92b526544c64c09e70157427ba1848fb4d9643e0d17c8cc9d9844ace33a361f2');
INSERT INTO "event" VALUES(2,0,2,20240115103000,'department','0: 64:bdab5915fc4be41bd0fc81e94ec568595f164bb2de4ccb128a76c7370d3ae03d ','e151a28053b6396d972d26da56dd705aa90cb0c6b3cd13ead9c8ab55d37f1e02');
INSERT INTO "event" VALUES(3,0,2,20240115103000,'device_option','0: 64:e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855 ','252e5e427dfcead2ed03b0271f6e8d89eff92b4dd2ace967bd7b8c59e99bb24d');
INSERT INTO "event" VALUES(4,0,2,20240115103000,'extended_departments','0: 1:1 ','937050ac5162bf17f9efeebf4c365d8a90e037cce11b6131b968fd34276b8cec');
INSERT INTO "event" VALUES(5,0,2,20240115103000,'firmware_version','0: 4:1.00 ','679d076a9ff43a7af1b77e1e94359039b02c822325d36fa35fc4178ae28b8b7d');
INSERT INTO "event" VALUES(6,0,2,20240115103000,'fiscal_id','0: 11:01234567897 ','ec8cf88cf4be5b744c482a1a21e65abac75e2b97c224807f5320e897e5a24649');
INSERT INTO "event" VALUES(7,0,2,20240115103000,'fixed_decimal_point','0: 1:0 ','d3a90121a7e69e81c1ffa14560399a6ebbb1fe0c9827a62ad09a4b993ef84e23');
INSERT INTO "event" VALUES(8,0,2,20240115103000,'groups','0: 2:10 ','06754c2b5c13183ef056698de384eab71eebce854d9ca709f07900fa55fc671e');
INSERT INTO "event" VALUES(9,0,2,20240115103000,'operator_group','0: 64:fe06b3ea8b093c82afd34702113a301b2d06a2d5c104ecb9b25169fe83965b3b ','4be3c8cd93f472106afbeaa73509684362a2e9ce84a76d70cd2feb79a0fe5a34');
INSERT INTO "event" VALUES(10,0,2,20240115103000,'operators','0: 2:10 ','9d5ab28465a7f97f6849d75155a297ed4b1d8cd4aff276ba38738109d6843060');
INSERT INTO "event" VALUES(11,0,2,20240115103000,'programming_needs_key','0: 1:0 ','b08b16f186dbde2888a9ec937a83195883dda17ccacf3a34493b7577ae37d632');
INSERT INTO "event" VALUES(12,0,2,20240115103000,'serial_number','0: 14:99LRM0000001VR ','ef0549fd7a18c4d5dbfd8e2cabf02708dcafeecaa549bbdd1ec193a4eda47320');
INSERT INTO "event" VALUES(13,0,2,20240115103000,'subtender','0: 64:78edc34288ec6d2b3ee6452ee91931f8fe619649b0bab35c140480cda3781870 ','7ca9747d99bf422b997462182af72e89d9e8705589d8077a6b3367429a2cfd2b');
INSERT INTO "event" VALUES(14,0,2,20240115103000,'vat_rate','0: 64:40c19a8b8dbdd1429395d39c75d816c73050675222ce29be5ba3fdc741cea184 ','07ca5196838ae00fdcfdd7de5e7043ef63cdb0662456a7a7ba01c169deae5170');
CREATE TABLE header_line (number INTEGER PRIMARY KEY, text TEXT NOT NULL);
INSERT INTO "header_line" VALUES(1,'NEGOZIO DI PROVA');
INSERT INTO "header_line" VALUES(2,'Via Esempio 1 - 00100 ROMA');
INSERT INTO "header_line" VALUES(3,'P.IVA 01234567897');
CREATE TABLE journal (
  place INTEGER PRIMARY KEY, kind INTEGER NOT NULL, closure INTEGER NOT NULL,
  number INTEGER NOT NULL, time INTEGER NOT NULL, document INTEGER NOT NULL,
  lines TEXT NOT NULL, hash TEXT NOT NULL);
INSERT INTO "journal" VALUES(1,2,1,1,20240115103000,1,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
TAZZA                      22%       10,00
SCONTO                     22%       -1,00
REPARTO 2                  10%        5,50
RESO REPARTO 1             22%       -2,00

TOTALE COMPLESSIVO                   12,50
di cui IVA                            1,76

Pagamento contante                   20,00
Resto                                 7,50
Importo pagato                       12,50

             15/01/2024 10:30
          DOCUMENTO N. 0001-0001
            RT 99LRM0000001VR
------------------------------------------
','4fa96e91537d934287fd8dd4befbdb8d47a378f2d1cd7fba17263ef8ff7ca58c');
INSERT INTO "journal" VALUES(2,2,1,2,20240115103000,2,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        4,00

TOTALE COMPLESSIVO                    4,00
di cui IVA                            0,72

Pagamento elettronico 01              4,00
Importo pagato                        4,00

             15/01/2024 10:30
          DOCUMENTO N. 0001-0002
            RT 99LRM0000001VR
------------------------------------------
','8b3d6026a35d095280cabd9b119c220602ebd6ee4b1bc216015acaeb215d50de');
INSERT INTO "journal" VALUES(3,4,1,1,20240115103000,3,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

                 FATTURA

ROSSI

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%       24,40

TOTALE COMPLESSIVO                   24,40
di cui IVA                            4,40

IVA              Imponibile        Imposta
22%                   20,00           4,40

Non riscosso fatture                 24,40
Importo pagato                        0,00

             15/01/2024 10:30
               FATTURA N. 1
            RT 99LRM0000001VR
------------------------------------------
','3e090b9963c696ee10253e6941dfefbd413c6c8192c261c56b9e64d82ef8b492');
INSERT INTO "journal" VALUES(4,64,1,0,20240115103000,0,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

           CHIUSURA GIORNALIERA

Documenti                                2
Fatture                                  1
Documenti annullati in corso             0
Documenti di vendita                     2
Vendite                              40,90
Resi                                  0,00
Annulli                               0,00
Totale non riscosso                  24,40
  di cui con fattura a seguire       24,40
TOTALE GIORNALIERO                   40,90
GRAN TOTALE                          40,90
Progressivo vendite                  40,90
Progressivo resi                      0,00
Progressivo annulli                   0,00

PAGAMENTI
Pagamento contante                   12,50
Non riscosso fatture                 24,40
Pagamento elettronico 01              4,00

IVA
Totale 22%                           35,40
Imponibile 22%                       29,02
Imposta 22%                           6,38
Sconti 22%                            1,00
Resi di riga 22%                      2,00
Totale 10%                            5,50
Imponibile 10%                        5,00
Imposta 10%                           0,50

             15/01/2024 10:30
             CHIUSURA N. 0001
            RT 99LRM0000001VR
------------------------------------------
','f70ed1f1da66aa90aa10c26667a7a8e023742be3df42fdaef3571e1f748e96e4');
INSERT INTO "journal" VALUES(5,2,2,1,20240116103000,4,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        8,00
SCONTO                     22%       -0,50

TOTALE COMPLESSIVO                    7,50
di cui IVA                            1,35

Pagamento elettronico 01              7,50
Importo pagato                        7,50

             16/01/2024 10:30
          DOCUMENTO N. 0002-0001
            RT 99LRM0000001VR
------------------------------------------
','d933add3c23b8e821c1f78f7830a377f398045f2844968ffd2515f321da847e8');
CREATE TABLE ledger (
  id INTEGER PRIMARY KEY CHECK (id = 1), last_closure INTEGER NOT NULL,
  next_invoice INTEGER NOT NULL, documents INTEGER NOT NULL, sales INTEGER NOT NULL,
  invoices INTEGER NOT NULL, refunds INTEGER NOT NULL, cancels INTEGER NOT NULL,
  abandoned INTEGER NOT NULL, non_fiscal INTEGER NOT NULL, grand_total INTEGER NOT NULL,
  last_document INTEGER NOT NULL, first_of_day INTEGER NOT NULL, day_totals TEXT NOT NULL,
  journal_place INTEGER NOT NULL, journal_hash TEXT NOT NULL);
INSERT INTO "ledger" VALUES(1,1,2,1,1,0,0,0,0,0,484000,4,4,'1 75000 0 5000 0 1 1 75000 13500 0 0 0 0 0 0 0 0 0 0 80000 0 0 0 5000 0 0 0 0 0 0 0 1 1 1000 75000 1 1 1000 75000 1 2:10 75000 1 2:10 1 1 1 75000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ',5,'d933add3c23b8e821c1f78f7830a377f398045f2844968ffd2515f321da847e8');
CREATE TABLE logo (number INTEGER PRIMARY KEY, file TEXT NOT NULL);
CREATE TABLE lottery_waiting (document INTEGER PRIMARY KEY REFERENCES document (id));
CREATE TABLE open_document (
  id INTEGER PRIMARY KEY CHECK (id = 1), state INTEGER NOT NULL, kind INTEGER NOT NULL,
  begun INTEGER NOT NULL, lines INTEGER NOT NULL, subtotal INTEGER NOT NULL,
  notes TEXT NOT NULL);
CREATE TABLE operator_group (
  number INTEGER PRIMARY KEY, description TEXT NOT NULL, password TEXT NOT NULL,
  flags INTEGER NOT NULL, options INTEGER NOT NULL);
INSERT INTO "operator_group" VALUES(1,'GRUPPO 1','',0,0);
INSERT INTO "operator_group" VALUES(2,'GRUPPO 2','',0,0);
INSERT INTO "operator_group" VALUES(3,'GRUPPO 3','',0,0);
INSERT INTO "operator_group" VALUES(4,'GRUPPO 4','',0,0);
INSERT INTO "operator_group" VALUES(5,'GRUPPO 5','',0,0);
INSERT INTO "operator_group" VALUES(6,'GRUPPO 6','',0,0);
INSERT INTO "operator_group" VALUES(7,'GRUPPO 7','',0,0);
INSERT INTO "operator_group" VALUES(8,'GRUPPO 8','',0,0);
INSERT INTO "operator_group" VALUES(9,'GRUPPO 9','',0,0);
INSERT INTO "operator_group" VALUES(10,'GRUPPO 10','',0,0);
INSERT INTO "operator_group" VALUES(11,'OPERATORE 1','',0,0);
INSERT INTO "operator_group" VALUES(12,'OPERATORE 2','',0,0);
INSERT INTO "operator_group" VALUES(13,'OPERATORE 3','',0,0);
INSERT INTO "operator_group" VALUES(14,'OPERATORE 4','',0,0);
INSERT INTO "operator_group" VALUES(15,'OPERATORE 5','',0,0);
INSERT INTO "operator_group" VALUES(16,'OPERATORE 6','',0,0);
INSERT INTO "operator_group" VALUES(17,'OPERATORE 7','',0,0);
INSERT INTO "operator_group" VALUES(18,'OPERATORE 8','',0,0);
INSERT INTO "operator_group" VALUES(19,'OPERATORE 9','',0,0);
INSERT INTO "operator_group" VALUES(20,'OPERATORE 10','',0,0);
CREATE TABLE period (
  number INTEGER PRIMARY KEY, cleared INTEGER NOT NULL, time INTEGER NOT NULL,
  first_document INTEGER NOT NULL, totals TEXT NOT NULL);
INSERT INTO "period" VALUES(0,0,0,1,'2 165000 0 10000 0 2 1 110000 19800 0 0 0 0 0 0 0 0 0 0 140000 0 20000 0 10000 0 0 0 0 0 0 0 2 55000 5000 0 0 0 0 0 0 0 0 0 0 55000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 110000 2 1000 55000 2 1 2000 130000 2 1000 55000 2 1:0 125000 2:10 40000 2 1:0 1 2:10 1 1 1 165000 1 1 2 1 244000 244000 0 0 1 1 244000 44000 0 0 0 0 0 0 244000 44000 0 0 244000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 244000 1 1 1000 244000 1 1:5 244000 1 1:5 1 1 1 244000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "period" VALUES(1,0,0,1,'2 165000 0 10000 0 2 1 110000 19800 0 0 0 0 0 0 0 0 0 0 140000 0 20000 0 10000 0 0 0 0 0 0 0 2 55000 5000 0 0 0 0 0 0 0 0 0 0 55000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 110000 2 1000 55000 2 1 2000 130000 2 1000 55000 2 1:0 125000 2:10 40000 2 1:0 1 2:10 1 1 1 165000 1 1 2 1 244000 244000 0 0 1 1 244000 44000 0 0 0 0 0 0 244000 44000 0 0 244000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 244000 1 1 1000 244000 1 1:5 244000 1 1:5 1 1 1 244000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "period" VALUES(2,0,0,1,'2 165000 0 10000 0 2 1 110000 19800 0 0 0 0 0 0 0 0 0 0 140000 0 20000 0 10000 0 0 0 0 0 0 0 2 55000 5000 0 0 0 0 0 0 0 0 0 0 55000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 110000 2 1000 55000 2 1 2000 130000 2 1000 55000 2 1:0 125000 2:10 40000 2 1:0 1 2:10 1 1 1 165000 1 1 2 1 244000 244000 0 0 1 1 244000 44000 0 0 0 0 0 0 244000 44000 0 0 244000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 244000 1 1 1000 244000 1 1:5 244000 1 1:5 1 1 1 244000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "period" VALUES(3,0,0,1,'2 165000 0 10000 0 2 1 110000 19800 0 0 0 0 0 0 0 0 0 0 140000 0 20000 0 10000 0 0 0 0 0 0 0 2 55000 5000 0 0 0 0 0 0 0 0 0 0 55000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 110000 2 1000 55000 2 1 2000 130000 2 1000 55000 2 1:0 125000 2:10 40000 2 1:0 1 2:10 1 1 1 165000 1 1 2 1 244000 244000 0 0 1 1 244000 44000 0 0 0 0 0 0 244000 44000 0 0 244000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 244000 1 1 1000 244000 1 1:5 244000 1 1:5 1 1 1 244000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "period" VALUES(4,0,0,1,'2 165000 0 10000 0 2 1 110000 19800 0 0 0 0 0 0 0 0 0 0 140000 0 20000 0 10000 0 0 0 0 0 0 0 2 55000 5000 0 0 0 0 0 0 0 0 0 0 55000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 110000 2 1000 55000 2 1 2000 130000 2 1000 55000 2 1:0 125000 2:10 40000 2 1:0 1 2:10 1 1 1 165000 1 1 2 1 244000 244000 0 0 1 1 244000 44000 0 0 0 0 0 0 244000 44000 0 0 244000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 244000 1 1 1000 244000 1 1:5 244000 1 1:5 1 1 1 244000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "period" VALUES(5,0,0,1,'2 165000 0 10000 0 2 1 110000 19800 0 0 0 0 0 0 0 0 0 0 140000 0 20000 0 10000 0 0 0 0 0 0 0 2 55000 5000 0 0 0 0 0 0 0 0 0 0 55000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 110000 2 1000 55000 2 1 2000 130000 2 1000 55000 2 1:0 125000 2:10 40000 2 1:0 1 2:10 1 1 1 165000 1 1 2 1 244000 244000 0 0 1 1 244000 44000 0 0 0 0 0 0 244000 44000 0 0 244000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 244000 1 1 1000 244000 1 1:5 244000 1 1:5 1 1 1 244000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
CREATE TABLE programmed_key (
  keyboard INTEGER NOT NULL, position INTEGER NOT NULL, code INTEGER NOT NULL,
  macro TEXT NOT NULL, PRIMARY KEY (keyboard, position)) WITHOUT ROWID;
CREATE TABLE roll (
  first_line INTEGER PRIMARY KEY, lines INTEGER NOT NULL, text TEXT NOT NULL,
  rows TEXT NOT NULL);
INSERT INTO "roll" VALUES(0,8,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
','');
INSERT INTO "roll" VALUES(8,1,'TAZZA                      22%       10,00
','');
INSERT INTO "roll" VALUES(9,1,'SCONTO                     22%       -1,00
','');
INSERT INTO "roll" VALUES(10,1,'REPARTO 2                  10%        5,50
','');
INSERT INTO "roll" VALUES(11,1,'RESO REPARTO 1             22%       -2,00
','');
INSERT INTO "roll" VALUES(12,12,'
TOTALE COMPLESSIVO                   12,50
di cui IVA                            1,76

Pagamento contante                   20,00
Resto                                 7,50
Importo pagato                       12,50

             15/01/2024 10:30
          DOCUMENTO N. 0001-0001
            RT 99LRM0000001VR
------------------------------------------
','11 1 0 ');
INSERT INTO "roll" VALUES(24,8,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
','');
INSERT INTO "roll" VALUES(32,1,'REPARTO 1                  22%        4,00
','');
INSERT INTO "roll" VALUES(33,11,'
TOTALE COMPLESSIVO                    4,00
di cui IVA                            0,72

Pagamento elettronico 01              4,00
Importo pagato                        4,00

             15/01/2024 10:30
          DOCUMENTO N. 0001-0002
            RT 99LRM0000001VR
------------------------------------------
','10 1 0 ');
INSERT INTO "roll" VALUES(44,9,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

                 FATTURA

ROSSI

DESCRIZIONE                IVA Prezzo(EUR)
','');
INSERT INTO "roll" VALUES(53,1,'REPARTO 1                  22%       24,40
','');
INSERT INTO "roll" VALUES(54,14,'
TOTALE COMPLESSIVO                   24,40
di cui IVA                            4,40

IVA              Imponibile        Imposta
22%                   20,00           4,40

Non riscosso fatture                 24,40
Importo pagato                        0,00

             15/01/2024 10:30
               FATTURA N. 1
            RT 99LRM0000001VR
------------------------------------------
','13 1 0 ');
INSERT INTO "roll" VALUES(68,49,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

             LETTURA GENERALE
               non fiscale

Documenti                                2
Fatture                                  1
Documenti annullati in corso             0
Documenti di vendita                     2
Vendite                              40,90
Resi                                  0,00
Annulli                               0,00
Totale non riscosso                  24,40
  di cui con fattura a seguire       24,40
TOTALE GIORNALIERO                   40,90
GRAN TOTALE                          40,90
Progressivo vendite                  40,90
Progressivo resi                      0,00
Progressivo annulli                   0,00

PAGAMENTI
Pagamento contante                   12,50
Non riscosso fatture                 24,40
Pagamento elettronico 01              4,00

IVA
Totale 22%                           35,40
Imponibile 22%                       29,02
Imposta 22%                           6,38
Sconti 22%                            1,00
Resi di riga 22%                      2,00
Totale 10%                            5,50
Imponibile 10%                        5,00
Imposta 10%                           0,50

REPARTI
01 REPARTO 1                         35,40
  venduto pezzi 3,000                37,40
02 REPARTO 2                          5,50
  venduto pezzi 1,000                 5,50

OPERATORI
01 documenti 3                       40,90

             15/01/2024 10:30
            RT 99LRM0000001VR
------------------------------------------
','48 1 0 ');
INSERT INTO "roll" VALUES(117,40,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

           CHIUSURA GIORNALIERA

Documenti                                2
Fatture                                  1
Documenti annullati in corso             0
Documenti di vendita                     2
Vendite                              40,90
Resi                                  0,00
Annulli                               0,00
Totale non riscosso                  24,40
  di cui con fattura a seguire       24,40
TOTALE GIORNALIERO                   40,90
GRAN TOTALE                          40,90
Progressivo vendite                  40,90
Progressivo resi                      0,00
Progressivo annulli                   0,00

PAGAMENTI
Pagamento contante                   12,50
Non riscosso fatture                 24,40
Pagamento elettronico 01              4,00

IVA
Totale 22%                           35,40
Imponibile 22%                       29,02
Imposta 22%                           6,38
Sconti 22%                            1,00
Resi di riga 22%                      2,00
Totale 10%                            5,50
Imponibile 10%                        5,00
Imposta 10%                           0,50

             15/01/2024 10:30
             CHIUSURA N. 0001
            RT 99LRM0000001VR
------------------------------------------
','39 1 0 ');
INSERT INTO "roll" VALUES(157,8,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
','');
INSERT INTO "roll" VALUES(165,1,'REPARTO 1                  22%        8,00
','');
INSERT INTO "roll" VALUES(166,1,'SCONTO                     22%       -0,50
','');
INSERT INTO "roll" VALUES(167,11,'
TOTALE COMPLESSIVO                    7,50
di cui IVA                            1,35

Pagamento elettronico 01              7,50
Importo pagato                        7,50

             16/01/2024 10:30
          DOCUMENTO N. 0002-0001
            RT 99LRM0000001VR
------------------------------------------
','10 1 0 ');
CREATE TABLE setting (name TEXT PRIMARY KEY, value NOT NULL) WITHOUT ROWID;
INSERT INTO "setting" VALUES('answer_due','0');
INSERT INTO "setting" VALUES('extended_departments',1);
INSERT INTO "setting" VALUES('firmware_version','1.00');
INSERT INTO "setting" VALUES('fiscal_id','01234567897');
INSERT INTO "setting" VALUES('fixed_decimal_point',0);
INSERT INTO "setting" VALUES('groups',10);
INSERT INTO "setting" VALUES('operators',10);
INSERT INTO "setting" VALUES('programming_needs_key',0);
INSERT INTO "setting" VALUES('serial_number','99LRM0000001VR');
CREATE TABLE subtender (
  number INTEGER PRIMARY KEY, kind INTEGER NOT NULL, description TEXT NOT NULL,
  flags INTEGER NOT NULL, preset_value INTEGER NOT NULL, max_digits INTEGER NOT NULL);
INSERT INTO "subtender" VALUES(1,1,'',0,0,0);
INSERT INTO "subtender" VALUES(2,1,'',0,0,0);
INSERT INTO "subtender" VALUES(3,1,'',0,0,0);
INSERT INTO "subtender" VALUES(4,1,'',0,0,0);
INSERT INTO "subtender" VALUES(5,1,'',0,0,0);
INSERT INTO "subtender" VALUES(6,1,'',0,0,0);
INSERT INTO "subtender" VALUES(7,1,'',0,0,0);
INSERT INTO "subtender" VALUES(8,1,'',0,0,0);
INSERT INTO "subtender" VALUES(9,1,'',0,0,0);
INSERT INTO "subtender" VALUES(10,1,'',0,0,0);
INSERT INTO "subtender" VALUES(11,1,'',0,0,0);
INSERT INTO "subtender" VALUES(12,1,'',0,0,0);
INSERT INTO "subtender" VALUES(13,1,'',0,0,0);
INSERT INTO "subtender" VALUES(14,1,'',0,0,0);
INSERT INTO "subtender" VALUES(15,1,'',0,0,0);
INSERT INTO "subtender" VALUES(16,1,'',0,0,0);
INSERT INTO "subtender" VALUES(17,1,'',0,0,0);
INSERT INTO "subtender" VALUES(18,1,'',0,0,0);
INSERT INTO "subtender" VALUES(19,1,'',0,0,0);
INSERT INTO "subtender" VALUES(20,1,'',0,0,0);
CREATE TABLE summary_waiting (closure INTEGER PRIMARY KEY REFERENCES closure (number));
INSERT INTO "summary_waiting" VALUES(1);
CREATE TABLE vat_rate (number INTEGER PRIMARY KEY, rate INTEGER NOT NULL, mark TEXT NOT NULL);
INSERT INTO "vat_rate" VALUES(1,220000,'');
INSERT INTO "vat_rate" VALUES(2,100000,'');
INSERT INTO "vat_rate" VALUES(3,50000,'');
INSERT INTO "vat_rate" VALUES(4,40000,'');
INSERT INTO "vat_rate" VALUES(5,0,'ES*');
CREATE INDEX document_by_number ON document (closure, number) WHERE kind <> 1;
CREATE INDEX document_by_time ON document (time);
CREATE INDEX document_that_refers ON document (referred_closure, referred_number, kind)
  WHERE referred_closure <> 0;
CREATE INDEX document_of_lottery ON document (closure, number) WHERE lottery_code <> '';
CREATE INDEX closure_by_time ON closure (time);
CREATE INDEX journal_by_closure ON journal (closure);
CREATE INDEX journal_by_time ON journal (time);
COMMIT;
