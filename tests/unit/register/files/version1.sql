PRAGMA application_id = 1280135750;
PRAGMA user_version = 1;
BEGIN TRANSACTION;
CREATE TABLE article (
  place INTEGER PRIMARY KEY, code TEXT NOT NULL UNIQUE, description TEXT NOT NULL,
  department INTEGER NOT NULL, price INTEGER NOT NULL);
INSERT INTO "article" VALUES(1,'8001','LATTE',4,15000);
INSERT INTO "article" VALUES(2,'FREE','SENZA PREZZO',1,0);
CREATE TABLE closure (
  number INTEGER PRIMARY KEY, time INTEGER NOT NULL, documents INTEGER NOT NULL,
  sales INTEGER NOT NULL, invoices INTEGER NOT NULL, refunds INTEGER NOT NULL,
  cancels INTEGER NOT NULL, abandoned INTEGER NOT NULL, non_fiscal INTEGER NOT NULL,
  grand_total INTEGER NOT NULL, vat_rates TEXT NOT NULL, totals TEXT NOT NULL);
INSERT INTO "closure" VALUES(1,20240115103000,7,5,1,1,1,1,2,185000,'5 220000 0: 100000 0: 50000 0: 40000 0: 0 3:ES* ','5 254000 0 1000 0 3 1 190000 34200 0 0 0 0 0 0 0 0 0 0 190000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 5000 200 0 0 0 0 0 0 0 0 0 0 15000 10000 0 0 0 0 0 0 0 0 0 0 3 1 4000 190000 2 2000 59000 3 1000 5000 3 1 4000 190000 2 2000 59000 3 1000 5000 2 1:0 194000 1:2 60000 2 1:0 3 1:2 3 1 1 254000 1 1 5 1 70000 70000 0 0 1 2 70000 6400 0 0 0 0 0 0 70000 6400 0 0 70000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 70000 1 2 1000 70000 1 1:5 70000 1 1:5 1 1 1 70000 1 1 1 1 30000 0 0 0 1 1 30000 5400 0 0 0 0 0 0 0 0 0 0 30000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 30000 1 1 1000 30000 1 1:0 30000 1 1:0 1 1 1 30000 1 1 1 1 109000 0 1000 0 3 1 50000 9000 0 0 0 0 0 0 0 0 0 0 50000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 10000 10000 0 0 0 0 0 0 0 0 0 0 3 1 1000 50000 2 2000 59000 3 0 0 3 1 1000 50000 2 2000 59000 3 0 0 2 1:0 89000 1:2 20000 2 1:0 1 1:2 1 1 1 109000 1 1 1 ');
INSERT INTO "closure" VALUES(2,20240115103000,2,2,1,0,0,0,0,242000,'5 220000 0: 100000 0: 60000 0: 40000 0: 0 3:ES* ','2 45000 0 0 0 2 1 20000 3600 0 0 0 0 0 0 0 0 0 0 20000 0 0 0 0 0 0 0 0 0 0 0 2 25000 2300 0 0 0 0 0 0 0 0 0 0 25000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 20000 2 1000 25000 2 1 1000 20000 2 1000 25000 2 1:0 25000 1:2 20000 2 1:0 1 1:2 1 1 1 45000 1 1 2 1 12000 12000 0 0 1 2 12000 1100 0 0 0 0 0 0 12000 1100 0 0 12000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 12000 1 2 1000 12000 1 1:5 12000 1 1:5 1 1 1 12000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "closure" VALUES(3,20240115103000,0,0,0,0,0,0,0,242000,'5 220000 0: 100000 0: 60000 0: 40000 0: 0 3:ES* ','0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
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
INSERT INTO "department" VALUES(7,'FRUTTA',2,12300,9990000,4,3,1,0,1,1);
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
INSERT INTO "document" VALUES(1,0,1,1,20240115103000,1,100000,0,0,0,0,'',0,0,'1 1 100000 1 1 100000 18000 0 0 0 0 0 0 0 0 0 0 100000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 100000 1 1 1000 100000 1 1:0 100000 1 1:0 1 ');
INSERT INTO "document" VALUES(2,0,1,2,20240115103000,1,109000,0,111000,1000,0,'',0,0,'3 1 50000 2 59000 3 0 3 1 50000 9000 0 0 0 0 0 0 0 0 0 0 50000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 10000 10000 0 0 0 0 0 0 0 0 0 0 3 1 1000 50000 2 2000 59000 3 0 0 3 1 1000 50000 2 2000 59000 3 0 0 2 1:0 89000 1:2 20000 2 1:0 1 1:2 1 ');
INSERT INTO "document" VALUES(3,0,1,3,20240115103000,1,20000,0,0,0,0,'AB12CD34',0,0,'1 1 20000 1 1 20000 3600 0 0 0 0 0 0 0 0 0 0 20000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 20000 1 1 1000 20000 1 1:2 20000 1 1:2 1 ');
INSERT INTO "document" VALUES(4,0,1,4,20240115103000,1,20000,0,0,0,0,'EF56GH78',0,0,'1 1 20000 1 1 20000 3600 0 0 0 0 0 0 0 0 0 0 20000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 20000 1 1 1000 20000 1 1:2 20000 1 1:2 1 ');
INSERT INTO "document" VALUES(5,1,1,1,20240115103000,1,70000,70000,0,0,0,'',0,0,'1 2 70000 1 2 70000 6400 0 0 0 0 0 0 70000 6400 0 0 70000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 70000 1 2 1000 70000 1 1:5 70000 1 1:5 1 ');
INSERT INTO "document" VALUES(6,2,1,5,20240115103000,1,30000,0,0,0,0,'',1,1,'1 1 30000 1 1 30000 5400 0 0 0 0 0 0 0 0 0 0 30000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 30000 1 1 1000 30000 1 1:0 30000 1 1:0 1 ');
INSERT INTO "document" VALUES(7,3,1,6,20240115103000,1,109000,0,0,1000,0,'',1,2,'3 1 50000 2 59000 3 0 3 1 50000 9000 0 0 0 0 0 0 0 0 0 0 50000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 10000 10000 0 0 0 0 0 0 0 0 0 0 3 1 1000 50000 2 2000 59000 3 0 0 3 1 1000 50000 2 2000 59000 3 0 0 2 1:0 89000 1:2 20000 2 1:0 1 1:2 1 ');
INSERT INTO "document" VALUES(8,0,1,7,20240115103000,1,5000,0,0,0,0,'',0,0,'1 3 5000 1 3 5000 200 0 0 0 0 0 0 0 0 0 0 5000 0 0 0 0 0 0 0 0 0 0 0 1 3 1000 5000 1 3 1000 5000 1 1:0 5000 1 1:0 1 ');
INSERT INTO "document" VALUES(9,0,2,1,20240115103000,1,25000,0,0,0,0,'',0,0,'1 2 25000 1 2 25000 2300 0 0 0 0 0 0 0 0 0 0 25000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 25000 1 2 1000 25000 1 1:0 25000 1 1:0 1 ');
INSERT INTO "document" VALUES(10,0,2,2,20240115103000,1,20000,0,0,0,0,'IJ90KL12',0,0,'1 1 20000 1 1 20000 3600 0 0 0 0 0 0 0 0 0 0 20000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 20000 1 1 1000 20000 1 1:2 20000 1 1:2 1 ');
INSERT INTO "document" VALUES(11,1,2,41,20240115103000,1,12000,12000,0,0,0,'',0,0,'1 2 12000 1 2 12000 1100 0 0 0 0 0 0 12000 1100 0 0 12000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 12000 1 2 1000 12000 1 1:5 12000 1 1:5 1 ');
INSERT INTO "document" VALUES(12,0,4,1,20240115103000,1,20000,0,0,0,0,'',0,0,'1 1 20000 1 1 20000 3600 0 0 0 0 0 0 0 0 0 0 20000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 20000 1 1 1000 20000 1 1:0 20000 1 1:0 1 ');
INSERT INTO "document" VALUES(13,0,4,2,20240115103000,1,109000,0,111000,1000,0,'',0,0,'3 1 50000 2 59000 3 0 3 1 50000 9000 0 0 0 0 0 0 0 0 0 0 50000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 10000 10000 0 0 0 0 0 0 0 0 0 0 3 1 1000 50000 2 2000 59000 3 0 0 3 1 1000 50000 2 2000 59000 3 0 0 2 1:0 89000 1:2 20000 2 1:0 1 1:2 1 ');
INSERT INTO "document" VALUES(14,0,4,3,20240115103000,1,20000,0,0,0,0,'MN34OP56',0,0,'1 1 20000 1 1 20000 3600 0 0 0 0 0 0 0 0 0 0 20000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 20000 1 1 1000 20000 1 1:2 20000 1 1:2 1 ');
INSERT INTO "document" VALUES(15,1,4,42,20240115103000,1,15000,15000,0,0,0,'',0,0,'1 2 15000 1 2 15000 1400 0 0 0 0 0 0 15000 1400 0 0 15000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 15000 1 2 1000 15000 1 1:5 15000 1 1:5 1 ');
CREATE TABLE document_line (
  document INTEGER NOT NULL REFERENCES document (id), place INTEGER NOT NULL,
  kind INTEGER NOT NULL, adjustment_type INTEGER NOT NULL, description TEXT NOT NULL,
  article TEXT NOT NULL, department INTEGER NOT NULL, vat INTEGER NOT NULL,
  quantity INTEGER NOT NULL, unit_price INTEGER NOT NULL, amount INTEGER NOT NULL,
  quantity_taken_back INTEGER NOT NULL, taken_back INTEGER NOT NULL,
  PRIMARY KEY (document, place)) WITHOUT ROWID;
INSERT INTO "document_line" VALUES(1,1,0,0,'REPARTO 1','',1,1,1000,100000,100000,0,0);
INSERT INTO "document_line" VALUES(2,1,0,0,'PANE','',1,1,1000,50000,50000,0,0);
INSERT INTO "document_line" VALUES(2,2,0,0,'VINO','',2,2,1000,30000,30000,0,0);
INSERT INTO "document_line" VALUES(2,3,0,0,'VINO','',2,2,1000,30000,30000,0,0);
INSERT INTO "document_line" VALUES(2,4,0,0,'REPARTO 3','',3,3,1000,10000,10000,1000,10000);
INSERT INTO "document_line" VALUES(2,5,4,1,'','',0,2,0,1000,-1000,0,0);
INSERT INTO "document_line" VALUES(3,1,0,0,'REPARTO 1','',1,1,1000,20000,20000,0,0);
INSERT INTO "document_line" VALUES(4,1,0,0,'REPARTO 1','',1,1,1000,20000,20000,0,0);
INSERT INTO "document_line" VALUES(5,1,0,0,'REPARTO 2','',2,2,1000,70000,70000,0,0);
INSERT INTO "document_line" VALUES(6,1,0,0,'REPARTO 1','',1,1,1000,30000,30000,0,0);
INSERT INTO "document_line" VALUES(7,1,0,0,'PANE','',1,1,1000,50000,50000,0,0);
INSERT INTO "document_line" VALUES(7,2,0,0,'VINO','',2,2,1000,30000,30000,0,0);
INSERT INTO "document_line" VALUES(7,3,0,0,'VINO','',2,2,1000,30000,30000,0,0);
INSERT INTO "document_line" VALUES(7,4,0,0,'REPARTO 3','',3,3,1000,10000,10000,1000,10000);
INSERT INTO "document_line" VALUES(7,5,4,1,'','',0,2,0,1000,-1000,0,0);
INSERT INTO "document_line" VALUES(8,1,0,0,'REPARTO 3','',3,3,1000,5000,5000,0,0);
INSERT INTO "document_line" VALUES(9,1,0,0,'REPARTO 2','',2,2,1000,25000,25000,0,0);
INSERT INTO "document_line" VALUES(10,1,0,0,'REPARTO 1','',1,1,1000,20000,20000,0,0);
INSERT INTO "document_line" VALUES(11,1,0,0,'REPARTO 2','',2,2,1000,12000,12000,0,0);
INSERT INTO "document_line" VALUES(12,1,0,0,'REPARTO 1','',1,1,1000,20000,20000,0,0);
INSERT INTO "document_line" VALUES(13,1,0,0,'PANE','',1,1,1000,50000,50000,0,0);
INSERT INTO "document_line" VALUES(13,2,0,0,'VINO','',2,2,1000,30000,30000,0,0);
INSERT INTO "document_line" VALUES(13,3,0,0,'VINO','',2,2,1000,30000,30000,0,0);
INSERT INTO "document_line" VALUES(13,4,0,0,'REPARTO 3','',3,3,1000,10000,10000,1000,10000);
INSERT INTO "document_line" VALUES(13,5,4,1,'','',0,2,0,1000,-1000,0,0);
INSERT INTO "document_line" VALUES(14,1,0,0,'REPARTO 1','',1,1,1000,20000,20000,0,0);
INSERT INTO "document_line" VALUES(15,1,0,0,'REPARTO 2','',2,2,1000,15000,15000,0,0);
CREATE TABLE document_payment (
  document INTEGER NOT NULL REFERENCES document (id), place INTEGER NOT NULL,
  tender TEXT NOT NULL, amount INTEGER NOT NULL, PRIMARY KEY (document, place)) WITHOUT ROWID;
INSERT INTO "document_payment" VALUES(1,1,'0',100000);
INSERT INTO "document_payment" VALUES(2,1,'2',20000);
INSERT INTO "document_payment" VALUES(2,2,'0',200000);
INSERT INTO "document_payment" VALUES(3,1,'2',20000);
INSERT INTO "document_payment" VALUES(4,1,'2',20000);
INSERT INTO "document_payment" VALUES(5,1,'5',70000);
INSERT INTO "document_payment" VALUES(6,1,'0',30000);
INSERT INTO "document_payment" VALUES(7,1,'2',20000);
INSERT INTO "document_payment" VALUES(7,2,'0',89000);
INSERT INTO "document_payment" VALUES(8,1,'0',5000);
INSERT INTO "document_payment" VALUES(9,1,'0',25000);
INSERT INTO "document_payment" VALUES(10,1,'2',20000);
INSERT INTO "document_payment" VALUES(11,1,'5',12000);
INSERT INTO "document_payment" VALUES(12,1,'0',20000);
INSERT INTO "document_payment" VALUES(13,1,'2',20000);
INSERT INTO "document_payment" VALUES(13,2,'0',200000);
INSERT INTO "document_payment" VALUES(14,1,'2',20000);
INSERT INTO "document_payment" VALUES(15,1,'5',15000);
CREATE TABLE header_line (number INTEGER PRIMARY KEY, text TEXT NOT NULL);
INSERT INTO "header_line" VALUES(1,'NEGOZIO DI PROVA');
INSERT INTO "header_line" VALUES(2,'Via Esempio 1 - 00100 ROMA');
INSERT INTO "header_line" VALUES(3,'P.IVA 01234567897');
INSERT INTO "header_line" VALUES(4,'');
INSERT INTO "header_line" VALUES(5,'QUINTA');
CREATE TABLE journal (
  place INTEGER PRIMARY KEY, kind INTEGER NOT NULL, closure INTEGER NOT NULL,
  number INTEGER NOT NULL, time INTEGER NOT NULL, document INTEGER NOT NULL,
  lines TEXT NOT NULL, hash TEXT NOT NULL);
INSERT INTO "journal" VALUES(1,2,1,1,20240115103000,1,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%       10,00

TOTALE COMPLESSIVO                   10,00
di cui IVA                            1,80

Pagamento contante                   10,00
Importo pagato                       10,00
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0001-0001
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','a30bdfac4d668a10d0b73f287fe6ee38ffb81556ac299fb6c84dde45d597bcb6');
INSERT INTO "journal" VALUES(2,2,1,2,20240115103000,2,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
PANE                       22%        5,00
VINO                       10%        3,00
VINO                       10%        3,00
SCONTO                     10%       -0,10
REPARTO 3                   5%        1,00
STORNO REPARTO 3            5%       -1,00

TOTALE COMPLESSIVO                   10,90
di cui IVA                            1,44

Pagamento elettronico                 2,00
Pagamento contante                   20,00
Resto                                11,10
Importo pagato                       10,90
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0001-0002
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','53a961c4d30017839625b6344cba8c231ecf3cd06019302543b195758e91edf8');
INSERT INTO "journal" VALUES(3,2,1,3,20240115103000,3,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        2,00

TOTALE COMPLESSIVO                    2,00
di cui IVA                            0,36

Pagamento elettronico                 2,00
Importo pagato                        2,00
Codice lotteria: AB12CD34
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0001-0003
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','38d47023637168b3610dbf5398274f3d6cf5b41357036e7d1d74948a11549619');
INSERT INTO "journal" VALUES(4,2,1,4,20240115103000,4,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        2,00

TOTALE COMPLESSIVO                    2,00
di cui IVA                            0,36

Pagamento elettronico                 2,00
Importo pagato                        2,00
Codice lotteria: EF56GH78
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0001-0004
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','7b9a09b848674ca8a5bdeb388b89f8dd610e0f4bc8a826672889243830baa8da');
INSERT INTO "journal" VALUES(5,4,1,1,20240115103000,5,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

                 FATTURA

ROSSI

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 2                  10%        7,00

TOTALE COMPLESSIVO                    7,00
di cui IVA                            0,64

Non riscosso fatture                  7,00
Importo pagato                        0,00
                  GRAZIE

             15/01/2024 10:30
             FATTURA N. 1/B/2
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','1713709d7340de1064dc9d27dafd2ae0ee59046987efd447ac58abf0d88ba185');
INSERT INTO "journal" VALUES(6,8,1,5,20240115103000,6,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
          emesso per RESO MERCE

Documento di riferimento: 0001-0001

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        3,00

TOTALE COMPLESSIVO                    3,00
di cui IVA                            0,54

Pagamento contante                    3,00
Importo pagato                        3,00
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0001-0005
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','d14a6ab4d1eda82de59d5ddc63729585d023315542a4e9ca05d0babb1ce869eb');
INSERT INTO "journal" VALUES(7,16,1,6,20240115103000,7,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         emesso per ANNULLAMENTO

Documento di riferimento: 0001-0002
del 15/01/2024

DESCRIZIONE                IVA Prezzo(EUR)
VENDITA ANNULLATA          22%        5,00
VENDITA ANNULLATA          10%        5,90
VENDITA ANNULLATA           5%        0,00

TOTALE COMPLESSIVO                   10,90
di cui IVA                            1,44


             15/01/2024 10:30
          DOCUMENTO N. 0001-0006
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','6b3d2651f10ca15aa5cf3c455edbda4c1d98ca280d1dc466e8eaa7c0d57eeef3');
INSERT INTO "journal" VALUES(8,32,1,0,20240115103000,0,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        1,00

       *** DOCUMENTO ANNULLATO ***
             15/01/2024 10:30
------------------------------------------
','a63e7f2226479c26363ccada5bf75d6b403265f59b9619e82f1718adf5567996');
INSERT INTO "journal" VALUES(9,256,1,0,20240115103000,0,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

           DOCUMENTO GESTIONALE

PROVA

           DOCUMENTO GESTIONALE
             15/01/2024 10:30
------------------------------------------
','d3c36c752936e79703daa8cca4812a30c25ba6ded375e9c83fffc81fe4bd94c0');
INSERT INTO "journal" VALUES(10,2,1,7,20240115103000,8,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 3                   5%        0,50

TOTALE COMPLESSIVO                    0,50
di cui IVA                            0,02

Pagamento contante                    0,50
Importo pagato                        0,50
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0001-0007
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','974b537758c07ffc73256402150a78cf9fca97fa2d78fdc4afe3d1dc2da2a0e8');
INSERT INTO "journal" VALUES(11,64,1,0,20240115103000,0,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

           CHIUSURA GIORNALIERA

Documenti                                7
Fatture                                  1
Documenti annullati in corso             1
Vendite                              32,40
Resi                                  3,00
Annulli                              10,90
Non riscosso                          7,00
TOTALE GIORNALIERO                   18,50
GRAN TOTALE                          18,50

PAGAMENTI
Pagamento contante                    7,50
Pagamento elettronico                 4,00
Non riscosso fatture                  7,00

IVA
Totale 22%                           11,00
  di cui imposta                      1,98
Totale 10%                            7,00
  di cui imposta                      0,64
Totale 5%                             0,50
  di cui imposta                      0,02

             15/01/2024 10:30
             CHIUSURA N. 0001
            RT 99LRM0000001VR
------------------------------------------
','dfb4e781066f99cc687a92c983a7f520dbda002b732e1a5b6c695329ba329a91');
INSERT INTO "journal" VALUES(12,2,2,1,20240115103000,9,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 2                  10%        2,50

TOTALE COMPLESSIVO                    2,50
di cui IVA                            0,23

Pagamento contante                    2,50
Importo pagato                        2,50
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0002-0001
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','9b15491bad21e547b7a5bc8026048e3e1ff80d1ffbae883385dac8a7a3b55b16');
INSERT INTO "journal" VALUES(13,2,2,2,20240115103000,10,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        2,00

TOTALE COMPLESSIVO                    2,00
di cui IVA                            0,36

Pagamento elettronico                 2,00
Importo pagato                        2,00
Codice lotteria: IJ90KL12
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0002-0002
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','360bcc968bdd6d9636bd4f7fe2c23b402ed7d14e5c194b1154149a8ee7f7c5ab');
INSERT INTO "journal" VALUES(14,4,2,41,20240115103000,11,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

                 FATTURA

ROSSI

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 2                  10%        1,20

TOTALE COMPLESSIVO                    1,20
di cui IVA                            0,11

Non riscosso fatture                  1,20
Importo pagato                        0,00
                  GRAZIE

             15/01/2024 10:30
            FATTURA N. 41/B/2
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','a221d93c0e9b53dba85ab70ce107ba93ff48fa3eb7420f2bca7133c7057f3e6d');
INSERT INTO "journal" VALUES(15,64,2,0,20240115103000,0,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

           CHIUSURA GIORNALIERA

Documenti                                2
Fatture                                  1
Documenti annullati in corso             0
Vendite                               5,70
Resi                                  0,00
Annulli                               0,00
Non riscosso                          1,20
TOTALE GIORNALIERO                    5,70
GRAN TOTALE                          24,20

PAGAMENTI
Pagamento contante                    2,50
Pagamento elettronico                 2,00
Non riscosso fatture                  1,20

IVA
Totale 22%                            2,00
  di cui imposta                      0,36
Totale 10%                            3,70
  di cui imposta                      0,34

             15/01/2024 10:30
             CHIUSURA N. 0002
            RT 99LRM0000001VR
------------------------------------------
','e643abff04c24e94aeb79a2dba92c2d5aeb091b8b4c01a79d195b936666341cc');
INSERT INTO "journal" VALUES(16,64,3,0,20240115103000,0,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

           CHIUSURA GIORNALIERA

Documenti                                0
Fatture                                  0
Documenti annullati in corso             0
Vendite                               0,00
Resi                                  0,00
Annulli                               0,00
Non riscosso                          0,00
TOTALE GIORNALIERO                    0,00
GRAN TOTALE                          24,20

PAGAMENTI

IVA

             15/01/2024 10:30
             CHIUSURA N. 0003
            RT 99LRM0000001VR
------------------------------------------
','6de761c4a6843eb828522272208892c4f2c35c6a6b604bd4c9e41b047d08188c');
INSERT INTO "journal" VALUES(17,256,4,0,20240115103000,0,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

           DOCUMENTO GESTIONALE

PROVA

           DOCUMENTO GESTIONALE
             15/01/2024 10:30
------------------------------------------
','974d87a8abb2c9e8994098847abbc5495708c1e8c420ea6ebd7f4fd4dc0c3b57');
INSERT INTO "journal" VALUES(18,2,4,1,20240115103000,12,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        2,00

TOTALE COMPLESSIVO                    2,00
di cui IVA                            0,36

Pagamento contante                    2,00
Importo pagato                        2,00
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0004-0001
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','7af2f96eafbe24124ecd5d49a21c29d0ffa4bfa806708833eb4bf325d4e4f488');
INSERT INTO "journal" VALUES(19,2,4,2,20240115103000,13,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
PANE                       22%        5,00
VINO                       10%        3,00
VINO                       10%        3,00
SCONTO                     10%       -0,10
REPARTO 3                   6%        1,00
STORNO REPARTO 3            6%       -1,00

TOTALE COMPLESSIVO                   10,90
di cui IVA                            1,44

Pagamento elettronico                 2,00
Pagamento contante                   20,00
Resto                                11,10
Importo pagato                       10,90
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0004-0002
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','212fc0f25de892873b0b45ef22c51a32429c5b197d6ad35e56f21b3ca39cb7fe');
INSERT INTO "journal" VALUES(20,2,4,3,20240115103000,14,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        2,00

TOTALE COMPLESSIVO                    2,00
di cui IVA                            0,36

Pagamento elettronico                 2,00
Importo pagato                        2,00
Codice lotteria: MN34OP56
                  GRAZIE

             15/01/2024 10:30
          DOCUMENTO N. 0004-0003
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','437bfb5c48be625c238267729bd24f4356c0b8b381f0e1c12280cb37d4c68c78');
INSERT INTO "journal" VALUES(21,4,4,42,20240115103000,15,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

                 FATTURA

ROSSI

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 2                  10%        1,50

TOTALE COMPLESSIVO                    1,50
di cui IVA                            0,14

Non riscosso fatture                  1,50
Importo pagato                        0,00
                  GRAZIE

             15/01/2024 10:30
            FATTURA N. 42/B/2
              CASSA CASSA 3
              CASSIERE ANNA
            RT 99LRM0000001VR
               ARRIVEDERCI
------------------------------------------
','462a05a51401c5c0f0041b464ba2ff78e1cf979fd26c44a40cbdc9a582d6b42b');
INSERT INTO "journal" VALUES(22,32,4,0,20240115103000,0,'             NEGOZIO DI PROVA
        Via Esempio 1 - 00100 ROMA
            P.IVA 01234567897
                  QUINTA

          DOCUMENTO COMMERCIALE
         di vendita o prestazione

DESCRIZIONE                IVA Prezzo(EUR)
REPARTO 1                  22%        1,00

       *** DOCUMENTO ANNULLATO ***
             15/01/2024 10:30
------------------------------------------
','1359354d7c6a0a0836728c1ae322bac30dcd49621c92ee5ed6d25cee43fb4b73');
CREATE TABLE ledger (
  id INTEGER PRIMARY KEY CHECK (id = 1), last_closure INTEGER NOT NULL,
  next_invoice INTEGER NOT NULL, documents INTEGER NOT NULL, sales INTEGER NOT NULL,
  invoices INTEGER NOT NULL, refunds INTEGER NOT NULL, cancels INTEGER NOT NULL,
  abandoned INTEGER NOT NULL, non_fiscal INTEGER NOT NULL, grand_total INTEGER NOT NULL,
  last_document INTEGER NOT NULL, first_of_day INTEGER NOT NULL, day_totals TEXT NOT NULL,
  journal_place INTEGER NOT NULL, journal_hash TEXT NOT NULL);
INSERT INTO "ledger" VALUES(1,3,43,3,3,1,0,0,1,2,406000,15,12,'3 149000 0 1000 0 3 1 90000 16200 0 0 0 0 0 0 0 0 0 0 90000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 10000 10000 0 0 0 0 0 0 0 0 0 0 3 1 3000 90000 2 2000 59000 3 0 0 3 1 3000 90000 2 2000 59000 3 0 0 2 1:0 109000 1:2 40000 2 1:0 2 1:2 2 1 1 149000 1 1 3 1 15000 15000 0 0 1 2 15000 1400 0 0 0 0 0 0 15000 1400 0 0 15000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 15000 1 2 1000 15000 1 1:5 15000 1 1:5 1 1 1 15000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ',22,'1359354d7c6a0a0836728c1ae322bac30dcd49621c92ee5ed6d25cee43fb4b73');
CREATE TABLE logo (number INTEGER PRIMARY KEY, file TEXT NOT NULL);
INSERT INTO "logo" VALUES(63,'/tmp/register_store_0/logo.png');
CREATE TABLE lottery_waiting (document INTEGER PRIMARY KEY REFERENCES document (id));
INSERT INTO "lottery_waiting" VALUES(10);
INSERT INTO "lottery_waiting" VALUES(14);
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
INSERT INTO "operator_group" VALUES(12,'MARIA','1234',5,-6);
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
INSERT INTO "period" VALUES(0,0,0,1,'7 299000 0 1000 0 3 1 210000 37800 0 0 0 0 0 0 0 0 0 0 210000 0 0 0 0 0 0 0 0 0 0 0 2 84000 7700 0 0 0 0 0 0 0 0 0 0 85000 0 0 0 1000 0 0 0 0 0 0 0 3 5000 200 0 0 0 0 0 0 0 0 0 0 15000 10000 0 0 0 0 0 0 0 0 0 0 3 1 5000 210000 2 3000 84000 3 1000 5000 3 1 5000 210000 2 3000 84000 3 1000 5000 2 1:0 219000 1:2 80000 2 1:0 4 1:2 4 1 1 299000 1 1 7 2 82000 82000 0 0 1 2 82000 7500 0 0 0 0 0 0 82000 7500 0 0 82000 0 0 0 0 0 0 0 0 0 0 0 1 2 2000 82000 1 2 2000 82000 1 1:5 82000 1 1:5 2 1 1 82000 1 1 2 1 30000 0 0 0 1 1 30000 5400 0 0 0 0 0 0 0 0 0 0 30000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 30000 1 1 1000 30000 1 1:0 30000 1 1:0 1 1 1 30000 1 1 1 1 109000 0 1000 0 3 1 50000 9000 0 0 0 0 0 0 0 0 0 0 50000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 10000 10000 0 0 0 0 0 0 0 0 0 0 3 1 1000 50000 2 2000 59000 3 0 0 3 1 1000 50000 2 2000 59000 3 0 0 2 1:0 89000 1:2 20000 2 1:0 1 1:2 1 1 1 109000 1 1 1 ');
INSERT INTO "period" VALUES(1,1,20240115103000,9,'2 45000 0 0 0 2 1 20000 3600 0 0 0 0 0 0 0 0 0 0 20000 0 0 0 0 0 0 0 0 0 0 0 2 25000 2300 0 0 0 0 0 0 0 0 0 0 25000 0 0 0 0 0 0 0 0 0 0 0 2 1 1000 20000 2 1000 25000 2 1 1000 20000 2 1000 25000 2 1:0 25000 1:2 20000 2 1:0 1 1:2 1 1 1 45000 1 1 2 1 12000 12000 0 0 1 2 12000 1100 0 0 0 0 0 0 12000 1100 0 0 12000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 12000 1 2 1000 12000 1 1:5 12000 1 1:5 1 1 1 12000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "period" VALUES(2,1,20240115103000,8,'3 50000 0 0 0 3 1 20000 3600 0 0 0 0 0 0 0 0 0 0 20000 0 0 0 0 0 0 0 0 0 0 0 2 25000 2300 0 0 0 0 0 0 0 0 0 0 25000 0 0 0 0 0 0 0 0 0 0 0 3 5000 200 0 0 0 0 0 0 0 0 0 0 5000 0 0 0 0 0 0 0 0 0 0 0 3 1 1000 20000 2 1000 25000 3 1000 5000 3 1 1000 20000 2 1000 25000 3 1000 5000 2 1:0 30000 1:2 20000 2 1:0 2 1:2 1 1 1 50000 1 1 3 1 12000 12000 0 0 1 2 12000 1100 0 0 0 0 0 0 12000 1100 0 0 12000 0 0 0 0 0 0 0 0 0 0 0 1 2 1000 12000 1 2 1000 12000 1 1:5 12000 1 1:5 1 1 1 12000 1 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "period" VALUES(3,1,20240115103000,13,'0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ');
INSERT INTO "period" VALUES(4,0,0,1,'7 299000 0 1000 0 3 1 210000 37800 0 0 0 0 0 0 0 0 0 0 210000 0 0 0 0 0 0 0 0 0 0 0 2 84000 7700 0 0 0 0 0 0 0 0 0 0 85000 0 0 0 1000 0 0 0 0 0 0 0 3 5000 200 0 0 0 0 0 0 0 0 0 0 15000 10000 0 0 0 0 0 0 0 0 0 0 3 1 5000 210000 2 3000 84000 3 1000 5000 3 1 5000 210000 2 3000 84000 3 1000 5000 2 1:0 219000 1:2 80000 2 1:0 4 1:2 4 1 1 299000 1 1 7 2 82000 82000 0 0 1 2 82000 7500 0 0 0 0 0 0 82000 7500 0 0 82000 0 0 0 0 0 0 0 0 0 0 0 1 2 2000 82000 1 2 2000 82000 1 1:5 82000 1 1:5 2 1 1 82000 1 1 2 1 30000 0 0 0 1 1 30000 5400 0 0 0 0 0 0 0 0 0 0 30000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 30000 1 1 1000 30000 1 1:0 30000 1 1:0 1 1 1 30000 1 1 1 1 109000 0 1000 0 3 1 50000 9000 0 0 0 0 0 0 0 0 0 0 50000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 10000 10000 0 0 0 0 0 0 0 0 0 0 3 1 1000 50000 2 2000 59000 3 0 0 3 1 1000 50000 2 2000 59000 3 0 0 2 1:0 89000 1:2 20000 2 1:0 1 1:2 1 1 1 109000 1 1 1 ');
INSERT INTO "period" VALUES(5,0,0,1,'7 299000 0 1000 0 3 1 210000 37800 0 0 0 0 0 0 0 0 0 0 210000 0 0 0 0 0 0 0 0 0 0 0 2 84000 7700 0 0 0 0 0 0 0 0 0 0 85000 0 0 0 1000 0 0 0 0 0 0 0 3 5000 200 0 0 0 0 0 0 0 0 0 0 15000 10000 0 0 0 0 0 0 0 0 0 0 3 1 5000 210000 2 3000 84000 3 1000 5000 3 1 5000 210000 2 3000 84000 3 1000 5000 2 1:0 219000 1:2 80000 2 1:0 4 1:2 4 1 1 299000 1 1 7 2 82000 82000 0 0 1 2 82000 7500 0 0 0 0 0 0 82000 7500 0 0 82000 0 0 0 0 0 0 0 0 0 0 0 1 2 2000 82000 1 2 2000 82000 1 1:5 82000 1 1:5 2 1 1 82000 1 1 2 1 30000 0 0 0 1 1 30000 5400 0 0 0 0 0 0 0 0 0 0 30000 0 0 0 0 0 0 0 0 0 0 0 1 1 1000 30000 1 1 1000 30000 1 1:0 30000 1 1:0 1 1 1 30000 1 1 1 1 109000 0 1000 0 3 1 50000 9000 0 0 0 0 0 0 0 0 0 0 50000 0 0 0 0 0 0 0 0 0 0 0 2 59000 5400 0 0 0 0 0 0 0 0 0 0 60000 0 0 0 1000 0 0 0 0 0 0 0 3 0 0 0 0 0 0 0 0 0 0 0 0 10000 10000 0 0 0 0 0 0 0 0 0 0 3 1 1000 50000 2 2000 59000 3 0 0 3 1 1000 50000 2 2000 59000 3 0 0 2 1:0 89000 1:2 20000 2 1:0 1 1:2 1 1 1 109000 1 1 1 ');
CREATE TABLE programmed_key (
  keyboard INTEGER NOT NULL, position INTEGER NOT NULL, code INTEGER NOT NULL,
  macro TEXT NOT NULL, PRIMARY KEY (keyboard, position)) WITHOUT ROWID;
INSERT INTO "programmed_key" VALUES(0,41,200,CAST(X'0102' AS TEXT));
CREATE TABLE setting (name TEXT PRIMARY KEY, value NOT NULL) WITHOUT ROWID;
INSERT INTO "setting" VALUES('cashier_id','ANNA');
INSERT INTO "setting" VALUES('courtesy_text','GRAZIE');
INSERT INTO "setting" VALUES('extended_departments',1);
INSERT INTO "setting" VALUES('firmware_version','1.00');
INSERT INTO "setting" VALUES('fiscal_id','01234567897');
INSERT INTO "setting" VALUES('fixed_decimal_point',0);
INSERT INTO "setting" VALUES('groups',10);
INSERT INTO "setting" VALUES('invoice_series','B/2');
INSERT INTO "setting" VALUES('operators',10);
INSERT INTO "setting" VALUES('pos_id','CASSA 3');
INSERT INTO "setting" VALUES('programming_needs_key',0);
INSERT INTO "setting" VALUES('serial_number','99LRM0000001VR');
INSERT INTO "setting" VALUES('trailer_line_1','ARRIVEDERCI');
CREATE TABLE subtender (
  number INTEGER PRIMARY KEY, kind INTEGER NOT NULL, description TEXT NOT NULL,
  flags INTEGER NOT NULL, preset_value INTEGER NOT NULL, max_digits INTEGER NOT NULL);
INSERT INTO "subtender" VALUES(1,1,'',0,0,0);
INSERT INTO "subtender" VALUES(2,1,'',0,0,0);
INSERT INTO "subtender" VALUES(3,2,'BUONO PASTO',1,5000,6);
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
INSERT INTO "summary_waiting" VALUES(2);
INSERT INTO "summary_waiting" VALUES(3);
CREATE TABLE vat_rate (number INTEGER PRIMARY KEY, rate INTEGER NOT NULL, mark TEXT NOT NULL);
INSERT INTO "vat_rate" VALUES(1,220000,'');
INSERT INTO "vat_rate" VALUES(2,100000,'');
INSERT INTO "vat_rate" VALUES(3,60000,'');
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
