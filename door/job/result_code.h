// What a result of the device, or a code of the translator, leaves open.
#pragma once

namespace lorimat::door {

// Whether a result of the device's client says that it has no such operation, or no such thing.
bool IsRefusal(int result);

// Whether a result of the device's client leaves open what the device did: it is no success, and
// does not say either that it refuses.
bool IsUnclearResult(int result);

// The code of the translator for a result of the device's client that is no success.
long CodeOf(int result);

// Whether a result leaves that open, for a code of the translator, which may have come from itself.
bool IsUnclear(long code);

}  // namespace lorimat::door
