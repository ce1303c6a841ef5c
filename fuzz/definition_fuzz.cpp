// Definition files and lines with their words: the translator beside the model, and then the
// handlers of the same lines. The input: the file, a NUL, the lines, a NUL, the device's answers.
#include "fuzz/hostile_client.h"
#include "fuzz/scratch.h"
#include "fuzz/tally.h"
#include "model/translator_model.h"
#include "model/translator_under_test.h"
#include "pal/protocols/lorimat/dfltmsg.h"

TranslatorUnderTest::TranslatorUnderTest() {
  WriteDefaultMessages(*this);
  rtfClient_ = &client_;
  TStato.bInitOK = true;
}

bool TranslatorUnderTest::Read(const std::string& bytes, const std::filesystem::path& file) {
  WriteInput(file.string(), bytes);
  std::string name = file.string();
  return LeggiFileIni(name.data()) == 1;
}

namespace {

void Compare(TranslatorUnderTest& translator, model::Lines& lines, const std::string& line) {
  using End = model::Lines::End;
  const End end = lines.Run(line);
  std::string buffer = line;
  const int answer = translator.TradEcr(buffer.data());
  int expected = lines.code();
  if (end == End::kNothing) expected = -2;
  if (end == End::kBatch) expected = -1;
  if (end == End::kReached && model::HasHandler(lines.opcode())) {
    expected = kReached + lines.opcode();
  }
  if (answer != expected) {
    Fails("the model says " + std::to_string(expected) + ", the translator " +
          std::to_string(answer) + " to " + line);
  }
  for (int field = 1; field <= MAXCAMPI; ++field) {
    const auto own = lines.fields().find(field);
    Require((own == lines.fields().end() ? "" : own->second) == translator.szCampi[field],
            "the fields are the model's");
    Require(translator.bCampiA[field] == lines.quoted().contains(field),
            "the quoted fields are the model's");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshFolder();
  InputParts parts(data, size);
  const std::string file(parts.Next());
  const std::vector<std::string> lines = LinesOf(parts.Next());

  model::Definition definition;
  auto translator = std::make_unique<TranslatorUnderTest>();
  Require(definition.Read(file, '\'') == translator->Read(file, "words.ini"),
          "the reading ends as the model's does");
  model::Lines model_lines(definition, '\'', ',');
  TheTally().lines += 2 * lines.size();  // the second time with their handlers
  for (const std::string& line : lines) Compare(*translator, model_lines, line);

  HostileClient client(parts.Rest());
  auto whole = std::make_unique<EcrCmdCommand>();
  char name[] = "words.ini";
  whole->TradInit(name, 0, &client, false);
  for (const std::string& line : lines) {
    std::string command = WithoutFolders(line);
    char result[512];
    client.BeginLine();
    whole->EcrCmd(command.data(), result);
  }
  return 0;
}
