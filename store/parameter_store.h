// The advanced dialog's copy of the active parameter set and what moves it from and to the
// registry.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/registry.h"
#include "store/registry_layout.h"

namespace store {

// One setting. Element i holds parameter i + 1.
using ParameterSet = std::array<float, kParameterCount>;

// After LoadActiveSet has read a set, and after CommitChanges, `committed` equals `values`.
// User-interface thread.
class ParameterStore {
 public:
  ParameterSet values{};
  // As last read from or written to the registry.
  ParameterSet committed{};
  std::u16string pathKey;
  // Text of "ActiveSetting": the name of the set's key, used as it stands.
  std::u16string activeSetting;
};

// Makes the vendor's key, or repairs its access list, so that every user may later create and write
// what lies below. Failures are silent.
void EnsureVendorKey(platform::Registry& registry);

// Reads the active set of the route `pathKey`. False when the route has no "Settings" key; then
// only `store.pathKey` has changed. A set that does not exist leaves the values as they were and
// counts as success, as does a single value that cannot be read.
bool LoadActiveSet(platform::Registry& registry, std::u16string_view pathKey,
                   ParameterStore& store);

// Writes the values that differ from the committed ones, all in one transaction; creates the set's
// key. A NaN differs always, zeros of either sign are equal. False when the key cannot be had or
// the transaction is lost: then `committed` stays, so the next call writes the values. Failures of
// single values are not reported.
bool CommitChanges(platform::Registry& registry, ParameterStore& store);

// Copies the factory's values over the set in the registry and over `values`, where there are any;
// `committed` stays, so the next commit writes them once more. False, and nothing changed, when one
// of the two sets does not exist or the transaction is lost.
bool CopyDefaultsToActive(platform::Registry& registry, ParameterStore& store);

}  // namespace store
