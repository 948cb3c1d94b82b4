// What a panel does with store and engine, without its windows: a process that edits and changes
// the mode as fast as it can, and follows what others change.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "tests/support/forked_process.h"

namespace faults {

struct PanelOrder {
  std::filesystem::path state;
  // Where its standard error goes.
  std::filesystem::path errors;
  std::chrono::milliseconds duration;
  // Its own: nobody else edits this parameter. A band's gain.
  int parameter;
  unsigned seed;
  uid_t user;
};

inline constexpr const char16_t* kCounterKey = u"SOFTWARE\\Norvane\\Counter";
inline const std::string kEndpoint = "{8E5A1C40-93B7-4B52-9F0B-35A5D6A3C6E1}";
inline constexpr const char16_t* kSpeakerRoute = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";

// It begins when it hears something and says 'd' when it is done. When it hears something again, it
// looks whether what it has seen last becomes what the store holds: 'y' or 'n'. Then it says 'y'
// when the last edit of every setting is in the store. The counter's value "count" grows by one
// with every round of every panel; "rounds" and the parameter's number tell this one's share.
std::unique_ptr<support::ForkedProcess> StartPanel(const PanelOrder& order);

}  // namespace faults
