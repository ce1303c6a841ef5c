// The natures of sales without tax: why there is none, by the codes that the revenue agency has for
// what tills send.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

#include "register/value/settings.h"

namespace lorimat {

struct Nature {
  std::string_view code;    // as the summary has it
  std::string_view mark;    // as the lines of a document have it, in the place of the rate
  std::string_view legend;  // what the paper says of it
};

inline constexpr Nature kNatures[] = {
    {"N1", "EE*", "escluso art. 15"},    {"N2", "NS*", "non soggetto"},
    {"N3", "NI*", "non imponibile"},     {"N4", "ES*", "esente"},
    {"N5", "RM*", "regime del margine"}, {"N6", "AL*", "operazione non IVA"},
};

// What loses its rate, and no more is known of it.
inline constexpr const Nature& kExempt = kNatures[3];

// By its code; null for none.
constexpr const Nature* FindNature(std::string_view code) {
  const auto found = std::find_if(std::begin(kNatures), std::end(kNatures),
                                  [code](const Nature& nature) { return nature.code == code; });
  return found != std::end(kNatures) ? found : nullptr;
}

// That of an entry without a rate, by its mark: a code, or the letters of a mark; exempt where it
// is neither.
constexpr const Nature& NatureOf(std::string_view mark) {
  for (const Nature& nature : kNatures) {
    if (mark.starts_with(nature.code) || mark.starts_with(nature.mark.substr(0, 2))) return nature;
  }
  return kExempt;
}

// Whether sales of both are one in what is summed: of the same rate, or without one and of the same
// nature, whatever their marks are.
inline bool SameRate(const VatRate& one, const VatRate& other) {
  if (one.rate != other.rate) return false;
  return one.rate != 0 || &NatureOf(one.mark) == &NatureOf(other.mark);
}

}  // namespace lorimat
