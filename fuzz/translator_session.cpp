#include "fuzz/translator_session.h"

#include <cstring>
#include <filesystem>

namespace {

// All of a translator is in its members, of fixed size: its bytes are its state.
class Kept {
 public:
  Kept() : translator_(std::make_unique<EcrCmdCommand>()), bytes_(sizeof(EcrCmdCommand)) {
    std::filesystem::create_symlink(LORIMAT_SOURCE_DIR "/language/merkelin.ini", "merkelin.ini");
    char name[] = "merkelin.ini";
    Require(translator_->TradInit(name, 0, nullptr, false) == 0, "the shipped words can be read");
    std::filesystem::remove("merkelin.ini");
    std::memcpy(bytes_.data(), static_cast<const void*>(translator_.get()), bytes_.size());
  }

  void Restore() {
    std::memcpy(static_cast<void*>(translator_.get()), bytes_.data(), bytes_.size());
  }

  EcrCmdCommand& translator() { return *translator_; }

 private:
  std::unique_ptr<EcrCmdCommand> translator_;
  std::vector<char> bytes_;
};

Kept& TheTranslator() {
  static Kept kept;
  return kept;
}

}  // namespace

TranslatorSession::TranslatorSession(RtfClientInterface& client, bool read_configuration) {
  TheTranslator().Restore();
  translator().rtfClient_ = &client;
  if (read_configuration) translator().GetEcrConf(1);
}

EcrCmdCommand& TranslatorSession::translator() { return TheTranslator().translator(); }
