// The virtual register as a library of its own, liblorimat-register: a fiscal register in memory or
// in a file, with virtual paper, to be given to the library in the place of a device.
//
//   lorimatrt::VirtualRegister device(lorimatrt::RegisterSettings().SetFile("shop.register"));
//   ... EcrIo gives device.client() to TradInit, EcrCmd sells ...
//   std::cout << device.paper_text();
//
// What it models is told in docs/register.md. C++17 or later, by the compiler and with the standard
// library that the register was built with, as ever with C++. The objects hold nothing but a
// pointer, so that a later version of the library fits programs that were compiled before.
//
// Threads: a VirtualRegister has one operation of its client at a time; another that begins
// meanwhile answers RTF_E_BUSY. The members here are called between operations.
#ifndef LORIMATRT_REGISTER_H
#define LORIMATRT_REGISTER_H

#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(_WIN32)
#define LORIMAT_REGISTER_API
#define LORIMAT_REGISTER_OWN
#else
#define LORIMAT_REGISTER_API __attribute__((visibility("default")))
#define LORIMAT_REGISTER_OWN __attribute__((visibility("hidden")))
#endif

class RtfClientInterface;

namespace lorimatrt {

// Why a register cannot be opened or kept, or something else of it cannot be done, as an English
// sentence.
class LORIMAT_REGISTER_API RegisterError : public std::runtime_error {
 public:
  explicit RegisterError(const std::string& what);
  RegisterError(const RegisterError&) noexcept;
  RegisterError& operator=(const RegisterError&) noexcept;
  ~RegisterError() override;
};

// What a register is made with; what is not set is that of a small Italian shop that can sell at
// once. A file that exists goes before all of it but the clock and the outbox.
class LORIMAT_REGISTER_API RegisterSettings {
 public:
  RegisterSettings();
  RegisterSettings(const RegisterSettings& other);
  RegisterSettings& operator=(const RegisterSettings& other);
  ~RegisterSettings();

  // Where the register is kept: a database file, made when it is not there. Empty, as it is when
  // nothing is said: in memory, gone with the object.
  RegisterSettings& SetFile(const std::string& name);
  // At most 32 characters; the translator reads the model from the characters 13 and 14.
  RegisterSettings& SetSerialNumber(const std::string& number);
  // The shop's head on the paper: six lines of 50 bytes, and what is beyond is cut.
  RegisterSettings& SetHeader(const std::vector<std::string>& lines);
  // The shop's VAT number, for the telematic summary.
  RegisterSettings& SetVatNumber(const std::string& number);
  // A rate of the table of VAT, in ten-thousandths of a percent (220000 is 22 %); entries count
  // from 1, and the highest that is set is the last. A mark stands on the paper in the rate's
  // place; of an entry without a rate it is the nature of its sales, N1 to N6: "EE*" excluded,
  // "NS*" not subject, "NI*" not taxable, "ES*" exempt, "RM*" margin scheme, "AL*" no VAT
  // operation. Throws std::invalid_argument for an entry below 1 or above 99.
  RegisterSettings& SetVatRate(int entry, std::int32_t rate, const std::string& mark = {});
  // A department, 1 to 40, with its VAT entry and the price of a piece in ten-thousandths of the
  // currency, 0 for none; the highest that is set is the last. Throws std::invalid_argument for
  // another number.
  RegisterSettings& SetDepartment(int number, const std::string& name, int vat_entry,
                                  std::int64_t price = 0);
  // Whether what is paid wholly in cash is rounded to five cents, as it is not when nothing is
  // said.
  RegisterSettings& SetCashRounding(bool yes);
  // Whether it is in service with the revenue agency, as it is when nothing is said.
  RegisterSettings& SetInService(bool yes);
  // The folder into which summaries that are sent go, one file each; it has to exist.
  RegisterSettings& SetOutbox(const std::string& folder);
  // The device's clock; empty: the system's local time.
  RegisterSettings& SetClock(const std::function<std::tm()>& now);

 private:
  friend class VirtualRegister;
  struct LORIMAT_REGISTER_OWN Parts;
  std::unique_ptr<Parts> parts_;
};

// Figures of the day, of the documents since the last closing: amounts in ten-thousandths of the
// currency.
enum class DayFigure : int {
  kDocuments = 0,  // how many there are
  kReceipts = 1,   // sold, by receipts and invoices
  kRefunds = 2,    // given back by credit notes
  kVoids = 3,      // taken back by void documents
  kNotPaid = 4,    // the part of the receipts that is still owed
};

class LORIMAT_REGISTER_API VirtualRegister {
 public:
  // Throws RegisterError when the register's file cannot be opened or made.
  explicit VirtualRegister(const RegisterSettings& settings = RegisterSettings());
  // The register is switched off. The library must not be given a line behind this.
  ~VirtualRegister();
  VirtualRegister(const VirtualRegister&) = delete;
  VirtualRegister& operator=(const VirtualRegister&) = delete;

  // The device client that a host gives to the library (ECRIOIC_GET_CLIENT_RT). It lives as long as
  // the register, which owns it.
  RtfClientInterface* client() noexcept;

  // The roll of paper, a line of at most 42 columns each, ended by a line feed: the last 20,000.
  std::string paper_text() const;
  // The same as a picture: the bytes of a PNG file, and of a PDF file with a page for each piece.
  // Throws RegisterError when it cannot be drawn, and std::bad_alloc where there are not the 256 MB
  // of addresses that it takes.
  std::string RenderPng() const;
  std::string RenderPdf() const;
  // One of RTF_FPTR_PS_*.
  int printer_state() const noexcept;
  // How often the drawer has been opened.
  int drawer_count() const noexcept;
  // A row (0 or 1) of a display (0 and 1 the operator's, 2 the customer's); empty for others.
  std::string display_text(int display, int row) const;
  // 0 for a figure that there is not.
  std::int64_t DayTotal(DayFigure figure) const;
  // The number of the last day closing; 0 for none.
  int last_closure() const noexcept;
  // What a person has to be told of this start: a document that was cut off, one whose answer may
  // not have gone out, a clock that is behind, a day that was left open, dates on which nothing was
  // registered, limits that come near. Empty when there is nothing to tell.
  std::string start_notice() const;
  // Why the last operation that answered RTF_E_FAILURE could not be stored; empty as long as none
  // has.
  std::string last_failure() const;

  // Orders a fault that the device is to suffer, for hosts that want to see what they do about it.
  // The names are those of `lorimat fault` ("paper-end", "lost-answer"), or "code", which answers
  // `code`. It strikes the operation of that name alone ("PrintRecTotalEx"), with none each that it
  // can; "next", the one of the number `count` with "nth", "every" one, or the next `count` with
  // "times". Throws RegisterError for one that cannot be, which is then not ordered.
  void AddFault(const std::string& name, const std::string& operation = {},
                const std::string& when = "next", int count = 1, int code = 0);
  // Takes away all that wait. Throws RegisterError when the register's file cannot be written.
  void ClearFaults();

 private:
  struct LORIMAT_REGISTER_OWN Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace lorimatrt

#endif
