// What regtool does.
#pragma once

#include <iosfwd>

#include "platform/registry.h"
#include "tools/regtool/arguments.h"

namespace regtool {

struct Streams {
  std::istream& input;
  std::ostream& output;
  std::ostream& errors;
};

enum class Outcome { Done, Failed };

// One command other than Help. A failure is told in one line on `errors`.
Outcome RunCommand(platform::Registry& registry, const Arguments& arguments,
                   const Streams& streams);

}  // namespace regtool
