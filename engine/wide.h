// Functions that are compiled for processors with AVX2 as well.
#pragma once

namespace engine {

// The other home's compiler does not keep the stack aligned as wider registers need it.
#if defined(__x86_64__) && !defined(_WIN32)
#define TONALYX_AVX2 [[gnu::target("avx2")]]
inline bool HasAvx2() noexcept {
  return __builtin_cpu_supports("avx2") != 0;
}
#else
#define TONALYX_AVX2
inline bool HasAvx2() noexcept {
  return false;
}
#endif

}  // namespace engine
