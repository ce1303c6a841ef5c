// What a register has to go by, worked out from its chain: entries, their documents, and events,
// in their order. A check holds what stands in the file against it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "register/document/documents.h"
#include "register/storage/chain.h"
#include "register/storage/database.h"
#include "register/storage/finding.h"
#include "register/totals/closures.h"
#include "register/totals/totals.h"

namespace lorimat {

class ChainState {
 public:
  using Finder = std::function<void(Finding)>;

  // `beginning` is that of the first event; without one little is known.
  ChainState(const std::optional<Beginning>& beginning, Finder find);

  // A registered document, as its entry comes; `entry` names both in a finding.
  void Add(const StoredDocument& document, const Finding& entry);
  void CountAbandoned() { ++counters_.abandoned; }
  void Add(const ChainEvent& event);
  // The day ends; `last_document` is the last one that was registered in it.
  void Close(int64_t closure, int64_t last_document);

  // Whether the chain has come to its beginning: what came earlier was carried over.
  bool begun() const { return begun_; }
  const Totals& day() const { return day_; }
  // Non-fiscal documents are known from the beginning on.
  const DailyCounters& counters() const { return counters_; }

  // At the end of the chain: compares numbers, periods, what waits and what is programmed.
  void Compare(Database& database) const;

 private:
  struct Period {
    PeriodBeginning start;
    Totals closed;
    // The part of the day, when the period began within it.
    bool within_day = false;
    Totals day;
  };

  void Begin();
  void Program(const ChainEvent& event);
  void Send(const ChainEvent& event, const std::set<int64_t>& sent, std::set<int64_t>* waiting);
  void Clear(int64_t number, const PeriodBeginning& start);
  void ComparePeriods(Database& database) const;
  void CompareWaiting(Database& database) const;
  void CompareProgrammed(Database& database) const;

  std::optional<Beginning> beginning_;
  Finder find_;
  bool begun_ = false;
  Totals day_;
  DailyCounters counters_;
  int64_t next_invoice_ = 0;
  int64_t first_of_day_ = 1;
  std::map<int64_t, Period> periods_;
  // Those that began before the chain did, until their first document comes.
  std::map<int64_t, PeriodBeginning> begin_later_;
  std::set<int64_t> summaries_;  // that wait
  std::set<int64_t> lottery_;
  std::map<std::string, std::string> programmed_;
};

}  // namespace lorimat
