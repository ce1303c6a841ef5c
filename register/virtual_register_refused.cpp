// The operations that this register does not model. Each answers RTF_E_ILLEGAL, so that no
// host takes a missing service for one that worked; docs/register.md tells why.
#include "register/virtual_register.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

int Refuse() { return RTF_E_ILLEGAL; }

}  // namespace

int VirtualRegister::ResetStatistics(const char*) { return Perform(__func__, Refuse); }
int VirtualRegister::RetrieveStatistics(const char*) { return Perform(__func__, Refuse); }
int VirtualRegister::UpdateStatistics(const char*) { return Perform(__func__, Refuse); }
int VirtualRegister::SetCurrency(int) { return Perform(__func__, Refuse); }
int VirtualRegister::ZupEcrCmd(const char*, int*, char*) { return Perform(__func__, Refuse); }
int VirtualRegister::BeginFiscalDocument(int) { return Perform(__func__, Refuse); }
int VirtualRegister::EndFiscalDocument() { return Perform(__func__, Refuse); }
int VirtualRegister::PrintFiscalDocumentLine(const char*) { return Perform(__func__, Refuse); }
int VirtualRegister::BeginInsertion(int) { return Perform(__func__, Refuse); }
int VirtualRegister::BeginRemoval(int) { return Perform(__func__, Refuse); }
int VirtualRegister::EndInsertion() { return Perform(__func__, Refuse); }
int VirtualRegister::EndRemoval() { return Perform(__func__, Refuse); }
int VirtualRegister::BeginFixedOutput(int, int) { return Perform(__func__, Refuse); }
int VirtualRegister::EndFixedOutput() { return Perform(__func__, Refuse); }
int VirtualRegister::PrintFixedOutput(int, int, const char*) { return Perform(__func__, Refuse); }

}  // namespace lorimat
