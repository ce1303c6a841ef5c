// Names in what a browser sends: of hosts, and of the pages that requests come from.
#pragma once

#include <string>
#include <string_view>

namespace lorimat::door {

// A name or an address that a request may have in "Host", without the port: letters, digits, '-'
// and
// '.', or an address of IPv6 in brackets; 253 characters at most.
bool IsHostName(std::string_view name);

// An origin as browsers send it: "https://" or "http://", a host in small letters, and a port but
// for the protocol's own. Not "null", nor one with a path: those no page would ever send.
bool IsOrigin(std::string_view origin);

// In small letters, of ASCII alone.
std::string SmallLetters(std::string_view text);

}  // namespace lorimat::door
