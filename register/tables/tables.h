// The master tables of the register: departments, VAT entries, groups and operators, articles,
// header lines, subtenders, logos, and the tenders with what each may do.
//
// Everything that a host programmes goes through the setters: each answers a result code, and
// one that refuses changes nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "managermachine/managerparams.h"
#include "register/tables/tenders.h"
#include "register/value/nature.h"
#include "register/value/settings.h"

namespace lorimat {

// A record of the table that groups and operators share: group g is record g, operator n is
// the record behind the groups by n.
struct GroupRow {
  std::string description = {};
  std::string password = {};  // of an operator
  int flags = 0;              // these two are kept for the host
  int options = 0;
};

// A means of payment that the host defines, 1 to 20; its tender is the one 9 further on.
struct Subtender {
  // Bits of flags.
  static constexpr uint8_t kGivesChange = 1;
  static constexpr uint8_t kKeepsRest = 2;  // of tickets: what is above the rest is nobody's

  TenderKind kind = TenderKind::kElectronic;
  std::string description = {};  // on paper; empty for the name that the tender has by itself
  uint8_t flags = 0;
  uint32_t preset_value = 0;  // cents that its key pays when no amount is keyed; 0 for the rest
  uint8_t max_digits = 0;     // the most digits that its key takes; 0 for no limit
};

class Tables {
 public:
  static constexpr size_t kDescriptionSize = 32;
  static constexpr size_t kSubtenderDescriptionSize = ManagerParams::kSubtenderDescripionSize;
  static constexpr size_t kPasswordSize = 16;
  static constexpr size_t kArticleCodeSize = 20;
  static constexpr size_t kHeaderLineSize = 50;
  static constexpr int kMaxGroups = 99;  // and as many operators
  static constexpr int kMaxArticles = 60000;
  static constexpr int kMaxLogos = 64;
  static constexpr size_t kLogoNameSize = ManagerParams::kFilenameSize;
  // The highest preset price and price limit, 99999,99: seven digits.
  static constexpr Amount kMaxPresetPrice = 999999900;
  // The highest VAT rate, 99,99 %, in ten-thousandths of a percent.
  static constexpr int32_t kMaxVatRate = 999900;
  // The highest preset value of a subtender, in cents: 9999999,99.
  static constexpr uint32_t kMaxPresetValue = 999999999;
  static constexpr int kHeaderLines = 6;
  static constexpr size_t kShortestSerialNumber = 11;
  static constexpr size_t kSerialNumberSize = 32;
  static constexpr size_t kFirmwareVersionSize = 20;
  // The longest that a host may give; what is programmed later is one of the country's.
  static constexpr size_t kLongestVatNumber = 32;
  static constexpr int kSubtenders = 20;  // identifiers "10" to "29"
  static constexpr int kMaxDepartments = 40;
  static constexpr int kMaxVatEntries = 99;  // of a host's table

  // Repairs what a register could not hold: over-long texts are cut, counts and prices brought
  // into their ranges; departments, header lines and articles beyond the last are dropped.
  explicit Tables(RegisterSettings settings);
  // The tables of an older register, which were stored; the settings hold the rest of them.
  Tables(RegisterSettings settings, std::vector<GroupRow> groups,
         const std::vector<Subtender>& subtenders, std::map<int, std::string> logos);

  // Null for a number that the table does not have. Numbers start at 1.
  const Department* FindDepartment(int number) const;
  const VatRate* FindVat(int number) const;
  const Article* FindArticle(std::string_view code) const;
  const Tender* FindTender(std::string_view id) const;

  // The identifier of a subtender's tender, and the name that this has by itself.
  static std::string SubtenderId(int number);
  static std::string SubtenderName(int number);

  // Groups and operators by their index, from 1.
  const GroupRow* FindGroup(int index) const;
  const Subtender* FindSubtender(int number) const;
  // Null for a tender that is no subtender.
  const Subtender* SubtenderOf(std::string_view tender_id) const;
  // The name of the file that a logo was loaded from; null for one that was not loaded.
  const std::string* FindLogo(int number) const;

  // --- Programming. Control characters in texts become blanks, escape sequences stay.
  int SetDepartment(int number, Department department);
  int SetGroup(int index, GroupRow row);
  int SetSubtender(int number, Subtender subtender);
  // Line 1 to 6.
  int SetHeaderLine(int line, std::string_view text);
  // All of them.
  int SetHeaderLines(const std::vector<std::string>& lines);
  // Of capital letters and digits.
  int SetSerialNumber(std::string_view number);
  // Takes note of the rate of an entry, in decimal digits; CommitVat puts all that were noted
  // into force. With a day open no rate can change, and what was noted is forgotten.
  int NoteVatRate(int entry, std::string_view rate);
  int CommitVat(bool day_open);
  // Makes an entry one of sales without tax, of this nature; on an open day none becomes one, and
  // none gets another.
  int SetVatNature(int entry, const Nature& nature, bool day_open);
  // Adds an article, or replaces the one of the same code.
  int SetArticle(Article article);
  void EraseArticles();
  // Logo 1 to 64. The file has to be there; it is not read.
  int SetLogo(int number, std::string_view file);
  void EraseLogos();

  const RegisterSettings& settings() const { return settings_; }
  const std::vector<Tender>& tenders() const { return tenders_; }
  const std::vector<GroupRow>& groups() const { return groups_; }
  const std::vector<Subtender>& subtenders() const { return subtenders_; }
  const std::map<int, std::string>& logos() const { return logos_; }

  // --- What has been programmed since it was stored the last time
  enum class Part {
    kDepartment,
    kGroup,
    kSubtender,
    kHeader,
    kVat,
    kArticle,
    kArticles,
    kLogos,
    kSerialNumber,
    kNotes
  };
  struct Change {
    Part part;
    int number;  // of the record; 0 for a whole table
    // Exchanges what is there for what was there before, and needs no memory for it.
    std::function<void(Tables&)> undo;
  };
  const std::vector<Change>& changes() const { return changes_; }
  // Grows with each change, taken back or not: who has a copy sees whether it is still true.
  uint64_t revision() const { return revision_; }
  // The changes are stored.
  void Keep() noexcept { changes_.clear(); }
  // The tables are again as they were stored.
  void TakeBack() noexcept;

 private:
  void Repair();
  // To be called ahead of a change: `undo` takes it back.
  void Note(Part part, int number, std::function<void(Tables&)> undo) {
    ++revision_;
    changes_.push_back({part, number, std::move(undo)});
  }
  void PlaceSubtender(int number, Subtender subtender);
  int CheckDepartment(const Department& department) const;

  struct CodeHash {
    using is_transparent = void;
    size_t operator()(std::string_view code) const noexcept {
      return std::hash<std::string_view>()(code);
    }
  };

  RegisterSettings settings_;
  // Where the article of a code stands.
  std::unordered_map<std::string, size_t, CodeHash, std::equal_to<>> article_places_;
  // Their places are fixed: payments point to them.
  std::vector<Tender> tenders_;
  std::vector<GroupRow> groups_;
  std::vector<Subtender> subtenders_;
  std::map<int, int32_t> noted_rates_;
  std::map<int, std::string> logos_;
  std::vector<Change> changes_;
  uint64_t revision_ = 0;
};

// Null for an entry that is not in the table.
const VatRate* VatEntry(const std::vector<VatRate>& rates, int vat);
// "22%", or the mark of an entry without tax; the number of an entry that is not in the table.
std::string VatName(const std::vector<VatRate>& rates, int vat);

}  // namespace lorimat
