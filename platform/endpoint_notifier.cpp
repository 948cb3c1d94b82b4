#include "platform/endpoint_notifier.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

void Call(EndpointNotificationSink& sink, const EndpointReport& report) {
  switch (report.kind) {
    case EndpointReportKind::StateChanged:
      sink.OnDeviceStateChanged(report.deviceId, report.state);
      break;
    case EndpointReportKind::Added:
      sink.OnDeviceAdded(report.deviceId);
      break;
    case EndpointReportKind::Removed:
      sink.OnDeviceRemoved(report.deviceId);
      break;
    case EndpointReportKind::DefaultChanged:
      sink.OnDefaultDeviceChanged(DataFlow::Render, DeviceRole::Console, report.deviceId);
      break;
    case EndpointReportKind::PropertyChanged:
      sink.OnPropertyValueChanged(report.deviceId, report.key);
      break;
  }
}

}  // namespace

EndpointNotifier::~EndpointNotifier() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
  for (EndpointNotificationSink* sink : sinks_) sink->Release();
}

HResult EndpointNotifier::Register(EndpointNotificationSink& sink) {
  const std::lock_guard lock(mutex_);
  if (IsRegistered(&sink)) return HResult::Fail;
  sink.AddRef();
  sinks_.push_back(&sink);
  if (!thread_.joinable()) thread_ = std::thread([this] { Run(); });
  return HResult::Ok;
}

HResult EndpointNotifier::Unregister(EndpointNotificationSink& sink) {
  {
    std::unique_lock lock(mutex_);
    if (!IsRegistered(&sink)) return HResult::Fail;
    std::erase(sinks_, &sink);
    if (sinks_.empty()) queue_.clear();
    if (std::this_thread::get_id() != thread_.get_id()) {
      changed_.wait(lock, [&] { return called_ != &sink; });
    }
  }
  changed_.notify_all();
  sink.Release();
  return HResult::Ok;
}

bool EndpointNotifier::HasSinks() {
  const std::lock_guard lock(mutex_);
  return !sinks_.empty();
}

void EndpointNotifier::Post(EndpointReport report) {
  {
    const std::lock_guard lock(mutex_);
    if (sinks_.empty()) return;
    std::erase(queue_, report);
    queue_.push_back(std::move(report));
  }
  changed_.notify_all();
}

void EndpointNotifier::WaitUntilDelivered() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return queue_.empty() && !delivering_; });
}

void EndpointNotifier::Run() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
    if (stopping_) return;
    const EndpointReport report = std::move(queue_.front());
    queue_.pop_front();
    delivering_ = true;
    Deliver(lock, report);
    delivering_ = false;
    changed_.notify_all();
  }
}

void EndpointNotifier::Deliver(std::unique_lock<std::mutex>& lock, const EndpointReport& report) {
  const std::vector<EndpointNotificationSink*> sinks = sinks_;
  for (EndpointNotificationSink* sink : sinks) {
    // One of the calls before may have unregistered it.
    if (!IsRegistered(sink)) continue;
    called_ = sink;
    lock.unlock();
    Call(*sink, report);
    lock.lock();
    called_ = nullptr;
    changed_.notify_all();
  }
}

bool EndpointNotifier::IsRegistered(const EndpointNotificationSink* sink) const {
  return std::find(sinks_.begin(), sinks_.end(), sink) != sinks_.end();
}

}  // namespace platform
