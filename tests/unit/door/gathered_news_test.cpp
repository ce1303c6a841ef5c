#include "door/http/gathered_news.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace lorimat::door {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GatheredNews, OneIsSentForAllThatComesUntilItIsTaken) {
  int sent = 0;
  GatheredNews news([&sent] { ++sent; });
  news.AddJob(7);
  news.AddEvents();
  news.AddJob(8);
  EXPECT_EQ(sent, 1);
  const News taken = news.Take();
  EXPECT_THAT(taken.jobs, ElementsAre(7, 8));
  EXPECT_TRUE(taken.has_events);
  EXPECT_EQ(sent, 1);
  news.AddEvents();
  EXPECT_EQ(sent, 2);
  const News next = news.Take();
  EXPECT_THAT(next.jobs, IsEmpty());
  EXPECT_TRUE(next.has_events);
  EXPECT_FALSE(news.Take().has_events);
}

TEST(GatheredNews, WhereNobodyCouldBeSentTheNextOneIsTried) {
  bool fails = true;
  int sent = 0;
  GatheredNews news([&] {
    if (fails) throw std::runtime_error("no memory");
    ++sent;
  });
  EXPECT_THROW(news.AddJob(7), std::runtime_error);
  fails = false;
  news.AddEvents();
  EXPECT_EQ(sent, 1);
  EXPECT_THAT(news.Take().jobs, ElementsAre(7));
}

}  // namespace
}  // namespace lorimat::door
