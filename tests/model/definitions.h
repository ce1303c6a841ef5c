// Definition files for the comparison: small ones that are hard, and files by chance.
#pragma once

#include <string>
#include <vector>

#include "model/comparison.h"

// Names that begin each other, aliases, gaps, marks, symbols; and files that end badly.
const std::vector<std::string>& SmallDefinitions();
// A whole file of sections, rows and texts by chance, good and bad. Its names are of the letters
// "A" and "B".
std::string ChanceDefinition(Comparison& comparison);
// A name as the files have them, or its beginning, or more than it.
std::string ChanceName(Comparison& comparison);
