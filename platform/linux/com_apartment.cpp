#include "platform/com_apartment.h"

namespace platform {

// There is no apartment to join: the device service here is none of COM's.
ComApartment::ComApartment() : joined_(false) {}
ComApartment::~ComApartment() {}

}  // namespace platform
