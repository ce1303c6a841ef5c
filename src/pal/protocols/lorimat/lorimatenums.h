// Limits of the command language. The tables of the translator are dimensioned by
// them.
#pragma once

enum lorimatlimits {
  MAXOPCOD = 150,   // rows of the opcode tables
  MAXCAMPI = 40,    // highest field number; field 0 is not used
  MAXSIMB = 300,    // rows of symbols; row 0 is not used
  MAXOPZ = 30,      // options
  MAXSIMBLN = 10,   // longest command, field or symbol name
  MAXSTEPS = 1000,  // steps
  MAXVALLN = 2048,  // longest field value
  MAXNUMECR = 24,   // highest device number
  MAXACLEN = 512,
  MAXTOTG = 100,      // rows of the totalizer descriptions
  MAXLINELEN = 2048,  // size of a source line buffer
  LNSEQFILEBUFF = 512,
  LNOPZIONIECR = 60,
  MAX_DESCRIPTION = 50,  // longest description of a line, in characters
  MAX_UNIT_NAME = 10,
  MAX_PLUCODE = 20,  // longest article code, in characters
  MAX_MACRO = 50,
  QUANTITY_PRECISION = 3,  // decimals of a quantity: 1000 is one piece
};
