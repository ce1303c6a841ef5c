// The operations that this register does not model. Each answers RTF_E_ILLEGAL, so that no
// host takes a missing service for one that worked; docs/register.md tells why.
#include "register/client/virtual_register.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

int NotModelled() { return Refuse(RTF_E_ILLEGAL, RefusalCause::kNotModelled); }

}  // namespace

int VirtualRegister::ResetStatistics(const char*) { return Perform(__func__, NotModelled); }
int VirtualRegister::RetrieveStatistics(const char*) { return Perform(__func__, NotModelled); }
int VirtualRegister::UpdateStatistics(const char*) { return Perform(__func__, NotModelled); }
int VirtualRegister::SetCurrency(int) { return Perform(__func__, NotModelled); }
int VirtualRegister::ZupEcrCmd(const char*, int*, char*) { return Perform(__func__, NotModelled); }
int VirtualRegister::BeginFiscalDocument(int) { return Perform(__func__, NotModelled); }
int VirtualRegister::EndFiscalDocument() { return Perform(__func__, NotModelled); }
int VirtualRegister::PrintFiscalDocumentLine(const char*) { return Perform(__func__, NotModelled); }
int VirtualRegister::BeginInsertion(int) { return Perform(__func__, NotModelled); }
int VirtualRegister::BeginRemoval(int) { return Perform(__func__, NotModelled); }
int VirtualRegister::EndInsertion() { return Perform(__func__, NotModelled); }
int VirtualRegister::EndRemoval() { return Perform(__func__, NotModelled); }
int VirtualRegister::BeginFixedOutput(int, int) { return Perform(__func__, NotModelled); }
int VirtualRegister::EndFixedOutput() { return Perform(__func__, NotModelled); }
int VirtualRegister::PrintFixedOutput(int, int, const char*) {
  return Perform(__func__, NotModelled);
}

}  // namespace lorimat
