// The process-wide pseudo-random generator. The host seeds it (Randomize, SetRandSeed); the
// library only draws from it, e.g. for link identifiers. Every call is thread-safe: a draw
// advances the shared state atomically, so two threads never receive the same step.
//
//   SetRandSeed(42);
//   int32_t die = Random(6) + 1;  // 1..6, the same sequence for the same seed
#pragma once

#include <cstdint>

namespace vex {

/// Seeds the generator from the system clock, so that every run draws a different sequence.
void Randomize();

/// The current state of the generator. Reading it does not advance the sequence.
int32_t RandSeed();

/// Sets the state of the generator; the same seed gives the same sequence of draws.
void SetRandSeed(int32_t Seed);

/// A uniformly distributed integer in 0 .. Range - 1. Range 0 or below gives 0 (no state is
/// consumed then).
int32_t Random(int32_t Range);

/// A uniformly distributed double in [0, 1), with 32 random bits.
double Random();

}  // namespace vex
