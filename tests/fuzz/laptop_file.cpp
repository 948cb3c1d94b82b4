// The virtual laptop's file: an error with its place in the text, or a laptop that survives being
// written and read again.
#include "platform/virtual/laptop_file.h"

#include "tests/fuzz/fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::AsText(data, size);
  platform::LaptopFileError error;
  const auto laptop = platform::ParseLaptopFile(text, &error);
  if (!laptop) {
    fuzz::RequirePlace(error.line, error.column, text);
    fuzz::Require(!error.message.empty(), "an error has words");
    return 0;
  }
  for (const auto& endpoint : laptop->endpoints.value_or(std::vector<platform::ListedEndpoint>())) {
    fuzz::Require(endpoint.level >= 0.0F && endpoint.level <= 1.0F, "levels go from 0 to 1");
    fuzz::Require(endpoint.state == 1 || endpoint.state == 8, "active or unplugged");
  }
  const std::string written = platform::SerialiseLaptopFile(*laptop);
  const auto again = platform::ParseLaptopFile(written, &error);
  fuzz::Require(again && platform::SerialiseLaptopFile(*again) == written,
                "a laptop that was written can be read and is the same");
  return 0;
}
