// The words and names of the thirty documents, and amounts as texts.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>

namespace thirty {

using Cents = int64_t;

// a / b, half away from zero; b is above 0.
inline int64_t Rounded(int64_t a, int64_t b) {
  return (2 * (a < 0 ? -a : a) + b) / (2 * b) * (a < 0 ? -1 : 1);
}

inline std::string WithSeparator(Cents cents, char separator) {
  const Cents size = cents < 0 ? -cents : cents;
  char text[40];
  std::snprintf(text, sizeof text, "%s%lld%c%02lld", cents < 0 ? "-" : "",
                static_cast<long long>(size / 100), separator, static_cast<long long>(size % 100));
  return text;
}

inline std::string OnPaper(Cents cents) { return WithSeparator(cents, ','); }
inline std::string InBatch(Cents cents) { return WithSeparator(cents, '.'); }

inline std::string Padded(int number, int width) {
  std::string text = std::to_string(number);
  return std::string(text.size() < static_cast<size_t>(width) ? width - text.size() : 0, '0') +
         text;
}

// The VAT entries of the register: departments 1 to 5 have one each, the others the first.
struct VatEntry {
  int rate;
  const char* name;
};
inline constexpr VatEntry kVat[] = {{0, ""},   {22, "22%"}, {10, "10%"},
                                    {5, "5%"}, {4, "4%"},   {0, "ES*"}};
inline int VatOf(int department) { return department <= 5 ? department : 1; }

// Words of the language and names on paper.
inline const std::map<std::string, std::string> kTenders = {
    {"CONTANTI", "Pagamento contante"},
    {"ASSEGNI", "Pagamento assegno"},
    {"CARTA", "Pagamento elettronico"},
    {"BANCOMAT", "Pagamento bancomat"},
    {"TICKET", "Ticket"},
    {"NRFATTURE", "Non riscosso fatture"},
    {"NRSERVIZI", "Non riscosso servizi"},
    {"NRSSN", "Non riscosso SSN"},
    {"SCONTOPAG", "Sconto a pagare"},
    {"CREDITO", "Non riscosso"},
    {"ST01", "Pagamento elettronico 01"},
    {"VOUCHER", "Buono multiuso"},
};
inline bool IsNotPaid(const std::string& tender) {
  return tender == "CREDITO" || tender.rfind("NR", 0) == 0;
}

}  // namespace thirty
