#include "engine/sound_control.h"

#include "engine/sound_design.h"

namespace engine {

void SoundControl::SetSettings(const SoundSettings& settings) {
  const std::lock_guard lock(mutex_);
  if (settings == settings_) return;
  settings_ = settings;
  Publish();
}

void SoundControl::SetRate(std::uint32_t rate) {
  const std::lock_guard lock(mutex_);
  if (rate == rate_) return;
  rate_ = rate;
  Publish();
}

void SoundControl::Publish() {
  if (rate_ != 0) exchange_.Publish(DesignSound(settings_, static_cast<double>(rate_)));
}

}  // namespace engine
