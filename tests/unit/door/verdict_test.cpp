#include "door/job/verdict.h"

#include <gtest/gtest.h>

namespace lorimat::door {
namespace {

constexpr const char* kMark = "RABC";

// One document further than the baseline, with the mark on it.
Evidence Sold() {
  Evidence evidence;
  evidence.before = {"S", 3, 7, 2, 500000};
  evidence.now = {"S", 3, 8, 2, 512000};
  evidence.mark = kMark;
  evidence.last = LastDocument{{4, 8, "S", "t", 12000}, false, {"CAFFE 1,20", "  RABC"}};
  return evidence;
}

Evidence Closed() {
  Evidence evidence;
  evidence.effect = JobEffect::kClosing;
  evidence.before = {"S", 3, 7, 2, 500000};
  evidence.now = {"S", 4, 0, 2, 0};
  evidence.last_closing = JobDocument{4, 0, "S", "t", 500000};
  return evidence;
}

void Expect(const Evidence& evidence, Outcome outcome, Why why) {
  const Verdict verdict = Judge(evidence);
  EXPECT_EQ(verdict.outcome, outcome);
  EXPECT_EQ(verdict.why, why) << WhyText(verdict.why);
}

TEST(Verdict, ADocumentWithTheMarkIsTheJobs) {
  const Verdict verdict = Judge(Sold());
  EXPECT_EQ(verdict.outcome, Outcome::kDone);
  ASSERT_TRUE(verdict.document);
  EXPECT_EQ(verdict.document->number, 8);
}

TEST(Verdict, TheSameNumbersAreNotDone) {
  Evidence evidence = Sold();
  evidence.now = evidence.before;
  Expect(evidence, Outcome::kNotDone, Why::kFoundNotDone);
  Evidence closing = Closed();
  closing.now = closing.before;
  Expect(closing, Outcome::kNotDone, Why::kFoundNotDone);
}

TEST(Verdict, AnAmountProvesNothing) {
  Evidence evidence = Sold();
  evidence.last->paper = {"CAFFE 1,20"};
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
  // Answered by the device itself, in the process that asked.
  evidence.is_answered = true;
  EXPECT_EQ(Judge(evidence).outcome, Outcome::kDone);
}

TEST(Verdict, AMarkThatIsEmptyIsNone) {
  Evidence evidence = Sold();
  evidence.mark.clear();
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
}

// One that the day has not more by is not all that came, whatever mark is on it.
TEST(Verdict, TheTotalOfTheDocumentIsWhatTheDayHasMore) {
  for (const bool is_answered : {false, true}) {
    Evidence evidence = Sold();
    evidence.is_answered = is_answered;
    evidence.last->facts.total = 12001;
    Expect(evidence, Outcome::kNobodyKnows, Why::kUnclearNumbers);
    // What goes back makes the day less.
    evidence.last->facts.total = 12000;
    evidence.now.day_total = 488000;
    EXPECT_EQ(Judge(evidence).outcome, Outcome::kDone);
    // A device that does not tell it.
    evidence.last->facts.total.reset();
    evidence.now.day_total = 512001;
    EXPECT_EQ(Judge(evidence).outcome, Outcome::kDone);
  }
}

TEST(Verdict, AVoidOfTheSaleThatTheJobMakesVoidNeedsNoMark) {
  Evidence evidence = Sold();
  evidence.last->paper = {"ANNULLAMENTO"};
  evidence.is_void_of_sale = true;
  EXPECT_EQ(Judge(evidence).outcome, Outcome::kDone);
  evidence.now.document = 9;
  Expect(evidence, Outcome::kNobodyKnows, Why::kFurtherOn);
}

TEST(Verdict, AnInvoiceHasItsOwnNumbers) {
  Evidence evidence = Sold();
  evidence.now = {"S", 3, 7, 3, 512000};
  evidence.last->is_invoice = true;
  evidence.last->facts.number = 3;
  EXPECT_EQ(Judge(evidence).outcome, Outcome::kDone);
  evidence.last->is_invoice = false;
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
}

TEST(Verdict, TheKindIsTheDevicesWordOrThatOfTheLines) {
  Evidence evidence = Sold();
  EXPECT_FALSE(Judge(evidence).document->kind);
  evidence.kind = DocumentKind::kRefund;
  EXPECT_EQ(Judge(evidence).document->kind, DocumentKind::kRefund);
  evidence.last->facts.kind = DocumentKind::kCancel;
  EXPECT_EQ(Judge(evidence).document->kind, DocumentKind::kCancel);
  // It is no invoice that took a number of the receipts.
  evidence.last->facts.kind.reset();
  evidence.kind = DocumentKind::kInvoice;
  EXPECT_FALSE(Judge(evidence).document->kind);
}

TEST(Verdict, WhatDoesNotFitIsForAnOperator) {
  struct Case {
    DeviceNumbers now;
    Why why;
  };
  const Case cases[] = {
      {{"T", 3, 8, 2, 512000}, Why::kOtherDevice},   {{"S", 2, 8, 2, 512000}, Why::kWentBack},
      {{"S", 3, 6, 2, 512000}, Why::kWentBack},      {{"S", 3, 8, 1, 512000}, Why::kWentBack},
      {{"S", 4, 8, 2, 512000}, Why::kClosedBetween}, {{"S", 3, 9, 2, 524000}, Why::kFurtherOn},
      {{"S", 3, 8, 3, 524000}, Why::kFurtherOn},     {{"S", 3, 7, 4, 524000}, Why::kFurtherOn},
      {{"S", 3, 7, 2, 512000}, Why::kUnclearNumbers}};
  for (const Case& one : cases) {
    Evidence evidence = Sold();
    evidence.now = one.now;
    Expect(evidence, Outcome::kNobodyKnows, one.why);
  }
}

TEST(Verdict, ADocumentOfAnotherNumberIsNotTheJobs) {
  Evidence evidence = Sold();
  evidence.last->facts.number = 7;
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
  evidence = Sold();
  evidence.last->facts.closure = 3;
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
  evidence.last.reset();
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
}

// A device that shows nothing of its documents is believed what it has answered.
TEST(Verdict, WithoutASightOfTheDocumentItsLinesHaveToBeAnswered) {
  Evidence evidence = Sold();
  evidence.last.reset();
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
  evidence.is_answered = true;
  const Verdict verdict = Judge(evidence);
  EXPECT_EQ(verdict.outcome, Outcome::kDone);
  EXPECT_EQ(verdict.document, (JobDocument{4, 8, "S", {}, 12000}));
  evidence.now = {"S", 3, 7, 3, 470000};
  EXPECT_EQ(Judge(evidence).document, (JobDocument{4, 3, "S", {}, 30000}));
  evidence.now.document = 9;
  Expect(evidence, Outcome::kNobodyKnows, Why::kFurtherOn);
}

// What was sold between the baseline and the closing is in the sum of all days.
TEST(Verdict, AClosingThatTheDeviceDoesNotShowIsKnownByTheGrandTotal) {
  Evidence evidence = Closed();
  evidence.last_closing.reset();
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
  evidence.before.grand_total = evidence.now.grand_total = 9000000;
  const Verdict verdict = Judge(evidence);
  EXPECT_EQ(verdict.outcome, Outcome::kDone);
  EXPECT_EQ(verdict.document, (JobDocument{4, 0, "S", {}, 500000}));
  evidence.now.grand_total = 9010000;
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
  evidence.is_answered = true;
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
  evidence.now.grand_total.reset();
  EXPECT_EQ(Judge(evidence).outcome, Outcome::kDone);
  // One that takes the day in as it closes it.
  evidence.now.grand_total = 9500000;
  EXPECT_EQ(Judge(evidence).outcome, Outcome::kDone);
  evidence.is_answered = false;
  Expect(evidence, Outcome::kNobodyKnows, Why::kOtherDocument);
}

TEST(Verdict, AClosingIsKnownByItsNumberAndItsDay) {
  EXPECT_EQ(Judge(Closed()).outcome, Outcome::kDone);
  Evidence sold_behind = Closed();
  sold_behind.now.document = 1;
  Expect(sold_behind, Outcome::kNobodyKnows, Why::kFurtherOn);
  Evidence two = Closed();
  two.now.closure = 5;
  Expect(two, Outcome::kNobodyKnows, Why::kFurtherOn);
  Evidence other_day = Closed();
  other_day.last_closing->total = 600000;
  Expect(other_day, Outcome::kNobodyKnows, Why::kOtherDocument);
  Evidence sold = Closed();
  sold.now = {"S", 3, 8, 2, 512000};
  Expect(sold, Outcome::kNobodyKnows, Why::kFurtherOn);
}

}  // namespace
}  // namespace lorimat::door
