// The shared library under test, loaded for one conversation and unloaded behind it, so
// that each starts from a new translator.
#pragma once

#include <string>

#include "lorimatrt/lorimatrt.h"
#include "recording/conversation/script_text.h"

namespace conversation {

class Library {
 public:
  // Throws Failure when the library or one of its nineteen functions is missing, or when
  // an earlier copy is still loaded.
  explicit Library(const std::string& path);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // Unloads; throws Failure when the library stays in the process all the same.
  void Unload();

  // Calls an export by name with the arguments written, and gives its result and
  // out-parameters. TradInit and EcrCmd are called by their pointers instead.
  Call CallExport(const Call& wanted) const;

  decltype(&::TradInit) TradInit = nullptr;
  decltype(&::EcrCmd) EcrCmd = nullptr;

 private:
  template <typename F>
  void Find(F& function, const char* name);

  std::string path_;
  void* handle_ = nullptr;
  decltype(&::TradClose) TradClose = nullptr;
  decltype(&::GetEcrConfVal) GetEcrConfVal = nullptr;
  decltype(&::GetEcrConfStr) GetEcrConfStr = nullptr;
  decltype(&::GetEnableTradDC) GetEnableTradDC = nullptr;
  decltype(&::SetEnableTradDC) SetEnableTradDC = nullptr;
  decltype(&::GetQuoteChar) GetQuoteChar = nullptr;
  decltype(&::SetQuoteChar) SetQuoteChar = nullptr;
  decltype(&::GetSeparatorChar) GetSeparatorChar = nullptr;
  decltype(&::SetSeparatorChar) SetSeparatorChar = nullptr;
  decltype(&::GetOutEditOptions) GetOutEditOptions = nullptr;
  decltype(&::SetOutEditOptions) SetOutEditOptions = nullptr;
  decltype(&::Trad_DCYEvent) Trad_DCYEvent = nullptr;
  decltype(&::Trad_DCXEvent) Trad_DCXEvent = nullptr;
  decltype(&::Trad_IEvent) Trad_IEvent = nullptr;
  decltype(&::Trad_FileExtEnq) Trad_FileExtEnq = nullptr;
  decltype(&::Trad_RispExtEnq) Trad_RispExtEnq = nullptr;
  decltype(&::Trad_FileExtUpd) Trad_FileExtUpd = nullptr;
};

}  // namespace conversation
