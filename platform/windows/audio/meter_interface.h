// The service's meter, which the compiler's own headers name but do not describe.
#pragma once

#include <unknwn.h>

namespace platform {

// IAudioMeterInformation as far as it is called: what follows its first function is left out.
struct MeterInterface : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetPeakValue(float* peak) = 0;
};

inline constexpr IID kMeterInterfaceId{
    0xC02216F6, 0x8C67, 0x4B5B, {0x9D, 0x00, 0xD0, 0x08, 0xE7, 0x3E, 0x00, 0x64}};

}  // namespace platform
