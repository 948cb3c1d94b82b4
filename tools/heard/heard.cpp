// heard: makes a sweep to play through the engine, and a picture of what came out of it beside what
// the panel draws.
#include <array>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fake/fake_single_instance.h"
#include "platform/host_tools.h"
#include "platform/shell.h"
#include "platform/startup.h"
#include "platform/text.h"
#include "store/registry_layout.h"
#include "tools/heard/plot_sheet.h"
#include "tools/heard/sweep.h"

namespace {

constexpr std::string_view kUsage =
    R"(usage: heard sweep FILE
       heard check RECORDING
       heard picture OUT.ppm ROUTE NAME:SETTING:EQUALIZER:WHOLE...

`check` fails when a piece of the sweep was lost on its way into the recording.

FILE, RECORDING, EQUALIZER and WHOLE hold two channels of 32-bit floats at 48000 Hz, nothing else. EQUALIZER and
WHOLE are recordings of the sweep through the engine with that setting of ROUTE: with its knobs at
rest, and as it is.
)";

std::vector<float> LeftChannel(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::vector<float> left;
  for (std::array<float, 2> frame{};
       stream.read(reinterpret_cast<char*>(frame.data()), sizeof(frame));) {
    left.push_back(frame[0]);
  }
  return left;
}

bool WriteSweep(const std::string& file) {
  std::ofstream stream(file, std::ios::binary);
  for (const float sample : heard::MakeSweep()) {
    const std::array<float, 2> frame{sample, sample};
    stream.write(reinterpret_cast<const char*>(frame.data()), sizeof(frame));
  }
  return stream.flush().good();
}

// What a parameter that is not stored has is the panel's initial value.
std::vector<float> ReadSetting(platform::Registry& registry, std::u16string_view route,
                               std::u16string_view setting) {
  const auto initial = dsp::InitialParameters();
  std::vector<float> values(initial.begin(), initial.end());
  const auto key = registry.OpenKey(platform::RegistryRoot::LocalMachine,
                                    store::SettingKeyPath(store::Tree::Parameters, route, setting),
                                    store::kReadAccess);
  for (std::size_t i = 0; key && i < values.size(); ++i) {
    std::uint32_t size = sizeof(float);
    static_cast<void>(key->QueryValue(store::ParameterName(i + 1), nullptr, &values[i], &size));
  }
  return values;
}

std::vector<heard::Heard> Measure(const std::string& recording) {
  const std::vector<double> frequencies = heard::PlotFrequencies();
  const std::vector<double> gains =
      heard::MeasureGains(heard::MakeSweep(), LeftChannel(recording), frequencies);
  std::vector<heard::Heard> result;
  for (std::size_t i = 0; i < gains.size(); ++i) result.push_back({frequencies[i], gains[i]});
  return result;
}

std::optional<heard::SettingPlot> ReadPlot(platform::Registry& registry,
                                           const std::u16string& route,
                                           const std::string& description) {
  std::vector<std::string> parts(1);
  for (const char each : description) {
    if (each == ':' && parts.size() < 4) {
      parts.emplace_back();
    } else {
      parts.back() += each;
    }
  }
  if (parts.size() != 4) return std::nullopt;
  return heard::SettingPlot{platform::FromUtf8(parts[0]),
                            ReadSetting(registry, route, platform::FromUtf8(parts[1])),
                            Measure(parts[2]), Measure(parts[3])};
}

bool WritePixels(const platform::Bitmap& picture, const std::string& file) {
  std::ofstream stream(file, std::ios::binary);
  stream << "P6\n" << picture.Width() << ' ' << picture.Height() << "\n255\n";
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    for (std::int32_t x = 0; x < picture.Width(); ++x) {
      const platform::Argb pixel = picture.GetPixel(x, y);
      for (const unsigned shift : {16U, 8U, 0U}) {
        stream.put(static_cast<char>(pixel >> shift & 0xFFU));
      }
    }
  }
  return stream.flush().good();
}

void Report(const heard::SettingPlot& plot) {
  const auto tell = [](std::string_view from, const heard::Heard& worst) {
    std::cout << std::fixed << std::setprecision(3) << worst.gain << " dB from " << from << " at "
              << std::setprecision(0) << worst.frequency << " Hz";
  };
  const heard::WorstDifferences worst = heard::FindWorstDifferences(plot);
  std::cout << platform::ToUtf8(plot.name) << ": at most ";
  tell("the filters", worst.filters);
  std::cout << ", ";
  tell("their picture", worst.drawn);
  std::cout << '\n';
}

int DrawPicture(std::span<const std::string> arguments) {
  const auto registry = platform::OpenHostRegistry();
  const std::u16string route = platform::FromUtf8(arguments[1]);
  std::vector<heard::SettingPlot> plots;
  for (const std::string& description : arguments.subspan(2)) {
    const auto plot = ReadPlot(*registry, route, description);
    if (!plot) {
      std::cerr << kUsage;
      return EXIT_FAILURE;
    }
    Report(*plot);
    plots.push_back(*plot);
  }
  const platform::DrawingSession drawing;
  platform::FakeSingleInstance instance;
  const platform::UserInterfaceSession session(instance);
  return WritePixels(heard::DrawSheet(plots), arguments[0]) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments = platform::CommandLineArguments(argc, argv);
  if (arguments.size() == 2 && arguments[0] == "sweep") {
    return WriteSweep(arguments[1]) ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  if (arguments.size() == 2 && arguments[0] == "check") {
    return heard::IsWhole(heard::MakeSweep(), LeftChannel(arguments[1])) ? EXIT_SUCCESS
                                                                         : EXIT_FAILURE;
  }
  if (arguments.size() >= 4 && arguments[0] == "picture") {
    return DrawPicture(std::span(arguments).subspan(1));
  }
  std::cerr << kUsage;
  return EXIT_FAILURE;
}
