// The virtual laptop's file: an error with its place in the text, or a laptop that survives being
// written and read again.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/endpoint_list.h"
#include "platform/virtual/laptop_file.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

void RequirePlace(const platform::LaptopFileError& error, std::string_view text) {
  const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
  fuzz::Require(error.line >= 1 && error.line <= lines, "an error lies on a line of the text");
  fuzz::Require(error.column >= 1 && error.column <= text.size() + 1,
                "an error lies in a column of the text");
  fuzz::Require(!error.message.empty(), "an error has words");
}

void RequireRanges(const platform::LaptopFile& laptop) {
  for (const platform::ListedEndpoint& endpoint :
       laptop.endpoints.value_or(std::vector<platform::ListedEndpoint>())) {
    fuzz::Require(endpoint.level >= 0.0F && endpoint.level <= 1.0F, "levels go from 0 to 1");
    fuzz::Require(endpoint.state == platform::kDeviceStateActive ||
                      endpoint.state == platform::kDeviceStateUnplugged,
                  "an endpoint is active or unplugged");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::AsText(data, size);
  platform::LaptopFileError error;
  const std::optional<platform::LaptopFile> laptop = platform::ParseLaptopFile(text, &error);
  if (!laptop) {
    RequirePlace(error, text);
    return 0;
  }
  RequireRanges(*laptop);
  const std::string written = platform::SerialiseLaptopFile(*laptop);
  const std::optional<platform::LaptopFile> again = platform::ParseLaptopFile(written, &error);
  fuzz::Require(again && platform::SerialiseLaptopFile(*again) == written,
                "a laptop that was written can be read and is the same");
  return 0;
}
