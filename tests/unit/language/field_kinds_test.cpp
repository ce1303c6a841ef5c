// The pages say in words what the tables have as data.
#include "language/field_kinds.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "language/command_help.h"

namespace language {
namespace {

// How what a field takes begins on a page.
struct Beginning {
  std::string_view words;
  FieldKind kind;
};

constexpr Beginning kBeginnings[] = {
    {"price", FieldKind::kPrice},
    {"amount", FieldKind::kPrice},
    {"highest price", FieldKind::kPrice},
    {"preset price", FieldKind::kPrice},
    {"percentage", FieldKind::kPercentage},
    {"rate, a percentage", FieldKind::kPercentage},
    {"quantity", FieldKind::kQuantity},
    {"department", FieldKind::kDepartment},
    {"number", FieldKind::kWhole},
    {"flag", FieldKind::kFlag},
    {"bare flag; without effect", FieldKind::kNoEffect},
    {"bare flag", FieldKind::kBareFlag},
    {"yes/no", FieldKind::kYesNo},
};

// The Italian for "number" is that of any number, of a department or of a table.
constexpr Beginning kItalianFlags[] = {
    {"indicatore", FieldKind::kFlag},
    {"solo nome; senza effetto", FieldKind::kNoEffect},
    {"solo nome", FieldKind::kBareFlag},
    {"sì/no", FieldKind::kYesNo},
};

FieldKind KindInWords(const std::string& takes, std::span<const Beginning> beginnings) {
  for (const Beginning& row : beginnings) {
    if (!takes.starts_with(row.words)) continue;
    // "flags of the device" are none.
    const std::string_view behind = std::string_view(takes).substr(row.words.size());
    if (behind.empty() || std::string_view(" :;,").find(behind.front()) != behind.npos) {
      return row.kind;
    }
  }
  return FieldKind::kOther;
}

struct FieldOfPage {
  int opcode;
  FieldHelp help;
};

std::vector<FieldOfPage> FieldsOf(PageLanguage language) {
  std::vector<FieldOfPage> fields;
  for (const CommandGroup& group : command_groups(language)) {
    for (const CommandHelp& command : group.commands) {
      for (const FieldHelp& field : command.fields) fields.push_back({command.id, field});
    }
  }
  return fields;
}

std::string Named(const FieldOfPage& field) {
  return std::to_string(field.opcode) + " " + field.help.names.front() + ": " + field.help.takes;
}

}  // namespace

TEST(FieldKinds, AreThoseThatThePagesTell) {
  for (const FieldOfPage& field : FieldsOf(PageLanguage::kEnglish)) {
    EXPECT_EQ(KindInWords(field.help.takes, kBeginnings),
              field_kind(field.opcode, field.help.number))
        << Named(field);
  }
  for (const FieldOfPage& field : FieldsOf(PageLanguage::kItalian)) {
    const FieldKind kind = field_kind(field.opcode, field.help.number);
    EXPECT_EQ(KindInWords(field.help.takes, kItalianFlags),
              kind < FieldKind::kFlag ? FieldKind::kOther : kind)
        << Named(field);
  }
}

TEST(FieldKinds, TheLimitsOfTextsAreThoseThatThePageTells) {
  size_t told = 0;
  for (const FieldOfPage& field : FieldsOf(PageLanguage::kEnglish)) {
    const size_t limit = text_limit(field.opcode, field.help.number);
    const std::string& takes = field.help.takes;
    if (takes.find("up to ") == takes.npos || takes.find(" characters") == takes.npos) continue;
    ++told;
    // Longer ones are refused, and lose nothing.
    const bool refused = (field.opcode == 30 && field.help.number == 2) ||
                         (field.opcode == 41 && field.help.number == 5);
    EXPECT_EQ(refused, limit == 0) << Named(field);
    const std::string words = "up to " + std::to_string(limit) + " characters";
    EXPECT_EQ(!refused, takes.find(words) != takes.npos) << Named(field);
  }
  EXPECT_GT(told, 20U);
}

TEST(FieldKinds, NamesOfFilesAreMadeSmallWhereThePageSaysSo) {
  for (const FieldOfPage& field : FieldsOf(PageLanguage::kEnglish)) {
    // Its row is about another thing.
    if (field.opcode == 30 && field.help.number == 3) continue;
    EXPECT_EQ(field.help.takes.find("made small letters") != std::string::npos,
              is_made_small(field.opcode, field.help.number))
        << Named(field);
  }
}

TEST(FieldKinds, FilesAreNamedByTheFieldsThatThePageCallsSo) {
  size_t files = 0;
  for (const FieldOfPage& field : FieldsOf(PageLanguage::kEnglish)) {
    const std::string& takes = field.help.takes;
    const bool names_file = takes.starts_with("file") || takes.starts_with("graphic file");
    const FileUse use = file_use(field.opcode, field.help.number);
    EXPECT_EQ(names_file, use != FileUse::kNone) << Named(field);
    // Small letters are the translator's doing, which opens those files itself.
    if (is_made_small(field.opcode, field.help.number)) {
      EXPECT_TRUE(use != FileUse::kNone && use != FileUse::kRead) << Named(field);
    }
    if (names_file) ++files;
  }
  EXPECT_EQ(files, 11U);
}

TEST(FieldKinds, AFieldThatIsNamedAloneIsAFlag) {
  EXPECT_TRUE(is_flag(10, 5));
  EXPECT_TRUE(is_flag(22, 6));
  EXPECT_TRUE(is_flag(15, 2));
  EXPECT_TRUE(is_flag(30, 8));
  EXPECT_FALSE(is_flag(48, 7));
  EXPECT_FALSE(is_flag(53, 4));
  EXPECT_FALSE(is_flag(10, 99));
  EXPECT_EQ(0U, text_limit(10, 99));
}

}  // namespace language
