// The source of vtdmake: an error with its place in the text, or a tuning file that the import
// takes as a whole.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "store/tuning_import.h"
#include "tests/fuzz/fuzz_target.h"
#include "tools/vtdmake/json_source.h"
#include "tools/vtdmake/tuning_description.h"
#include "tools/vtdmake/tuning_encoding.h"

namespace {

constexpr std::u16string_view kPath = u"/program/any.vtd";

void RequirePlace(const tools::SourceError& error, std::string_view text) {
  const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
  fuzz::Require(error.position.line >= 1 && error.position.line <= lines,
                "an error lies on a line of the text");
  fuzz::Require(error.position.column >= 1 && error.position.column <= text.size() + 1,
                "an error lies in a column of the text");
}

std::size_t EncodedSize(const tools::TuningDescription& tuning) {
  std::size_t size = 13;
  if (tuning.version == tools::kVersionWithProperties) size += 48;
  for (const tools::TuningRoute& route : tuning.routes) {
    size += 20;
    for (const std::vector<float>& setting : route.settings) size += 4 + 4 * setting.size();
  }
  return size;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::AsText(data, size);
  try {
    const tools::TuningDescription tuning = tools::DescribeTuning(tools::ParseJson(text));
    const std::string file = tools::EncodeTuning(tuning);
    fuzz::Require(file.size() == EncodedSize(tuning), "a file has the size of its parts");
    platform::FakeRegistry registry;
    platform::FakeFileSystem files;
    files.PutFile(kPath, file);
    fuzz::Require(store::TuningImport(registry, files, {}).ImportTuningFile(kPath, tuning.ssid) ==
                      tuning.ssid,
                  "a file that was made is imported");
  } catch (const tools::SourceError& error) {
    RequirePlace(error, text);
  }
  return 0;
}
