; Lines that take off: a void corrects a line of the same receipt, a refund gives money back for
; goods that were sold before.

VEND REP=2, QTA=3, PRE=1.20, DES='CAFFE'
VEND REP=2, PRE=4.00, DES='TORTA'
VEND REP=2, PRE=4.00, DES='TORTA', STORNO       ; no cake after all
VEND REP=1, PRE=15.00, DES='VASO'
VEND REP=1, PRE=6.00, DES='TAZZA', RESO         ; a cup came back
CHIU
