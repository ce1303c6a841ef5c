#include "properties/day_generators.h"

#include <algorithm>
#include <ostream>

namespace lorimat {
namespace {

using rc::Gen;
namespace gen = rc::gen;

constexpr int kLastByte = 256;
constexpr int kMostValues = 8;

Gen<int> Below(int count) { return gen::inRange(0, count); }

char Byte(int value) { return static_cast<char>(value); }

DayStep Step(int operation, std::string values = {}) {
  DayStep step;
  step.operation = operation;
  step.values = std::move(values);
  return step;
}

// A line of a department at a price that a shop has, as operations.h takes it: text, department,
// price, whether pieces follow, VAT entry, article.
std::string LineValues() {
  std::string values = {Byte(*Below(4)), Byte(*gen::inRange(1, 8))};
  if (*Below(3) == 0) {
    values += {Byte(*gen::inRange(200, 240)), Byte(*Below(kLastByte))};
  } else {
    values += Byte(*Below(200));
  }
  values += {Byte(*gen::inRange(1, 3)), 0, 1};
  return values;
}

void AddPayment(Day* day) {
  const int tender = *gen::weightedElement<int>({{6, 0}, {1, 1}, {2, 2}, {1, 3}, {1, 5}});
  // Parts first: cash, card, credit, what is not paid.
  for (int part = 0; part < 3 && *Below(3) == 0; ++part) {
    const int other = *gen::weightedElement<int>({{1, 0}, {1, 2}, {3, 3}, {1, 4}, {3, 5}});
    day->push_back(Step(kDayPay, {0, Byte(*Below(part == 0 ? 60 : 200)), Byte(other)}));
  }
  day->push_back(Step(kDayPayRest, {0, Byte(tender)}));
}

void AddLines(Day* day) {
  const int count = *gen::inRange(1, 5);
  for (int line = 0; line < count; ++line) {
    day->push_back(Step(kDaySell, LineValues()));
    switch (*Below(9)) {
      case 0:
        day->push_back(Step(kDayDiscount, {0, Byte(*Below(30))}));
        break;
      case 1:
        day->push_back(Step(kDayAdjust, {0, Byte(*Below(8)), Byte(*Below(60)), Byte(*Below(7)),
                                         Byte(*Below(5)), Byte(*Below(2))}));
        break;
      case 2: {
        // Taken back again: the same line.
        const std::string values = day->back().values;
        day->push_back(Step(kDayTakeBack, values));
        break;
      }
      case 3:
        day->push_back(Step(kDayRefundLine, {0, Byte(*Below(40)), Byte(*gen::inRange(1, 6))}));
        break;
      default:
        break;
    }
  }
  if (*Below(6) == 0) {
    day->push_back(Step(kDayAdjustSubtotal, {0, Byte(*Below(8)), Byte(*Below(60))}));
  }
}

Day Sale() {
  Day day;
  day.push_back(Step(kDayBegin, std::string(1, 0)));
  AddLines(&day);
  AddPayment(&day);
  return day;
}

Day Invoice() {
  Day day;
  day.push_back(Step(kDayInvoice, std::string(1, 1)));
  AddLines(&day);
  AddPayment(&day);
  return day;
}

// Of a document of the first closings and numbers, which often is there.
std::string ReferenceValues() {
  return {0, Byte(*gen::inRange(1, 8)), Byte(*gen::inRange(1, 4)), 1, 1};
}

Day CreditNote() {
  Day day;
  day.push_back(Step(*Below(4) == 0 ? kDayRefund : kDayTelematicRefund, ReferenceValues()));
  const int count = *gen::inRange(1, 3);
  for (int line = 0; line < count; ++line) day.push_back(Step(kDaySell, LineValues()));
  day.push_back(Step(kDayPayRest, {0, 0}));
  // One that is refused has nothing to pay, or too much: the document goes.
  day.push_back(Step(kDayReset, std::string(1, 0)));
  return day;
}

// What is sold and taken back, whole or in part, at once.
Day SaleAndBack() {
  Day day = Sale();
  const std::string line = day[1].values;
  day.push_back(Step(kDayReport, std::string(1, 0)));
  for (int number = 1; number < 8; ++number) {
    if (*Below(3) != 0) continue;
    const std::string values = {0, Byte(number), 1, 1, 1};
    day.push_back(Step(kDayTelematicRefund, values));
    day.push_back(Step(kDaySell, line));
    day.push_back(Step(kDayPayRest, {0, 0}));
    day.push_back(Step(kDayReset, std::string(1, 0)));
  }
  return day;
}

Day Cancel() {
  const bool telematic = *Below(3) != 0;
  // Whole.
  std::string values = {0, 0};
  if (!telematic) values = {0, 0};
  values += {Byte(*gen::inRange(1, 8)), Byte(*gen::inRange(1, 4)), 1, 1};
  return {Step(telematic ? kDayTelematicCancel : kDayCancel, values),
          Step(kDayReset, std::string(1, 0))};
}

Day NonFiscal() {
  return {Step(kDayBeginNonFiscal, {0, Byte(*Below(2))}), Step(kDayPrint, std::string(1, 1)),
          Step(kDayEndNonFiscal, std::string(1, 0))};
}

Day Training() {
  Day day = {Step(kDayBeginTraining, std::string(1, 0))};
  const Day sale = Sale();
  day.insert(day.end(), sale.begin(), sale.end());
  day.push_back(Step(kDayEndTraining, std::string(1, 0)));
  return day;
}

// Left open, and given up or closed by force.
Day CutShort() {
  Day day = {Step(kDayBegin, std::string(1, 0)), Step(kDaySell, LineValues())};
  DayStep end;
  switch (*Below(3)) {
    case 0:
      end.restart = true;
      break;
    case 1:
      end = Step(kDayVoidDocument, std::string(1, 0));
      break;
    default:
      end = Step(kDayReset, std::string(1, 0));
  }
  day.push_back(end);
  return day;
}

Day Closing() { return {Step(kDayClose, std::string(1, 0))}; }

Day Restarting() {
  DayStep step;
  step.restart = true;
  return {step};
}

std::string AnyValues() {
  std::string values;
  const int count = *Below(kMostValues);
  for (int i = 0; i < count; ++i) values += Byte(*Below(kLastByte));
  return values;
}

Day AnyOperations() {
  Day day;
  const int count = *gen::inRange(1, 4);
  for (int i = 0; i < count; ++i) day.push_back(Step(*Below(kDayOperations), AnyValues()));
  if (*Below(2) == 0) day.push_back(Step(kDayReset, std::string(1, 0)));
  return day;
}

struct SceneRow {
  int weight;
  Day (*make)();
};
constexpr SceneRow kScenes[] = {
    {6, &Sale},    {2, &Invoice},    {4, &CreditNote},    {2, &SaleAndBack},
    {3, &Cancel},  {1, &NonFiscal},  {1, &Training},      {2, &CutShort},
    {2, &Closing}, {1, &Restarting}, {4, &AnyOperations},
};

Day Scene() {
  int all = 0;
  for (const SceneRow& row : kScenes) all += row.weight;
  int which = *Below(all);
  for (const SceneRow& row : kScenes) {
    if (which < row.weight) return row.make();
    which -= row.weight;
  }
  return {};
}

// A unit of work makes some writes, mostly fewer than eight, one sync, and some hundred
// allocations.
Trouble AnyTrouble() {
  Trouble trouble;
  trouble.kind = static_cast<TroubleKind>(*gen::inRange(1, kTroubleKinds));
  trouble.lasting = *Below(2) == 0;
  switch (trouble.kind) {
    case TroubleKind::kDiskSync:
    case TroubleKind::kDiskUncut:
    case TroubleKind::kDiskGone:
    case TroubleKind::kKilledAtSync:
      trouble.place = *gen::weightedElement<int>({{8, 1}, {1, 2}});
      break;
    case TroubleKind::kMemory:
      trouble.place = *gen::inRange(1, *gen::element(6, 60, 400));
      break;
    case TroubleKind::kOrdered:
      trouble.place = *Below(40);
      break;
    default:
      trouble.place = *gen::inRange(1, *gen::element(2, 4, 20));
  }
  return trouble;
}

}  // namespace

Gen<Day> Days(int most_scenes, int troubles_in_a_hundred) {
  const auto scene = gen::exec([troubles_in_a_hundred] {
    Day day = Scene();
    for (DayStep& step : day) {
      if (*Below(5) == 0) step.minutes = *Below(600);
      if (!step.restart && troubles_in_a_hundred > *Below(100)) step.trouble = AnyTrouble();
    }
    return day;
  });
  // A vector of its own length, so that a failing day gets shorter by scenes.
  return gen::map(gen::mapcat(gen::inRange(1, most_scenes + 1),
                              [scene](int count) {
                                return gen::resize(rc::kNominalSize,
                                                   gen::container<std::vector<Day>>(
                                                       static_cast<size_t>(count), scene));
                              }),
                  [](const std::vector<Day>& scenes) {
                    Day day;
                    for (const Day& one : scenes) day.insert(day.end(), one.begin(), one.end());
                    return day;
                  });
}

std::ostream& operator<<(std::ostream& out, const DayStep& step) {
  return out << "\n    " << DescribeStep(step);
}

void AddCounts(const TroubledDay::Counts& counts, Seen* seen) {
  seen->Add("steps", counts.steps);
  seen->Add("answers of 0", counts.done);
  seen->Add("documents", counts.documents);
  seen->Add("refused", counts.refused);
  seen->Add("restarts", counts.restarts);
  for (int kind = 1; kind < kTroubleKinds; ++kind) {
    seen->Add(std::string("struck: ") + NameOf(static_cast<TroubleKind>(kind)),
              counts.struck[kind]);
  }
  seen->Add("answers that got lost", counts.lost_answers);
  seen->Add("unknown outcomes", counts.unknown);
  seen->Add("unknown outcomes that were stored", counts.unknown_stored);
  seen->Add("tried again", counts.tried_again);
}

}  // namespace lorimat
