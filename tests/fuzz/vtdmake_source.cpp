// The source of vtdmake: an error with its place in the text, or a tuning file that the import
// takes as a whole.
#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "store/tuning_import.h"
#include "tests/fuzz/fuzz_target.h"
#include "tools/vtdmake/json_source.h"
#include "tools/vtdmake/tuning_description.h"
#include "tools/vtdmake/tuning_encoding.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::u16string_view kPath = u"/program/any.vtd";
  const std::string_view text = fuzz::AsText(data, size);
  try {
    const tools::TuningDescription tuning = tools::DescribeTuning(tools::ParseJson(text));
    const std::string file = tools::EncodeTuning(tuning);
    std::size_t expected = tuning.version == tools::kVersionWithProperties ? 61 : 13;
    for (const tools::TuningRoute& route : tuning.routes) {
      expected += 20;
      for (const auto& setting : route.settings) expected += 4 + 4 * setting.size();
    }
    fuzz::Require(file.size() == expected, "a file has the size of its parts");
    platform::FakeRegistry registry;
    platform::FakeFileSystem files;
    files.PutFile(kPath, file);
    fuzz::Require(store::TuningImport(registry, files, {}).ImportTuningFile(kPath, tuning.ssid) ==
                      tuning.ssid,
                  "a file that was made is imported");
  } catch (const tools::SourceError& error) {
    fuzz::RequirePlace(error.position.line, error.position.column, text);
  }
  return 0;
}
