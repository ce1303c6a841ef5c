// A table of C functions, each of which makes the call that it gets on a device client of C++: what
// goes through both faces has to come out as it went in.
#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "lorimatrt/lorimat.h"
#include "rpccommon/client/rtfclientinterface.h"

namespace c_face {

// The rooms that the last entry was told, for its texts in their order.
inline std::vector<size_t> told_rooms;

// The place of each parameter among those of C, where a room stands behind every text.
template <typename... Parameters>
constexpr auto PlacesInC() {
  constexpr std::array<bool, sizeof...(Parameters) + 1> is_text = {
      std::is_same_v<Parameters, char*>..., false};
  std::array<size_t, sizeof...(Parameters) + 1> places{};
  for (size_t i = 1; i < places.size(); ++i) places[i] = places[i - 1] + (is_text[i - 1] ? 2 : 1);
  return places;
}

// What an entry gets, as the operation's own parameters.
template <typename... Parameters, typename... InC, size_t... index>
std::tuple<Parameters...> ParametersOf(std::index_sequence<index...>,
                                       [[maybe_unused]] std::tuple<InC...> taken) {
  constexpr auto places = PlacesInC<Parameters...>();
  static_assert(places[sizeof...(Parameters)] == sizeof...(InC));
  return {static_cast<Parameters>(std::get<places[index]>(taken))...};
}

template <auto operation, typename Result, typename... Parameters, typename... InC>
constexpr auto EntryOf(Result (RtfClientInterface::*)(Parameters...), Result (*)(void*, InC...)) {
  return +[](void* user_data, InC... taken) -> Result {
    auto& device = *static_cast<RtfClientInterface*>(user_data);
    told_rooms.clear();
    [[maybe_unused]] const auto note = [](auto argument) {
      if constexpr (std::is_same_v<decltype(argument), size_t>) told_rooms.push_back(argument);
    };
    (note(taken), ...);
    return std::apply([&](Parameters... parameters) { return (device.*operation)(parameters...); },
                      ParametersOf<Parameters...>(std::index_sequence_for<Parameters...>(),
                                                  std::tuple<InC...>(taken...)));
  };
}

inline lorimat_device TableOf(RtfClientInterface& device) {
  lorimat_device table = {};
  table.size = sizeof table;
  table.abi = LORIMAT_ABI;
  table.user_data = &device;
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  table.Name = EntryOf<&RtfClientInterface::Name>(&RtfClientInterface::Name, table.Name);
#include "rpccommon/client/rtfclientoperations.inc"
  return table;
}

}  // namespace c_face
