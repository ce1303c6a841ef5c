// The layer that writes units of work into the log whole: what is in the file when, and that
// nothing which is held is missed.
#include "register/storage/log_layer.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "register/storage/schema.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

constexpr int kPage = 4096;
constexpr int kFrame = 24 + kPage;
constexpr int kHead = 32;

// A log, opened through the layer as SQLite does it.
class Log {
 public:
  explicit Log(const std::string& name) : name_(name + std::string(4, '\0')) {
    EXPECT_TRUE(LogLayer::Register());
    sqlite3_vfs* layer = sqlite3_vfs_find(LogLayer::kName);
    room_.resize(static_cast<size_t>(layer->szOsFile) / sizeof(std::max_align_t) + 1);
    constexpr int kFlags = SQLITE_OPEN_WAL | SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    // Behind its name a file has a list of parameters.
    EXPECT_EQ(layer->xOpen(layer, name_.c_str(), file(), kFlags, nullptr), SQLITE_OK);
  }
  ~Log() { Close(); }
  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;

  sqlite3_file* file() { return reinterpret_cast<sqlite3_file*>(room_.data()); }
  void Close() {
    if (file()->pMethods != nullptr) file()->pMethods->xClose(file());
    file()->pMethods = nullptr;
  }
  int Write(const std::string& bytes, int64_t at) {
    written_ = at + static_cast<int64_t>(bytes.size());
    return file()->pMethods->xWrite(file(), bytes.data(), static_cast<int>(bytes.size()), at);
  }
  int Read(std::string* bytes, int64_t at) {
    return file()->pMethods->xRead(file(), bytes->data(), static_cast<int>(bytes->size()), at);
  }
  int TakeBack() { return file()->pMethods->xFileControl(file(), LogLayer::kTakenBack, nullptr); }
  int WriteHead() { return Write(std::string(kHead, 'h'), 0); }
  // The next frame, of pages full of `fill`; the last of a unit tells how many pages there are.
  int WriteFrame(char fill, bool last) {
    const int code = Write(FrameHead(fill, last), written_);
    return code != SQLITE_OK ? code : Write(std::string(kPage, fill), written_);
  }
  static std::string FrameHead(char fill, bool last) {
    std::string head(24, fill);
    head.replace(4, 4, last ? std::string("\0\0\0\x05", 4) : std::string(4, '\0'));
    return head;
  }
  static std::string Frame(char fill, bool last) {
    return FrameHead(fill, last) + std::string(kPage, fill);
  }

 private:
  std::string name_;
  std::vector<std::max_align_t> room_;
  int64_t written_ = 0;
};

class LogLayerTest : public StoreTest {
 protected:
  size_t Size() const { return Bytes("log").size(); }
};

TEST_F(LogLayerTest, AUnitIsWrittenWithItsLastFrame) {
  Log log(Path("log"));
  ASSERT_EQ(log.WriteHead(), SQLITE_OK);
  EXPECT_EQ(Size(), kHead);
  for (const char fill : {'a', 'b'}) {
    const size_t before = Size();
    ASSERT_EQ(log.WriteFrame(fill, false), SQLITE_OK);
    ASSERT_EQ(log.WriteFrame(fill, false), SQLITE_OK);
    EXPECT_EQ(Size(), before);
    ASSERT_EQ(log.WriteFrame(fill, true), SQLITE_OK);
    EXPECT_EQ(Size(), before + 3 * kFrame);
  }
  EXPECT_EQ(Bytes("log"), std::string(kHead, 'h') + Log::Frame('a', false) +
                              Log::Frame('a', false) + Log::Frame('a', true) +
                              Log::Frame('b', false) + Log::Frame('b', false) +
                              Log::Frame('b', true));
}

// A log that goes on from before is known behind its first frame.
TEST_F(LogLayerTest, ALogThatWasThereIsGoneOnWith) {
  Write("log", std::string(kHead + kFrame, 'x'));
  Log log(Path("log"));
  ASSERT_EQ(log.Write(Log::FrameHead('a', false), kHead + kFrame), SQLITE_OK);
  EXPECT_EQ(Size(), kHead + kFrame + 24u);
  ASSERT_EQ(log.Write(std::string(kPage, 'a'), kHead + kFrame + 24), SQLITE_OK);
  EXPECT_EQ(Size(), kHead + 2u * kFrame);
  ASSERT_EQ(log.WriteFrame('b', false), SQLITE_OK);
  EXPECT_EQ(Size(), kHead + 2u * kFrame);
  ASSERT_EQ(log.WriteFrame('b', true), SQLITE_OK);
  EXPECT_EQ(Size(), kHead + 4u * kFrame);
}

TEST_F(LogLayerTest, WhateverElseIsDoneFindsAllWritten) {
  struct Case {
    const char* name;
    std::function<int(Log&)> work;
    int left = kFrame;  // of the frame
  };
  const Case cases[] = {
      {"reading of more than is held",
       [](Log& log) {
         std::string bytes(kHead + kFrame, '#');
         EXPECT_EQ(log.Read(&bytes, 0), SQLITE_OK);
         EXPECT_EQ(bytes, std::string(kHead, 'h') + Log::Frame('a', false));
         return SQLITE_OK;
       }},
      {"its size",
       [](Log& log) {
         sqlite3_int64 size = 0;
         const int code = log.file()->pMethods->xFileSize(log.file(), &size);
         EXPECT_EQ(size, kHead + kFrame);
         return code;
       }},
      {"a sync",
       [](Log& log) { return log.file()->pMethods->xSync(log.file(), SQLITE_SYNC_NORMAL); }},
      {"a cut", [](Log& log) { return log.file()->pMethods->xTruncate(log.file(), kHead + 100); },
       100},
      // As a frame is written over whose page changed again within the unit.
      {"a page written over",
       [](Log& log) { return log.Write(std::string(kPage, 'a'), kHead + 24); }},
      {"the head of a frame written over",
       [](Log& log) { return log.Write(Log::FrameHead('a', false), kHead); }},
      {"a new beginning", [](Log& log) { return log.WriteHead(); }},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.name);
    Log log(Path("log"));
    ASSERT_EQ(log.WriteHead(), SQLITE_OK);
    ASSERT_EQ(log.WriteFrame('a', false), SQLITE_OK);
    EXPECT_EQ(Size(), kHead);
    EXPECT_EQ(one.work(log), SQLITE_OK);
    EXPECT_EQ(Bytes("log"), std::string(kHead, 'h') +
                                Log::Frame('a', false).substr(0, static_cast<size_t>(one.left)));
    log.Close();
    std::filesystem::remove(Path("log"));
  }
}

// Nor does it wait for the disk to have room.
TEST_F(LogLayerTest, WhatIsHeldIsReadWithoutAWrite) {
  Log log(Path("log"));
  ASSERT_EQ(log.WriteHead(), SQLITE_OK);
  ASSERT_EQ(log.WriteFrame('a', false), SQLITE_OK);
  ASSERT_EQ(log.WriteFrame('b', false), SQLITE_OK);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  std::string page(kPage, '#');
  EXPECT_EQ(log.Read(&page, kHead + kFrame + 24), SQLITE_OK);
  EXPECT_EQ(page, std::string(kPage, 'b'));
  std::string head(24, '#');
  EXPECT_EQ(log.Read(&head, kHead), SQLITE_OK);
  EXPECT_EQ(head, Log::FrameHead('a', false));
  EXPECT_FALSE(disk.failed());
  EXPECT_EQ(Size(), kHead);
}

// What fails tells of a read, with nothing lost of what was written before; what is not there is
// zeroes.
TEST_F(LogLayerTest, AReadThatFailsSaysSo) {
  Log log(Path("log"));
  ASSERT_EQ(log.WriteHead(), SQLITE_OK);
  ASSERT_EQ(log.WriteFrame('a', false), SQLITE_OK);
  std::string head(kHead, '#');
  disk.FailAt(FailingDisk::Fault::kRead, 1, false);
  EXPECT_EQ(log.Read(&head, 0), SQLITE_IOERR_READ);
  std::string all(kHead + kFrame, '#');
  for (const auto fault : {FailingDisk::Fault::kFull, FailingDisk::Fault::kHalf}) {
    disk.FailAt(fault, 1, false);
    EXPECT_EQ(log.Read(&all, 0), SQLITE_IOERR_READ);
    EXPECT_TRUE(disk.failed());
  }
  std::string beyond(kPage, '#');
  EXPECT_EQ(log.Read(&beyond, kHead + kFrame), SQLITE_IOERR_SHORT_READ);
  EXPECT_EQ(beyond, std::string(kPage, '\0'));
  ASSERT_EQ(log.WriteFrame('b', true), SQLITE_OK);
  EXPECT_TRUE(Bytes("log") ==
              std::string(kHead, 'h') + Log::Frame('a', false) + Log::Frame('b', true));
}

TEST_F(LogLayerTest, NothingOfAUnitThatWasTakenBackIsWrittenLater) {
  for (const bool closed : {false, true}) {
    Log log(Path("log"));
    ASSERT_EQ(log.WriteHead(), SQLITE_OK);
    ASSERT_EQ(log.WriteFrame('a', true), SQLITE_OK);
    ASSERT_EQ(log.WriteFrame('b', false), SQLITE_OK);
    ASSERT_EQ(log.WriteFrame('c', false), SQLITE_OK);
    const std::string stands = std::string(kHead, 'h') + Log::Frame('a', true);
    if (closed) {
      log.Close();
      EXPECT_TRUE(Bytes("log") == stands);
    } else {
      ASSERT_EQ(log.TakeBack(), SQLITE_OK);
      ASSERT_EQ(log.file()->pMethods->xSync(log.file(), SQLITE_SYNC_NORMAL), SQLITE_OK);
      EXPECT_TRUE(Bytes("log") == stands);
      // The next unit has their place, and is held as any.
      ASSERT_EQ(log.Write(Log::FrameHead('d', false), kHead + kFrame), SQLITE_OK);
      ASSERT_EQ(log.Write(std::string(kPage, 'd'), kHead + kFrame + 24), SQLITE_OK);
      EXPECT_TRUE(Bytes("log") == stands);
      ASSERT_EQ(log.WriteFrame('e', true), SQLITE_OK);
      EXPECT_TRUE(Bytes("log") == stands + Log::Frame('d', false) + Log::Frame('e', true));
      log.Close();
    }
    std::filesystem::remove(Path("log"));
  }
}

// No page follows that would take the head along.
TEST_F(LogLayerTest, AHeadThatIsWrittenOverWaitsForNothing) {
  Log log(Path("log"));
  std::string expected = std::string(kHead, 'h') + Log::Frame('a', false) + Log::Frame('a', true);
  ASSERT_EQ(log.WriteHead(), SQLITE_OK);
  ASSERT_EQ(log.WriteFrame('a', false), SQLITE_OK);
  ASSERT_EQ(log.WriteFrame('a', true), SQLITE_OK);
  for (const size_t at : {kHead, kHead + kFrame}) {
    const std::string head = Log::FrameHead('b', at != kHead);
    ASSERT_EQ(log.Write(head, static_cast<int64_t>(at)), SQLITE_OK);
    expected.replace(at, head.size(), head);
    EXPECT_TRUE(Bytes("log") == expected) << at;
  }
}

TEST_F(LogLayerTest, AUnitIsAsLongAsItLikes) {
  constexpr int kFrames = 100;
  Log log(Path("log"));
  std::string expected(kHead, 'h');
  ASSERT_EQ(log.WriteHead(), SQLITE_OK);
  for (int frame = 1; frame <= kFrames; ++frame) {
    const char fill = static_cast<char>('a' + frame % 26);
    ASSERT_EQ(log.WriteFrame(fill, frame == kFrames), SQLITE_OK);
    expected += Log::Frame(fill, frame == kFrames);
  }
  EXPECT_TRUE(Bytes("log") == expected);
}

TEST_F(LogLayerTest, PagesOfEverySizeAreHeld) {
  for (int page = 512; page <= 65536; page *= 2) {
    Log log(Path("log"));
    std::string expected(kHead, 'h');
    ASSERT_EQ(log.WriteHead(), SQLITE_OK);
    int64_t at = kHead;
    for (const bool last : {false, true, true}) {
      const std::string head = Log::FrameHead('a', last);
      const std::string content(static_cast<size_t>(page), 'p');
      ASSERT_EQ(log.Write(head, at), SQLITE_OK);
      ASSERT_EQ(log.Write(content, at + 24), SQLITE_OK);
      at += 24 + page;
      expected += head + content;
      const int64_t written = last ? at : kHead;
      EXPECT_EQ(Size(), static_cast<size_t>(written)) << page;
    }
    EXPECT_TRUE(Bytes("log") == expected) << page;
    log.Close();
    std::filesystem::remove(Path("log"));
  }
}

// The last frame tells of it, and nothing of the unit comes later.
TEST_F(LogLayerTest, AUnitThatCannotBeWrittenIsGivenUp) {
  Log log(Path("log"));
  ASSERT_EQ(log.WriteHead(), SQLITE_OK);
  disk.FailAt(FailingDisk::Fault::kFull, 1, false);
  ASSERT_EQ(log.WriteFrame('a', false), SQLITE_OK);
  EXPECT_EQ(log.WriteFrame('a', true), SQLITE_FULL);
  EXPECT_TRUE(disk.failed());
  EXPECT_EQ(Size(), kHead);
  // The next one takes its place.
  ASSERT_EQ(log.Write(Log::FrameHead('b', false), kHead), SQLITE_OK);
  ASSERT_EQ(log.Write(std::string(kPage, 'b'), kHead + 24), SQLITE_OK);
  ASSERT_EQ(log.WriteFrame('b', true), SQLITE_OK);
  log.Close();
  EXPECT_EQ(Bytes("log"), std::string(kHead, 'h') + Log::Frame('b', false) + Log::Frame('b', true));
}

// Of a commit that others can see all frames are in the file, however many writes it was.
TEST_F(LogLayerTest, AUnitOfManyPagesIsOneWrite) {
  Database database(Path("units"), Database::Open::kCreate, kRegisterKind);
  database.Begin(true);
  database.Execute("CREATE TABLE a (value INTEGER); CREATE TABLE b (value INTEGER)");
  database.Commit();
  const auto change = [&database] {
    database.Begin(false);
    database.Execute("INSERT INTO a VALUES (1); INSERT INTO b VALUES (1)");
    database.Commit();
  };
  change();
  // The second write is none of this unit.
  disk.FailAt(FailingDisk::Fault::kWrite, 2, false);
  EXPECT_NO_THROW(change());
  EXPECT_FALSE(disk.failed());
  EXPECT_THROW(change(), RegisterError);
  EXPECT_TRUE(disk.failed());
  EXPECT_EQ(Sql("units", "SELECT count(*) FROM a"), "2\n");
}

}  // namespace
}  // namespace lorimat
