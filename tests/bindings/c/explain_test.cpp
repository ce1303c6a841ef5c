// The explanations of result codes through the C face, beside those that the console makes.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "language/code_explanation.h"
#include "language/code_table.h"
#include "lorimatrt/lorimat.h"

namespace {

std::string Joined(long code) {
  std::string text;
  for (const std::string& line :
       language::ExplainCode(code, [](std::string_view english) { return english; })) {
    text += (text.empty() ? "" : "\n") + line;
  }
  return text;
}

TEST(CFaceExplain, EnglishIsThatOfTheTables) {
  int explained = 0;
  for (int code = -3; code < 70000; ++code) {
    const char* text = lorimat_explain(code, "en");
    ASSERT_NE(text, nullptr);
    ASSERT_EQ(text, Joined(code)) << code;
    explained += text[0] != 0 ? 1 : 0;
  }
  EXPECT_GT(explained, 60000);
}

TEST(CFaceExplain, SaysTheClassAndTheCause) {
  EXPECT_STREQ(lorimat_explain(1241, nullptr),
               "class 4: results of the device client of 200 and above\n"
               "Result 217 of the device, RTF_EFPTR_BAD_VAT. The VAT entry or the department does "
               "not exist.");
  EXPECT_STREQ(lorimat_explain(1241, "it"),
               "classe 4: risultati del client del dispositivo da 200 in su\n"
               "Risultato 217 del dispositivo, RTF_EFPTR_BAD_VAT. L'aliquota IVA o il reparto non "
               "esiste.");
  EXPECT_STREQ(lorimat_explain(0, "en"), "The line ran, or held nothing to run.");
}

TEST(CFaceExplain, EverythingIsTranslated) {
  // A code may have parts that read the same in both languages, and none reads the same as a whole.
  for (const language::OwnCode& own : language::OwnCodes()) {
    const std::string english = lorimat_explain(own.code, "en");
    EXPECT_NE(lorimat_explain(own.code, "it"), english) << own.code;
  }
  for (const language::ClientResult& client : language::ClientResults()) {
    const int code = client.result | (client.result < 200 ? 0x200 : 0x400);
    const std::string italian = lorimat_explain(code, "it");
    EXPECT_EQ(italian.find(client.cause), std::string::npos) << italian;
  }
}

TEST(CFaceExplain, LanguagesAreNamedAsLocalesAre) {
  const std::string italian = lorimat_explain(257, "it");
  for (const char* name : {"it_IT.UTF-8", "it-CH", "it@euro", "it.UTF-8"}) {
    EXPECT_EQ(lorimat_explain(257, name), italian) << name;
  }
  for (const char* name : {"", "de", "ita", "IT", "i", "english"}) {
    EXPECT_EQ(lorimat_explain(257, name), nullptr) << name;
  }
}

TEST(CFaceExplain, AnyNumberCanBeAsked) {
  for (const long code : {std::numeric_limits<long>::min(), std::numeric_limits<long>::max(),
                          long{std::numeric_limits<int>::min()}, -1L}) {
    EXPECT_NE(lorimat_explain(code, "it"), nullptr) << code;
  }
}

}  // namespace
