// laptopctl: writes a virtual laptop's file and plays its driver.

#include <charconv>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host_tools.h"
#include "platform/replace_file.h"
#include "platform/text.h"
#include "platform/virtual/laptop_file.h"
#include "tools/laptopctl/laptop_kinds.h"

namespace {

using Json = nlohmann::ordered_json;
using Arguments = std::vector<std::string>;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongCall = 2;

constexpr std::string_view kUsage =
    R"(usage: laptopctl FILE COMMAND

Writes the file of a virtual laptop (see TONALYX_LAPTOP) and plays its driver.

  new standard|layers|davrin|unsupported   make a laptop of this kind, speaker playing
  plug headphones|lineout|subwoofer        plug something into the default endpoint
  unplug                                   pull it out again
  default ID|none                          choose the default endpoint
  peak ID LEVEL                            let an endpoint play, LEVEL from 0 to 1
  show                                     print the file
)";

int WrongCall(const std::string& message) {
  std::cerr << "laptopctl: " << message << "\n\n" << kUsage;
  return kWrongCall;
}

int Fail(const std::string& message) {
  std::cerr << "laptopctl: " << message << '\n';
  return kFailed;
}

// The file's text and what it says.
struct OpenLaptop {
  std::string text;
  platform::LaptopFile laptop;
};

std::optional<OpenLaptop> Open(const std::string& file) {
  std::ifstream stream(platform::ArgumentPath(file), std::ios::binary);
  OpenLaptop open;
  open.text.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  if (!stream.is_open() || stream.bad()) {
    Fail(file + ": cannot be read");
    return std::nullopt;
  }
  platform::LaptopFileError error;
  const std::optional<platform::LaptopFile> laptop = platform::ParseLaptopFile(open.text, &error);
  if (!laptop) {
    Fail(file + ":" + std::to_string(error.line) + ":" + std::to_string(error.column) + ": " +
         error.message);
    return std::nullopt;
  }
  open.laptop = *laptop;
  return open;
}

int ReplaceOrFail(const std::string& file, const std::string& text) {
  if (platform::ReplaceWholeFile(platform::ArgumentPath(file), text)) return kDone;
  return Fail(file + ": cannot be written");
}

std::optional<std::size_t> IndexOf(const platform::LaptopFile& laptop, const std::string& id) {
  if (!laptop.endpoints) return std::nullopt;
  for (std::size_t i = 0; i < laptop.endpoints->size(); ++i) {
    if (platform::ToUtf8((*laptop.endpoints)[i].id) == id) return i;
  }
  return std::nullopt;
}

int WriteJack(std::u16string_view endpointGuid, const std::vector<platform::JackValue>& values) {
  const auto registry = platform::OpenHostRegistry();
  if (platform::WriteJackValues(*registry, endpointGuid, values)) return kDone;
  return Fail("the registry cannot be written");
}

int New(const std::string& file, const std::string& kind) {
  const std::optional<platform::LaptopFile> laptop = tools::MakeLaptop(kind);
  if (!laptop) return WrongCall("unknown kind of laptop: " + kind);
  const int written = WriteJack(laptop->endpoints->front().guid, tools::FactoryJackValues());
  if (written != kDone) return written;
  return ReplaceOrFail(file, platform::SerialiseLaptopFile(*laptop));
}

int SetJack(const std::string& file, const std::vector<platform::JackValue>& values) {
  const std::optional<OpenLaptop> open = Open(file);
  if (!open) return kFailed;
  const platform::EndpointList endpoints{
      open->laptop.endpoints.value_or(std::vector<platform::ListedEndpoint>()),
      open->laptop.defaultEndpoint};
  const platform::ListedEndpoint* endpoint = endpoints.Default();
  if (endpoint == nullptr || endpoint->guid.empty()) {
    return Fail(file + ": no default endpoint with a GUID");
  }
  return WriteJack(endpoint->guid, values);
}

int SetDefault(const std::string& file, const std::string& id) {
  const std::optional<OpenLaptop> open = Open(file);
  if (!open) return kFailed;
  Json root = Json::parse(open->text);
  if (id == "none") {
    root.erase("defaultEndpoint");
  } else if (IndexOf(open->laptop, id)) {
    root["defaultEndpoint"] = id;
  } else {
    return Fail("no endpoint " + id);
  }
  return ReplaceOrFail(file, root.dump(2) + "\n");
}

int SetPeak(const std::string& file, const std::string& id, const std::string& level) {
  double peak = 0.0;
  const char* const end = level.data() + level.size();
  const std::from_chars_result parsed = std::from_chars(level.data(), end, peak);
  if (parsed.ec != std::errc() || parsed.ptr != end || !(peak >= 0.0 && peak <= 1.0)) {
    return WrongCall("not a level from 0 to 1: " + level);
  }
  const std::optional<OpenLaptop> open = Open(file);
  if (!open) return kFailed;
  const std::optional<std::size_t> index = IndexOf(open->laptop, id);
  if (!index) return Fail("no endpoint " + id);
  Json root = Json::parse(open->text);
  root["endpoints"][*index]["peak"] = peak;
  return ReplaceOrFail(file, root.dump(2) + "\n");
}

int Show(const std::string& file) {
  const std::optional<OpenLaptop> open = Open(file);
  if (!open) return kFailed;
  std::cout << open->text << std::flush;
  return std::cout.good() ? kDone : kFailed;
}

int Run(const Arguments& arguments) {
  if (arguments.size() == 1 && arguments[0] == "--help") {
    std::cout << kUsage;
    return kDone;
  }
  if (arguments.size() < 2) return WrongCall("FILE and COMMAND are needed");
  const std::string& file = arguments[0];
  const std::string& command = arguments[1];
  const Arguments rest(arguments.begin() + 2, arguments.end());
  if (command == "new" && rest.size() == 1) return New(file, rest[0]);
  if (command == "plug" && rest.size() == 1) {
    const auto values = tools::PlugJackValues(rest[0]);
    return values ? SetJack(file, *values) : WrongCall("unknown plug: " + rest[0]);
  }
  if (command == "unplug" && rest.empty()) return SetJack(file, tools::UnplugJackValues());
  if (command == "default" && rest.size() == 1) return SetDefault(file, rest[0]);
  if (command == "peak" && rest.size() == 2) return SetPeak(file, rest[0], rest[1]);
  if (command == "show" && rest.empty()) return Show(file);
  return WrongCall("unknown command, or not with these arguments: " + command);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(platform::CommandLineArguments(argc, argv));
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
}
