#pragma once

#include <utility>

#include "../../Sha256Lanes.hpp"

#define VOLBRIN_INLINE __attribute__((always_inline)) inline

/// What the kinds of processor have in common. `State`, each processor's own, is one stream's hash
/// in registers: made of a lane, it takes a block in with `begin`, goes through it with
/// `fourRounds<0>` to `fourRounds<15>` and `finish`, and is written back with `store`. It belongs
/// in an unnamed namespace: what is compiled of it here is for that processor only.
namespace volbrin::processor {

template <class State, std::size_t Quad, std::size_t... Lanes>
VOLBRIN_INLINE void fourRoundsOfEach(State* states, std::index_sequence<Lanes...> /*lanes*/) {
  (states[Lanes].template fourRounds<Quad>(), ...);
}

template <class State, std::size_t... Quads, std::size_t... Lanes>
VOLBRIN_INLINE void addBlocks(Sha256Lane* const* lanes, std::size_t blocks,
                              std::index_sequence<Quads...> /*quads*/,
                              std::index_sequence<Lanes...> sequence) {
  State states[] = {State(*lanes[Lanes])...};
  for (std::size_t block = 0; block < blocks; ++block) {
    (states[Lanes].begin(lanes[Lanes]->next + block * sha256BlockBytes), ...);
    (fourRoundsOfEach<State, Quads>(states, sequence), ...);
    (states[Lanes].finish(), ...);
  }
  (states[Lanes].store(*lanes[Lanes]), ...);
  ((lanes[Lanes]->next += blocks * sha256BlockBytes), ...);
}

/// Adds blocks to as many streams as there are lanes.
template <class State>
void addSha256Blocks(Sha256Lane* const* lanes, std::size_t count, std::size_t blocks) {
  constexpr auto quads = std::make_index_sequence<16>();
  static_assert(mostSha256Lanes == 3);
  if (count == 1) addBlocks<State>(lanes, blocks, quads, std::make_index_sequence<1>());
  if (count == 2) addBlocks<State>(lanes, blocks, quads, std::make_index_sequence<2>());
  if (count == 3) addBlocks<State>(lanes, blocks, quads, std::make_index_sequence<3>());
}

}  // namespace volbrin::processor
