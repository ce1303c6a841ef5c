// The door to the client: no client, and clients that forget their contract.

#include "pal/protocols/lorimat/client_call.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstring>
#include <memory>
#include <stdexcept>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "support/null_client.h"

namespace {

class ThrowingClient : public NullClient {
 public:
  int PrintRecTotalEx(int64_t, const char*, bool) override { throw std::runtime_error("no"); }
  int GetDataInternal(int, char*) override { throw 1; }
  void LogTrace(const char*) override { throw 2; }
};

TEST(ClientCall, AnExceptionOfTheClientIsAFailure) {
  ThrowingClient client;
  auto translator = std::make_unique<EcrCmdCommand>();
  translator->rtfClient_ = &client;
  EXPECT_EQ(translator->Trad_CHIU(), RTF_E_FAILURE | 0x200);
  long value = 5;
  EXPECT_EQ(translator->getDataInternal(1, &value), RTF_E_FAILURE | 0x200);
  EXPECT_EQ(value, 5);
  translator->Log(false, "text");
  translator->LogF(true, "%s", "text");
}

// What a cancelled thread throws is no object, and the sanitizer of undefined behaviour objects to
// the reference to it that the C++ library wants.
#if !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)
// A host may cancel the thread that waits for its device.
class CancelledClient : public NullClient {
 public:
  int PrintRecTotalEx(int64_t, const char*, bool) override {
    pthread_cancel(pthread_self());
    pthread_testcancel();
    return 0;
  }
};

TEST(ClientCall, ACancelledThreadEndsInTheClientsCall) {
  CancelledClient client;
  auto translator = std::make_unique<EcrCmdCommand>();
  translator->rtfClient_ = &client;
  static bool came_back;
  came_back = false;
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    static_cast<EcrCmdCommand*>(argument)->Trad_CHIU();
    came_back = true;
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, nullptr, run, translator.get()), 0);
  void* result = nullptr;
  ASSERT_EQ(pthread_join(thread, &result), 0);
  EXPECT_EQ(result, PTHREAD_CANCELED);
  EXPECT_FALSE(came_back);
}
#endif

class TalkativeClient : public NullClient {
 public:
  // Twice what the contract allows.
  int GetDataInternal(int, char* text) override {
    std::memset(text, '7', 100);
    text[100] = 0;
    return 0;
  }
};

TEST(ClientCall, AClientThatAnswersTooMuchDamagesNothing) {
  TalkativeClient client;
  auto translator = std::make_unique<EcrCmdCommand>();
  translator->rtfClient_ = &client;
  translator->iCurEcrNum = 1;
  EXPECT_EQ(translator->GetEcrConf(1), 0);
  EXPECT_EQ(std::strlen(translator->EcrConfArray[1].szVers), 20u);
  EXPECT_EQ(std::strlen(translator->EcrConfArray[1].szMatr), 32u);
}

TEST(ClientCall, WithoutAClientTheArgumentsAreNotEvaluated) {
  RtfClientInterface* rtfClient_ = nullptr;
  bool evaluated = false;
  const auto argument = [&] {
    evaluated = true;
    return 1;
  };
  EXPECT_EQ(RTF_FP_INVOKE(Claim, argument()), -1);
  EXPECT_EQ(RTF_LD_INVOKE(Claim, argument()), -1);
  EXPECT_EQ(RTF_FP_INVOKE_NI(Claim, argument()), -1);
  EXPECT_EQ(RTF_FP_INVOKE_NP(GetState), -1);
  EXPECT_FALSE(evaluated);
}

}  // namespace
