#include "console/device/load_trial.h"

#include <dlfcn.h>
#include <elf.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace lorimat::console {
namespace {

using testing::IsEmpty;
using testing::Not;

using FileHeader = ElfW(Ehdr);

// A library that is there wherever the tests are.
std::string SomeLibrary() {
  void* handle = dlopen("libm.so.6", RTLD_LAZY | RTLD_NOLOAD);
  link_map* map = nullptr;
  if (handle == nullptr || dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0) return {};
  std::string path = std::filesystem::canonical(map->l_name);
  dlclose(handle);
  return path;
}

std::string BytesOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

class LoadTrial : public testing::Test {
 protected:
  LoadTrial() {
    char name[] = "/tmp/load-trial-XXXXXX";
    folder_ = mkdtemp(name);
  }
  ~LoadTrial() override { std::filesystem::remove_all(folder_); }

  std::string Write(const std::string& bytes) const {
    std::string path = folder_ + "/some.so";
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    return path;
  }
  static LoadFailure FailureOf(const std::string& path) {
    return TryLoading(path, {}, &Work).failure;
  }
  // Of the library with another value in its header.
  template <typename Value>
  LoadCause CauseWith(size_t place, Value value) const {
    std::string bytes = BytesOf(SomeLibrary());
    bytes.replace(place, sizeof value, reinterpret_cast<const char*>(&value), sizeof value);
    return FailureOf(Write(bytes)).cause;
  }
  static std::string Work(void*) { return "done"; }

  std::string folder_;
};

}  // namespace

TEST_F(LoadTrial, WhatItsWorkReturnsComesBackAndNothingElse) {
  const std::string folder = std::filesystem::current_path();
  int changed = 0;
  const Trial trial = TryLoading(SomeLibrary(), std::vector<const char*>{"cos"}, [&](void* handle) {
    changed = 1;
    std::puts("seen by nobody");
    return std::string(dlsym(handle, "cos") != nullptr ? "found " : "") + std::string(100000, 'x');
  });
  EXPECT_FALSE(trial.failure);
  EXPECT_EQ("found " + std::string(100000, 'x'), trial.report);
  EXPECT_EQ(0, changed);
  EXPECT_EQ(folder, std::filesystem::current_path());
}

TEST_F(LoadTrial, AWorkThatDiesSaysHow) {
  const auto failure = [](const TrialWork& work) {
    return TryLoading(SomeLibrary(), {}, work).failure;
  };
  const LoadFailure killed = failure([](void*) {
    raise(SIGSEGV);
    return std::string();
  });
  EXPECT_EQ(LoadCause::kDiesAtWork, killed.cause);
  EXPECT_EQ(SIGSEGV, killed.numbers[0]);
  const LoadFailure ended = failure([](void*) -> std::string { _exit(0); });
  EXPECT_EQ(LoadCause::kDiesAtWork, ended.cause);
  EXPECT_EQ(0, ended.numbers[0]);
  const LoadFailure thrown = failure([](void*) -> std::string { throw std::runtime_error("x"); });
  EXPECT_EQ(LoadCause::kDiesAtWork, thrown.cause);
}

TEST_F(LoadTrial, AWorkWithoutAnEndIsGivenUp) {
  const Trial trial = TryLoading(
      SomeLibrary(), {},
      [](void*) {
        for (;;) pause();
        return std::string();
      },
      1);
  EXPECT_EQ(LoadCause::kHangs, trial.failure.cause);
  EXPECT_EQ(1, trial.failure.numbers[0]);
  EXPECT_EQ(1, trial.failure.numbers[1]);
}

// Its report is there, and whoever asks for it is told what came behind.
TEST_F(LoadTrial, AnEndThatDiesIsToldBesideTheReport) {
  const Trial trial =
      TryLoading(SomeLibrary(), {}, &Work, kTrialSeconds, [](void*) { raise(SIGSEGV); });
  EXPECT_EQ(LoadCause::kDiesAtEnd, trial.failure.cause);
  EXPECT_EQ(SIGSEGV, trial.failure.numbers[0]);
  EXPECT_EQ("done", trial.report);
  EXPECT_FALSE(TryLoading(SomeLibrary(), {}, &Work, kTrialSeconds, [](void*) {}).failure);
  const Trial hanging = TryLoading(SomeLibrary(), {}, &Work, 1, [](void*) {
    for (;;) pause();
  });
  EXPECT_EQ(LoadCause::kHangs, hanging.failure.cause);
  EXPECT_EQ(2, hanging.failure.numbers[1]);
}

TEST_F(LoadTrial, AFunctionThatIsMissingIsNamed) {
  const LoadFailure failure =
      TryLoading(SomeLibrary(), std::vector<const char*>{"cos", "no_such_function"}, &Work).failure;
  EXPECT_EQ(LoadCause::kLacks, failure.cause);
  EXPECT_EQ("no_such_function", failure.text);
}

TEST_F(LoadTrial, AFileThatIsCutOffSaysWhatIsLeft) {
  const std::string whole = BytesOf(SomeLibrary());
  for (const size_t left : {size_t{16}, size_t{63}, size_t{64}, size_t{4096}, whole.size() / 2}) {
    const LoadFailure failure = FailureOf(Write(whole.substr(0, left)));
    EXPECT_EQ(LoadCause::kCutShort, failure.cause) << left;
    EXPECT_EQ(static_cast<int64_t>(left), failure.numbers[0]);
    EXPECT_GT(failure.numbers[1], failure.numbers[0]);
  }
}

TEST_F(LoadTrial, AFileOfAnotherMachineOrKindIsNone) {
  EXPECT_EQ(LoadCause::kOtherMachine,
            CauseWith(offsetof(FileHeader, e_machine), decltype(FileHeader::e_machine){EM_S390}));
  const unsigned char other_class =
      static_cast<unsigned char>(sizeof(void*) == 8 ? ELFCLASS32 : ELFCLASS64);
  EXPECT_EQ(LoadCause::kOtherMachine, CauseWith(EI_CLASS, other_class));
  EXPECT_EQ(LoadCause::kNoSharedObject,
            CauseWith(offsetof(FileHeader, e_type), decltype(FileHeader::e_type){ET_REL}));
  EXPECT_EQ(LoadCause::kNoSharedObject, FailureOf(Write("")).cause);
  EXPECT_EQ(LoadCause::kNoSharedObject, FailureOf(Write("no library at all\n")).cause);
  EXPECT_EQ(LoadCause::kNoRegularFile, FailureOf(folder_).cause);
  const std::string pipe = folder_ + "/pipe";
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  EXPECT_EQ(LoadCause::kNoRegularFile, FailureOf(pipe).cause);
  const LoadFailure missing = FailureOf(folder_ + "/none");
  EXPECT_EQ(LoadCause::kUnreadable, missing.cause);
  EXPECT_EQ(ENOENT, missing.numbers[0]);
}

// What the tables do not tell: the loader refuses, or falls over what it is given.
TEST_F(LoadTrial, NoDamageOfAFileEndsThisProcess) {
  const std::string whole = BytesOf(SomeLibrary());
  std::set<LoadCause> causes;
  for (size_t place = sizeof(FileHeader); place < 2048; place += 40) {
    std::string bytes = whole;
    bytes.replace(place, 16, 16, '\xA5');
    causes.insert(FailureOf(Write(bytes)).cause);
  }
  EXPECT_THAT(causes, testing::Contains(LoadCause::kDiesAtLoad));
}

TEST(Sentences, EachCauseOfALoadFailureHasOne) {
  for (int cause = 1; cause <= static_cast<int>(LoadCause::kNotTried); ++cause) {
    for (const int64_t number : {0, 1234}) {
      const std::string text =
          LoadFailureText("a\x1B", {static_cast<LoadCause>(cause), {number, 5678}, "why\x1B"});
      EXPECT_THAT(text, Not(IsEmpty())) << cause;
      EXPECT_EQ(text.npos, text.find('\x1B')) << text;
    }
  }
  EXPECT_THAT(LoadFailureText("a", {}), IsEmpty());
}

}  // namespace lorimat::console
