// How often a loop of faults goes round, and with which random numbers.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>

namespace faults {

inline int NumberFromEnvironment(const char* name, int otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::stoi(text);
}

// How often a test's loop goes round: TONALYX_FAULT_ROUNDS times what suits its nature, at least
// once. Kept with the test's result.
inline int Rounds(double factor = 1.0) {
  const int rounds =
      std::max(1, static_cast<int>(factor * NumberFromEnvironment("TONALYX_FAULT_ROUNDS", 10)));
  testing::Test::RecordProperty("rounds", rounds);
  return rounds;
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
