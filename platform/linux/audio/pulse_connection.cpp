#include "platform/linux/audio/pulse_connection.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// With what comes before and after it, a wait stays below a quarter of a second.
constexpr milliseconds kLongestWait{200};

constexpr milliseconds kFirstRetry{500};
constexpr milliseconds kLastRetry{2000};

// Longer than a sink with the largest of buffers takes to hand on what it plays.
constexpr milliseconds kRecordingLinger{2500};

constexpr auto kSubscription = static_cast<pa_subscription_mask_t>(
    PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER | PA_SUBSCRIPTION_MASK_CARD);

pa_usec_t MicrosecondsIn(milliseconds duration) {
  return static_cast<pa_usec_t>(duration.count()) * PA_USEC_PER_MSEC;
}

}  // namespace

// Keeps the main loop still.
class PulseConnection::Lock {
 public:
  explicit Lock(pa_threaded_mainloop* loop) : loop_(loop) { pa_threaded_mainloop_lock(loop_); }
  ~Lock() { pa_threaded_mainloop_unlock(loop_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  pa_threaded_mainloop* loop_;
};

// What a caller waits for, shared with the main loop that may come too late; under `mutex_`.
struct PulseConnection::Answer {
  enum class Progress { Awaited, Given } progress = Progress::Awaited;
  std::optional<PulseState> state;
};

struct PulseConnection::Level {
  // Overdue: a caller has waited in vain.
  enum class Progress { Awaited, Overdue, Given } progress = Progress::Awaited;
  std::optional<float> peak;  // nothing when the recording has ended
};

PulseConnection::PulseConnection(std::string server, OnNews onNews)
    : server_(std::move(server)),
      onNews_(std::move(onNews)),
      loop_(pa_threaded_mainloop_new()),
      retryDelay_(kFirstRetry) {}

PulseConnection::~PulseConnection() {
  pa_threaded_mainloop_stop(loop_);
  CancelTimer(retry_);
  DropContext();
  pa_threaded_mainloop_free(loop_);
}

PulseStatus PulseConnection::Fetch(PulseState* state) {
  const Deadline deadline = steady_clock::now() + kLongestWait;
  const PulseStatus link = WaitForLink(deadline);
  if (link != PulseStatus::Answered) return link;

  const auto answer = std::make_shared<Answer>();
  {
    const Lock lock(loop_);
    if (pa_context_get_state(context_) != PA_CONTEXT_READY) return PulseStatus::NoServer;
    fetches_.remove_if([](const PulseFetch& fetch) { return fetch.IsDone(); });
    fetches_.emplace_back(context_, [this, answer](std::optional<PulseState> fetched) {
      {
        const std::lock_guard guard(mutex_);
        answer->progress = Answer::Progress::Given;
        answer->state = std::move(fetched);
      }
      changed_.notify_all();
      SignOfLife();
    });
  }
  {
    std::unique_lock lock(mutex_);
    const bool woken = changed_.wait_until(lock, deadline, [&] {
      return answer->progress == Answer::Progress::Given || link_ != Link::Ready;
    });
    if (answer->progress == Answer::Progress::Given) {
      if (!answer->state) return PulseStatus::NoServer;
      *state = *std::move(answer->state);
      return PulseStatus::Answered;
    }
    if (woken) return PulseStatus::NoServer;
  }
  DeclareHanging();
  return PulseStatus::NoAnswer;
}

std::optional<float> PulseConnection::Peak(const std::string& monitor) {
  const Deadline deadline = steady_clock::now() + kLongestWait;
  if (WaitForLink(deadline) != PulseStatus::Answered) return std::nullopt;

  std::shared_ptr<Level> level;
  {
    const Lock lock(loop_);
    if (pa_context_get_state(context_) != PA_CONTEXT_READY) return std::nullopt;
    level = Record(monitor);
  }
  {
    std::unique_lock lock(mutex_);
    const auto given = [&] { return level->progress == Level::Progress::Given; };
    if (changed_.wait_until(lock, deadline, given)) return level->peak;
    level->progress = Level::Progress::Overdue;
  }
  bool hangs = false;
  {
    const Lock lock(loop_);
    const auto recording = recordings_.find(monitor);
    hangs = recording != recordings_.end() && recording->second.peak.IsUnanswered();
  }
  if (hangs) DeclareHanging();
  return std::nullopt;
}

std::shared_ptr<PulseConnection::Level> PulseConnection::Record(const std::string& monitor) {
  SetTimer(tidy_, kRecordingLinger, OnTidy);
  auto recording = recordings_.find(monitor);
  if (recording == recordings_.end() || !recording->second.peak.IsGood()) {
    recordings_.erase(monitor);
    const auto level = std::make_shared<Level>();
    const auto onPeak = [this, level](std::optional<float> peak) {
      Level::Progress before = Level::Progress::Given;
      {
        const std::lock_guard guard(mutex_);
        before = std::exchange(level->progress, Level::Progress::Given);
        level->peak = peak;
      }
      changed_.notify_all();
      if (before == Level::Progress::Overdue) onNews_(PulseNews::Recovered);
    };
    recording = recordings_.try_emplace(monitor, context_, monitor, onPeak, level).first;
  }
  recording->second.lastAsked = pa_rtclock_now();
  return recording->second.level;
}

void PulseConnection::OnTidy(pa_mainloop_api* /*api*/, pa_time_event* /*event*/,
                             const timeval* /*time*/, void* connection) {
  auto& self = *static_cast<PulseConnection*>(connection);
  self.CancelTimer(self.tidy_);
  const pa_usec_t now = pa_rtclock_now();
  std::erase_if(self.recordings_, [now](const auto& entry) {
    return now - entry.second.lastAsked >= MicrosecondsIn(kRecordingLinger);
  });
  if (!self.recordings_.empty()) self.SetTimer(self.tidy_, kRecordingLinger, OnTidy);
}

PulseStatus PulseConnection::WaitForLink(Deadline deadline) {
  if (IsHanging()) return PulseStatus::NoAnswer;
  {
    const Lock lock(loop_);
    if (link_ == Link::Unused) pa_threaded_mainloop_start(loop_);
    // A caller is a good reason not to wait for the next attempt.
    if (link_ == Link::Unused || link_ == Link::Lost) Connect();
  }
  std::unique_lock lock(mutex_);
  if (!changed_.wait_until(lock, deadline, [this] { return link_ != Link::Connecting; })) {
    lock.unlock();
    DeclareHanging();
    return PulseStatus::NoAnswer;
  }
  return link_ == Link::Ready ? PulseStatus::Answered : PulseStatus::NoServer;
}

void PulseConnection::Connect() {
  CancelTimer(retry_);
  DropContext();
  SetLink(Link::Connecting);
  context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "Tonalyx");
  pa_context_set_state_callback(context_, OnContextState, this);
  pa_context_set_subscribe_callback(context_, OnSubscription, this);
  const char* server = server_.empty() ? nullptr : server_.c_str();
  // Most failures have told the state callback already.
  const bool failed = pa_context_connect(context_, server, PA_CONTEXT_NOAUTOSPAWN, nullptr) != 0;
  if (failed && link_ == Link::Connecting) HandleLoss();
}

void PulseConnection::OnContextState(pa_context* context, void* connection) {
  auto& self = *static_cast<PulseConnection*>(connection);
  switch (pa_context_get_state(context)) {
    case PA_CONTEXT_READY:
      self.HandleReady();
      break;
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED:
      self.HandleLoss();
      break;
    default:
      break;
  }
}

void PulseConnection::HandleReady() {
  retryDelay_ = kFirstRetry;
  pa_operation* operation = pa_context_subscribe(context_, kSubscription, nullptr, nullptr);
  if (operation != nullptr) pa_operation_unref(operation);
  SetLink(Link::Ready);
  SignOfLife();
  onNews_(PulseNews::Changed);
}

void PulseConnection::HandleLoss() {
  const bool hadServer = link_ == Link::Ready;
  SetLink(Link::Lost);
  // The lost context stays until the next attempt: it is still on the call stack.
  SetTimer(retry_, retryDelay_, OnRetry);
  retryDelay_ = std::min(2 * retryDelay_, kLastRetry);
  // An attempt that failed is no news, and would only lead to the next one.
  if (!hadServer) return;
  SignOfLife();
  onNews_(PulseNews::Changed);
}

void PulseConnection::OnRetry(pa_mainloop_api* /*api*/, pa_time_event* /*event*/,
                              const timeval* /*time*/, void* connection) {
  static_cast<PulseConnection*>(connection)->Connect();
}

void PulseConnection::OnSubscription(pa_context* /*context*/, pa_subscription_event_type_t /*type*/,
                                     std::uint32_t /*index*/, void* connection) {
  static_cast<PulseConnection*>(connection)->onNews_(PulseNews::Changed);
}

// Leaves a timer that runs as it is.
void PulseConnection::SetTimer(pa_time_event*& timer, milliseconds delay,
                               pa_time_event_cb_t callback) {
  if (timer != nullptr) return;
  timer = pa_context_rttime_new(context_, pa_rtclock_now() + MicrosecondsIn(delay), callback, this);
}

void PulseConnection::CancelTimer(pa_time_event*& timer) {
  if (timer == nullptr) return;
  pa_threaded_mainloop_get_api(loop_)->time_free(timer);
  timer = nullptr;
}

void PulseConnection::DropContext() {
  fetches_.clear();
  recordings_.clear();
  CancelTimer(tidy_);
  if (context_ == nullptr) return;
  pa_context_set_state_callback(context_, nullptr, nullptr);
  pa_context_set_subscribe_callback(context_, nullptr, nullptr);
  pa_context_disconnect(context_);
  pa_context_unref(context_);
  context_ = nullptr;
}

void PulseConnection::SetLink(Link link) {
  {
    const std::lock_guard lock(mutex_);
    link_ = link;
  }
  changed_.notify_all();
}

bool PulseConnection::IsHanging() {
  const std::lock_guard lock(mutex_);
  return manner_ == Manner::Hanging;
}

void PulseConnection::DeclareHanging() {
  const Lock loopLock(loop_);
  {
    const std::lock_guard lock(mutex_);
    manner_ = Manner::Hanging;
  }
  StartProbe();
}

// One question stays with a server that hangs, so that its answer tells when it is back. A server
// that is still being connected to tells by the connection.
void PulseConnection::StartProbe() {
  if (pa_context_get_state(context_) != PA_CONTEXT_READY) return;
  const bool asked =
      std::ranges::any_of(fetches_, [](const PulseFetch& fetch) { return !fetch.IsDone(); });
  if (!asked) fetches_.emplace_back(context_, [this](const auto& /*state*/) { SignOfLife(); });
}

void PulseConnection::SignOfLife() {
  {
    const std::lock_guard lock(mutex_);
    if (manner_ == Manner::Prompt) return;
    manner_ = Manner::Prompt;
  }
  onNews_(PulseNews::Recovered);
}

}  // namespace platform
