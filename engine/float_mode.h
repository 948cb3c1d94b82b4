#pragma once

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace engine {

// While it lives, results too small for full precision become 0, as do such operands: a filter that
// rings out would else take a hundred times as long for each of them.
class DenormalsAreZero {
 public:
  DenormalsAreZero(const DenormalsAreZero&) = delete;
  DenormalsAreZero& operator=(const DenormalsAreZero&) = delete;
#ifdef __SSE2__
  DenormalsAreZero() : before_(_mm_getcsr()) {
    _mm_setcsr(before_ | kFlushToZero | kDenormalsAreZero);
  }
  ~DenormalsAreZero() {
    _mm_setcsr(before_);
  }

 private:
  static constexpr unsigned kFlushToZero = 0x8000;
  static constexpr unsigned kDenormalsAreZero = 0x0040;

  unsigned before_;
#else
  DenormalsAreZero() = default;
#endif
};

}  // namespace engine
