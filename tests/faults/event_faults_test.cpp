// Events in whose place something else stands: skipped at once, and all the others are set.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "engine_link/engine_signals.h"
#include "engine_link/event_names.h"
#include "platform/fake/fake_audio_devices.h"
#include "platform/fake/fake_registry.h"
#include "platform/linux/events/fifo_events.h"
#include "platform/linux/events/fifo_name.h"
#include "platform/linux/files/file_descriptor.h"
#include "tests/faults/rounds.h"
#include "tests/support/temporary_folder.h"

namespace faults {
namespace {

namespace fs = std::filesystem;
using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr std::array kEndpoints = {u"{one}", u"{two}", u"{three}"};

// Nothing to somebody who waits for a reader. The median has to keep to it: a machine may do
// something else once in a while.
constexpr std::chrono::milliseconds kNoWait(200);

enum class Place { Read, File, Folder, Link, LinkToNothing, Unread, Full };
constexpr std::array kFaults = {Place::File,          Place::Folder, Place::Link,
                                Place::LinkToNothing, Place::Unread, Place::Full};

// An event's place in the folder, with what stands there.
class EventPlace {
 public:
  EventPlace(fs::path path, fs::path otherFifo)
      : path_(std::move(path)), otherFifo_(std::move(otherFifo)) {}

  void Put(Place place) {
    reader_ = platform::FileDescriptor();
    fs::remove(path_);
    place_ = place;
    if (place == Place::File) std::ofstream(path_) << "text";
    if (place == Place::Folder) fs::create_directory(path_);
    if (place == Place::Link) fs::create_symlink(otherFifo_, path_);
    if (place == Place::LinkToNothing) fs::create_symlink(path_.native() + "-nothing", path_);
    if (place == Place::Read || place == Place::Unread || place == Place::Full) {
      ASSERT_EQ(mkfifo(path_.c_str(), 0666), 0);
    }
    if (place == Place::Read || place == Place::Full) {
      reader_ = platform::FileDescriptor(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    }
    if (place == Place::Full) Fill();
  }

  bool IsRead() const { return place_ == Place::Read; }

  // Sets that have arrived since the last look; each is 8 bytes.
  int Take() const {
    std::array<char, 4096> bytes{};
    const ssize_t size = read(reader_.Get(), bytes.data(), bytes.size());
    return size <= 0 ? 0 : static_cast<int>(size / 8);
  }

 private:
  void Fill() const {
    const platform::FileDescriptor writer(open(path_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    const std::array<char, 8> set{};
    while (write(writer.Get(), set.data(), set.size()) > 0) {
    }
  }

  fs::path path_;
  fs::path otherFifo_;
  Place place_ = Place::Read;
  platform::FileDescriptor reader_;
};

class EventFaultsTest : public testing::Test {
 protected:
  EventFaultsTest() {
    fs::create_directory(folder_);
    const fs::path other = temporary_.Path() / "other";
    mkfifo(other.c_str(), 0666);
    otherReader_ = platform::FileDescriptor(open(other.c_str(), O_RDONLY | O_NONBLOCK));
    for (const std::u16string_view guid : kEndpoints) {
      audioDevices_.Add({.id = std::u16string(guid), .guid = std::u16string(guid)});
      for (const std::u16string_view kind : engine_link::kEndpointEvents) {
        AddPlace(engine_link::EndpointEventName(kind, guid), other);
      }
    }
    AddPlace(engine_link::kServiceEvent, other);
  }

  void AddPlace(std::u16string_view name, const fs::path& other) {
    places_.emplace_back(folder_ / platform::FifoName(name), other);
    places_.back().Put(Place::Read);
  }

  microseconds Signal() {
    const auto start = steady_clock::now();
    engine_link::SignalModeChange(engine_);
    return std::chrono::duration_cast<microseconds>(steady_clock::now() - start);
  }

  // Tells the time for one event.
  void ExpectNoWait(std::vector<microseconds> times, const std::string& what) {
    std::ranges::sort(times);
    const microseconds median = times.at(times.size() / 2);
    EXPECT_LT(median, kNoWait) << what;
    RecordProperty("microseconds_" + what, std::to_string(static_cast<double>(median.count()) /
                                                          static_cast<double>(places_.size())));
    RecordProperty("microseconds_at_most_" + what, static_cast<int>(times.back().count()));
  }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "events";
  platform::FileDescriptor otherReader_;
  std::vector<EventPlace> places_;
  platform::FakeRegistry registry_;
  platform::FakeAudioDevices audioDevices_;
  platform::FifoEvents events_{folder_};
  engine_link::EngineLink engine_{registry_, events_, audioDevices_};
};

TEST_F(EventFaultsTest, TheOthersAreSetWhateverStandsInSomePlaces) {
  std::mt19937 random = Random();
  std::vector<microseconds> times;
  const int rounds = Rounds(10);
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    for (EventPlace& place : places_) {
      const bool isFaulty = Between(random, 0, 1) == 0;
      const auto fault = static_cast<std::size_t>(Between(random, 0, std::ssize(kFaults) - 1));
      place.Put(isFaulty ? kFaults.at(fault) : Place::Read);
    }
    times.push_back(Signal());
    for (const EventPlace& place : places_) {
      if (place.IsRead()) {
        EXPECT_EQ(place.Take(), 1);
      }
    }
    char byte = 0;
    EXPECT_LE(read(otherReader_.Get(), &byte, 1), 0) << "no link was followed";
  }
  ExpectNoWait(times, "all");
}

TEST_F(EventFaultsTest, AFaultyPlaceIsSkippedAtOnce) {
  constexpr std::array kNames = {"file", "folder", "link", "link_to_nothing", "unread", "full"};
  for (std::size_t fault = 0; fault < kFaults.size(); ++fault) {
    for (EventPlace& place : places_) place.Put(kFaults.at(fault));
    std::vector<microseconds> times;
    const int rounds = Rounds(20);
    for (int round = 0; round < rounds; ++round) times.push_back(Signal());
    ExpectNoWait(times, kNames.at(fault));
  }
}

TEST_F(EventFaultsTest, APlaceThatChangesAllTheTimeHoldsNobodyUp) {
  std::atomic<bool> isRunning = true;
  EventPlace& changing = places_.at(5);
  std::mt19937 random = Random();
  std::thread somebody([&] {
    while (isRunning) {
      changing.Put(
          kFaults.at(static_cast<std::size_t>(Between(random, 0, std::ssize(kFaults) - 1))));
    }
  });
  std::vector<microseconds> times;
  const int rounds = Rounds(100);
  for (int round = 0; round < rounds; ++round) {
    times.push_back(Signal());
    for (const EventPlace& place : places_) {
      if (&place != &changing) {
        EXPECT_EQ(place.Take(), 1);
      }
    }
  }
  isRunning = false;
  somebody.join();
  ExpectNoWait(times, "all");
}

}  // namespace
}  // namespace faults
