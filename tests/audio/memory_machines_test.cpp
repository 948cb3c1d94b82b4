// The contract on the backends that need no audio server.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/fake/fake_audio_devices.h"
#include "platform/virtual/laptop_file.h"
#include "platform/virtual/virtual_audio_devices.h"
#include "tests/audio/audio_machines.h"
#include "tests/support/temporary_folder.h"

namespace support {
namespace {

constexpr const char16_t* kGuids[] = {u"{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D401}",
                                      u"{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D402}"};
constexpr const char16_t* kSpeakerNode = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";

std::u16string IdOf(int index) {
  return std::u16string(u"{0.0.0.00000000}.") + kGuids[index];
}

class FakeMachine : public AudioMachine {
 public:
  FakeMachine() {
    for (int i = 0; i < 2; ++i) {
      devices_.Add({.id = IdOf(i),
                    .guid = kGuids[i],
                    .jackSubType = kSpeakerNode,
                    .adapter = u"Realtek High Definition Audio"});
    }
    devices_.SetDefault(IdOf(0));
  }

  platform::AudioDevices& Devices() override { return devices_; }
  void MakeDefault(int index) override { devices_.SetDefault(IdOf(index)); }
  void Remove(int index) override { devices_.Remove(IdOf(index)); }

 private:
  platform::FakeAudioDevices devices_;
};

class VirtualMachine : public AudioMachine {
 public:
  VirtualMachine() {
    file_.endpoints.emplace();
    for (int i = 0; i < 2; ++i) {
      file_.endpoints->push_back(
          {IdOf(i), kGuids[i], kSpeakerNode, u"Realtek High Definition Audio"});
    }
    MakeDefault(0);
  }

  platform::AudioDevices& Devices() override { return devices_; }
  void MakeDefault(int index) override {
    file_.defaultEndpoint = IdOf(index);
    Replace();
  }
  void Remove(int index) override {
    std::erase_if(*file_.endpoints,
                  [&](const auto& endpoint) { return endpoint.id == IdOf(index); });
    Replace();
  }

 private:
  void Replace() {
    const std::filesystem::path fresh = folder_.Path() / "fresh";
    std::ofstream(fresh) << platform::SerialiseLaptopFile(file_);
    std::filesystem::rename(fresh, path_);
  }

  TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_.Path() / "laptop.json";
  platform::LaptopFile file_;
  platform::VirtualLaptop laptop_{path_, [](std::string_view line) { ADD_FAILURE() << line; }};
  platform::VirtualAudioDevices devices_{laptop_, platform::MakeFileWatcher(path_)};
};

}  // namespace

std::vector<AudioMachineMaker> AudioMachines() {
  return {&MakeAudioMachine<FakeMachine>, &MakeAudioMachine<VirtualMachine>};
}

}  // namespace support
