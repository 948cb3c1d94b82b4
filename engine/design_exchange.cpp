#include "engine/design_exchange.h"

namespace engine {

void DesignExchange::Publish(const SoundDesign& design) noexcept {
  slots_[writing_] = design;
  writing_ = between_.exchange(writing_ | kFresh, std::memory_order_acq_rel) & ~kFresh;
}

const SoundDesign* DesignExchange::Take() noexcept {
  if ((between_.load(std::memory_order_relaxed) & kFresh) == 0) {
    return nullptr;
  }
  reading_ = between_.exchange(reading_, std::memory_order_acq_rel) & ~kFresh;
  return &slots_[reading_];
}

}  // namespace engine
