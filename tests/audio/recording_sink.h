// A notification sink that remembers what it was told.
#pragma once

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <thread>

#include "platform/endpoint_notifier.h"

namespace support {

class RecordingSink final : public platform::EndpointNotificationSink {
 public:
  using Report = platform::EndpointReport;
  using Kind = platform::EndpointReportKind;

  // `onReport` runs inside every call, before the report is recorded.
  explicit RecordingSink(std::function<void()> onReport = [] {}) : onReport_(std::move(onReport)) {}

  std::uint32_t AddRef() override { return ++references_; }
  std::uint32_t Release() override { return --references_; }
  platform::HResult QueryInterface(const platform::Guid& /*id*/, void** /*object*/) override {
    return platform::HResult::NoInterface;
  }
  platform::HResult OnDeviceStateChanged(std::u16string_view id, std::uint32_t state) override {
    return Record({Kind::StateChanged, std::u16string(id), state});
  }
  platform::HResult OnDeviceAdded(std::u16string_view id) override {
    return Record({Kind::Added, std::u16string(id)});
  }
  platform::HResult OnDeviceRemoved(std::u16string_view id) override {
    return Record({Kind::Removed, std::u16string(id)});
  }
  platform::HResult OnDefaultDeviceChanged(platform::DataFlow /*flow*/,
                                           platform::DeviceRole /*role*/,
                                           std::u16string_view id) override {
    return Record({Kind::DefaultChanged, std::u16string(id)});
  }
  platform::HResult OnPropertyValueChanged(std::u16string_view id,
                                           const platform::PropertyKey& key) override {
    return Record({Kind::PropertyChanged, std::u16string(id), 0, key});
  }

  std::uint32_t References() const { return references_; }

  std::vector<Report> Reports() {
    const std::lock_guard lock(mutex_);
    return reports_;
  }

  void Forget() {
    const std::lock_guard lock(mutex_);
    reports_.clear();
  }

  std::thread::id CallingThread() {
    const std::lock_guard lock(mutex_);
    return caller_;
  }

  // True when the report, or any at all, has come or comes in time.
  bool WaitFor(const Report& report, std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex_);
    return recorded_.wait_for(
        lock, timeout, [&] { return std::ranges::find(reports_, report) != reports_.end(); });
  }
  bool WaitForAny(std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex_);
    return recorded_.wait_for(lock, timeout, [&] { return !reports_.empty(); });
  }

 private:
  platform::HResult Record(Report report) {
    onReport_();
    {
      const std::lock_guard lock(mutex_);
      reports_.push_back(std::move(report));
      caller_ = std::this_thread::get_id();
    }
    recorded_.notify_all();
    return platform::HResult::Ok;
  }

  const std::function<void()> onReport_;
  std::atomic<std::uint32_t> references_ = 1;
  std::mutex mutex_;
  std::condition_variable recorded_;
  std::vector<Report> reports_;
  std::thread::id caller_;
};

}  // namespace support
