// Windows that do one thing after the other by themselves.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "platform/screen.h"
#include "platform/window.h"

namespace support {

inline constexpr std::uint32_t kNextStepMessage = platform::message::kUser + 100;
inline constexpr std::uint32_t kPatienceTimer = 7777;
inline constexpr std::int32_t kScriptEnded = 77;

// A window that runs a script once it is open. A step answers whether it is done; one that is not
// is asked again.
template <class Base>
class Scripted : public Base {
 public:
  using Step = std::function<bool()>;
  using Base::Base;

  void Then(Step step) { steps_.push_back(std::move(step)); }
  void ThenDo(std::function<void()> action) {
    Then([action = std::move(action)] {
      action();
      return true;
    });
  }

  // How many messages of a kind were handled.
  int Received(std::uint32_t message) const {
    const auto it = received_.find(message);
    return it == received_.end() ? 0 : it->second;
  }

  void ClickAt(double x, double y) {
    const double scale = platform::GetScreenDpi().x / 96.0;
    this->Send(platform::message::kLeftButtonDown, 0,
               platform::PointToLParam(
                   {static_cast<std::int32_t>(x * scale), static_cast<std::int32_t>(y * scale)}));
  }

 protected:
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override {
    if (message == kNextStepMessage ||
        (message == platform::message::kTimer && wParam == kPatienceTimer)) {
      this->StopTimer(kPatienceTimer);
      Advance();
      return 0;
    }
    const platform::LResult result = Base::WindowProc(message, wParam, lParam);
    ++received_[message];
    if (message == platform::message::kInitDialog) PostNextStep();
    return result;
  }

 private:
  void PostNextStep() { platform::PostToWindow(this->Handle(), kNextStepMessage, 0, 0); }

  void Advance() {
    const bool late = std::chrono::steady_clock::now() > deadline_;
    if (late) ADD_FAILURE() << "step " << next_ << " is never done";
    const std::size_t before = next_;
    if (late || next_ == steps_.size() || !TryStep()) {
      this->EndDialog(kScriptEnded);
      return;
    }
    if (next_ != before) {
      PostNextStep();
    } else {
      // Something else may have to happen first, which messages that are posted would keep out.
      this->StartTimer(kPatienceTimer, 1);
    }
  }

  // What a step throws must not pass through the toolkit, which called it.
  bool TryStep() {
    try {
      if (steps_[next_]()) ++next_;
      return true;
    } catch (const std::exception& error) {
      ADD_FAILURE() << "step " << next_ << ": " << error.what();
      return false;
    }
  }

  std::vector<Step> steps_;
  std::size_t next_ = 0;
  std::chrono::steady_clock::time_point deadline_ =
      std::chrono::steady_clock::now() + std::chrono::seconds(10);
  std::map<std::uint32_t, int> received_;
};

}  // namespace support
