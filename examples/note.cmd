; A document that is no sale: text, a barcode, a logo, and a cut. OPZ=DOPPIO prints double.

NOFIS INIZIO
NOFIS MSG='BUONO REGALO', OPZ=DOPPIO
NOFIS MSG='Vale un caffe fino al 31/12'
NOFIS MSG='800123456789', BARCODE=EAN, ALLIN=CENTRO
NOFIS FINE
