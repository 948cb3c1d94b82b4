#include "platform/com_apartment.h"

#include <objbase.h>

namespace platform {

ComApartment::ComApartment() : joined_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}

ComApartment::~ComApartment() {
  if (joined_) CoUninitialize();
}

}  // namespace platform
