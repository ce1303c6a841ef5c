; A receipt by keys, as a cashier types it. INP plays the digits of NUM and then the key TASTO;
; the words for the keys are those of section EQUTASTI of the definition file.

INP TASTO=APRETRANS                             ; opens the receipt
VEND REP=2, PRE=1.20, DES='CAFFE'               ; sales may come by command,
INP NUM=1.50, TASTO=REP02                       ; or by the key of a department
INP NUM=1.00, TASTO=ST01                        ; pays a part by subtender 1
INP TASTO=TOTALE                                ; and the rest in cash
INP TASTO=CHIUDETRAN                            ; closes what is still open
