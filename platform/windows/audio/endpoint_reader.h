// What the multimedia device service says at one moment.
#pragma once

#include <mmdeviceapi.h>

#include <optional>
#include <string>

#include "platform/endpoint_list.h"
#include "platform/windows/com_pointer.h"

namespace platform {

// None when the service is not to be had. All here belongs into an apartment.
ComPointer<IMMDeviceEnumerator> MakeDeviceEnumerator();

// Every render endpoint in the service's order, whatever its state, and the console's default.
std::optional<EndpointList> ReadRenderEndpoints();

// The endpoint's level, nothing when it cannot be metered.
std::optional<float> ReadPeak(const std::u16string& endpointId);

}  // namespace platform
