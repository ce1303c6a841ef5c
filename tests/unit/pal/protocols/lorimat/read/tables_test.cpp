// Dumping the plain tables of devices that keep no promise: texts beyond their records, records
// without end.

#include "unit/support/table_device.h"

namespace {

using TableDumps = TableTest;

TEST_F(TableDumps, ATextBeyondItsRecordIsCut) {
  device.items = {{78, "1"}, {108, "1"}, {75, "1"}};
  translator->pCurConf->iNumSTEN = 1;
  const std::string text(500, 'x');
  device.departments[1].description = text;
  device.groups[1] = {text, text, 0, 0};
  device.subtenders[1].description = text;
  device.headers[1] = text;
  for (const auto& [table, length] :
       std::map<std::string, size_t>{{"1", 127}, {"4", 64}, {"8", 128}, {"9", 63}}) {
    EXPECT_EQ(0, Run("LEGGI FILE='d', TAB=" + table));
    const std::string content = File("d");
    const size_t begin = content.find("'x") + 1;
    EXPECT_EQ(length, content.find('\'', begin) - begin) << table;
  }
}

// Subtenders without end; it ends by itself behind the bound, so that a test without one ends too.
class EndlessSubtenders : public NullClient {
 public:
  int ConfigSubtender(bool, int32_t, uint8_t*, char*, uint8_t*, uint32_t*, uint8_t*) override {
    return ++asked > 65635 ? 107 : 0;
  }
  int asked = 0;
};

TEST_F(TableDumps, SubtendersWithoutEndAreReadToTheBoundOfTheOtherTables) {
  EndlessSubtenders endless;
  translator->rtfClient_ = &endless;
  translator->pCurConf->iNumSTEN = INT32_MAX;
  EXPECT_EQ(0, Run("LEGGI TAB=PAGAMENTI, FILE='d'"));
  EXPECT_EQ(65535, endless.asked);
}

}  // namespace
