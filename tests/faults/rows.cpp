#include "rows.h"

#include <algorithm>

namespace lorimat {
namespace {

using strike::kForGood;

// Which kinds of calls fail in a manner.
enum For : unsigned {
  kMemory = 0x1,
  kFiles = 0x2,   // all that have to do with files
  kHalves = 0x4,  // those that can get half through
  kWrites = 0x8,
  kStores = 0x10,  // those that make something last
};

struct KindRow {
  strike::Kind kind;
  const char* name;
  unsigned manners;
};

constexpr KindRow kKinds[] = {
    {strike::kMemory, "memory", kMemory},
    {strike::kWrite, "write", kFiles | kHalves | kWrites | kStores},
    {strike::kSync, "sync", kFiles | kStores},
    {strike::kOpen, "open", kFiles},
    {strike::kRead, "read", kFiles | kHalves},
    {strike::kTruncate, "truncate", kFiles | kStores},
    {strike::kName, "name", kFiles | kStores},
    {strike::kMap, "map", kFiles},
};

constexpr Manner kManners[] = {
    {.name = "once", .kinds = kMemory | kFiles, .run = 1},
    {.name = "twice", .kinds = kMemory, .run = 2},
    {.name = "5-times", .kinds = kMemory, .run = 5},
    {.name = "20-times", .kinds = kMemory, .run = 20},
    {.name = "long", .kinds = kMemory | kFiles, .run = kForGood},
    {.name = "for-good", .kinds = kMemory | kFiles, .run = kForGood, .ends_struck = true},
    {.name = "half", .kinds = kHalves, .run = 1, .half = true},
    {.name = "half-long", .kinds = kWrites, .run = kForGood, .half = true},
    {.name = "killed", .kinds = kFiles, .run = 1, .kill = true},
    {.name = "half-killed", .kinds = kWrites, .run = 1, .half = true, .kill = true},
    {.name = "once-killed", .kinds = kFiles, .run = 1, .dies_at_answer = true},
    {.name = "long-killed", .kinds = kFiles, .run = kForGood, .dies_at_answer = true},
    {.name = "disk-long", .kinds = kStores, .run = kForGood, .disk = true},
    {.name = "disk-for-good", .kinds = kStores, .run = kForGood, .ends_struck = true, .disk = true},
    {.name = "disk-long-killed",
     .kinds = kStores,
     .run = kForGood,
     .dies_at_answer = true,
     .disk = true},
    {.name = "power-cut", .kinds = kStores, .run = 1, .kill = true, .power = true},
};

}  // namespace

const char* NameOf(Part part) {
  static const char* const names[] = {"day", "lines", "new", "cut"};
  return names[static_cast<size_t>(part)];
}

std::vector<Row> RowsOf(Part part, const Report& report) {
  std::vector<Row> rows;
  const std::string name = std::string(NameOf(part)) + "/";
  for (const KindRow& kind : kKinds) {
    if (report.counts[kind.kind] == 0) continue;
    for (const Manner& manner : kManners) {
      if ((manner.kinds & kind.manners) == 0) continue;
      Row row;
      row.name = name + kind.name + "/" + manner.name;
      row.trouble = {part, kind.kind, &manner, 0};
      row.calls = report.counts[kind.kind];
      rows.push_back(std::move(row));
    }
  }
  if (report.answers > 0) {
    Row row;
    row.name = name + "answer/lost";
    row.trouble.part = part;
    row.calls = report.answers;
    rows.push_back(std::move(row));
  }
  return rows;
}

bool Takes(const std::string& name, const Row& row) {
  return ("/" + row.name + "/").find("/" + name + "/") != std::string::npos;
}

void ChoosePlaces(long all, std::vector<Row>* rows) {
  std::vector<Row*> by_size;
  for (Row& row : *rows) by_size.push_back(&row);
  std::sort(by_size.begin(), by_size.end(),
            [](const Row* a, const Row* b) { return a->calls < b->calls; });
  long left = all;
  long rows_left = static_cast<long>(by_size.size());
  for (Row* row : by_size) {
    const long wanted = all > 0 ? std::max(1L, left / rows_left) : 0;
    // A prime spreads the beginnings.
    row->places = SpreadPlaces(row->calls, wanted, rows_left * 7919);
    left -= static_cast<long>(row->places.size());
    --rows_left;
  }
}

}  // namespace lorimat
