; An invoice: the head lines name the customer, then the lines and the payment of a receipt
; follow. TIPO is always 2.

FATTURA TIPO=2, RIGA1='ROSSI MARIO SRL', RIGA2='Via Roma 10', RIGA3='20100 MILANO', RIGA4='P.IVA 12345678903'
VEND REP=1, QTA=10, PRE=12.20, DES='SEDIA'
VEND REP=4, PRE=10.40, DES='PANE PER RINFRESCO'
CHIU TEND=BANCOMAT
