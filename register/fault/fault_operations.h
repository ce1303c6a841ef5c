// What each operation of the device client does to a device: which faults can strike it.
#pragma once

#include <cstdint>

#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat {

// Bits of what an operation does.
enum OperationEffect : unsigned {
  kEffectReads = 0x1,       // asks the device and changes nothing
  kEffectActs = 0x2,        // the device does something
  kEffectPrints = 0x4,      // needs paper and a closed cover
  kEffectOpens = 0x8,       // opens a fiscal document
  kEffectRegisters = 0x10,  // pays or closes: writes to the fiscal memory
  kEffectTotals = 0x20,     // compares or prints a total
};

// All that an operation can do; 0: it is answered on the host's side.
unsigned EffectsOf(ClientOperation operation);
// Whether it answers a result code.
bool AnswersCode(ClientOperation operation);

// What a key does. One that sells opens a document when none is open.
unsigned EffectsOfKey(uint8_t key);

// What a report does that goes to paper (1), a file (2) or both (3).
inline unsigned EffectsOfReport(int32_t outputs) {
  return outputs == 2 ? kEffectActs : kEffectActs | kEffectPrints;
}

// What an operation does that writes a record or reads it.
inline unsigned EffectsOfRecord(bool write) { return write ? kEffectActs : kEffectReads; }

}  // namespace lorimat
