// The operations that this register does not model. Each answers RTF_E_ILLEGAL, so that no
// host takes a missing service for one that worked; docs/register.md tells why.
#include "register/client/virtual_register.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

int NotModelled() { return Refuse(RTF_E_ILLEGAL, RefusalCause::kNotModelled); }

}  // namespace

int VirtualRegister::ResetStatistics(const char*) {
  return Perform(ClientOperation::kResetStatistics, NotModelled);
}
int VirtualRegister::RetrieveStatistics(const char*) {
  return Perform(ClientOperation::kRetrieveStatistics, NotModelled);
}
int VirtualRegister::UpdateStatistics(const char*) {
  return Perform(ClientOperation::kUpdateStatistics, NotModelled);
}
int VirtualRegister::SetCurrency(int) {
  return Perform(ClientOperation::kSetCurrency, NotModelled);
}
int VirtualRegister::ZupEcrCmd(const char*, int*, char*) {
  return Perform(ClientOperation::kZupEcrCmd, NotModelled);
}
int VirtualRegister::BeginFiscalDocument(int) {
  return Perform(ClientOperation::kBeginFiscalDocument, NotModelled);
}
int VirtualRegister::EndFiscalDocument() {
  return Perform(ClientOperation::kEndFiscalDocument, NotModelled);
}
int VirtualRegister::PrintFiscalDocumentLine(const char*) {
  return Perform(ClientOperation::kPrintFiscalDocumentLine, NotModelled);
}
int VirtualRegister::BeginInsertion(int) {
  return Perform(ClientOperation::kBeginInsertion, NotModelled);
}
int VirtualRegister::BeginRemoval(int) {
  return Perform(ClientOperation::kBeginRemoval, NotModelled);
}
int VirtualRegister::EndInsertion() { return Perform(ClientOperation::kEndInsertion, NotModelled); }
int VirtualRegister::EndRemoval() { return Perform(ClientOperation::kEndRemoval, NotModelled); }
int VirtualRegister::BeginFixedOutput(int, int) {
  return Perform(ClientOperation::kBeginFixedOutput, NotModelled);
}
int VirtualRegister::EndFixedOutput() {
  return Perform(ClientOperation::kEndFixedOutput, NotModelled);
}
int VirtualRegister::PrintFixedOutput(int, int, const char*) {
  return Perform(ClientOperation::kPrintFixedOutput, NotModelled);
}

}  // namespace lorimat
