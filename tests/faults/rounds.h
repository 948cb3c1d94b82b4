// How often a loop of faults goes round, and with which random numbers.
#pragma once

#include <cstdlib>
#include <random>
#include <string>

namespace faults {

inline int NumberFromEnvironment(const char* name, int otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::stoi(text);
}

// TONALYX_FAULT_ROUNDS: the same number for every loop; what is long for its nature counts in parts
// of it.
inline int Rounds() {
  return NumberFromEnvironment("TONALYX_FAULT_ROUNDS", 10);
}

// TONALYX_FAULT_SEED; the same seed makes the same faults, as far as that is in a test's hands.
inline std::mt19937 Random() {
  return std::mt19937(static_cast<unsigned>(NumberFromEnvironment("TONALYX_FAULT_SEED", 1)));
}

// Both ends included.
inline int Between(std::mt19937& random, int low, int high) {
  return std::uniform_int_distribution<int>(low, high)(random);
}

}  // namespace faults
