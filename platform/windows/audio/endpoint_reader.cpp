#include "platform/windows/audio/endpoint_reader.h"

#include <windows.h>

// Needs the one above.
#include <propsys.h>

#include <utility>

#include "platform/windows/audio/meter_interface.h"
#include "platform/windows/audio/property_key.h"
#include "platform/windows/handle.h"
#include "platform/windows/wide_text.h"

namespace platform {
namespace {

using TaskText = OwnedHandle<wchar_t*, &CoTaskMemFree>;

std::u16string IdOf(IMMDevice& device) {
  wchar_t* id = nullptr;
  device.GetId(&id);
  const TaskText owner(id);
  return id == nullptr ? std::u16string() : FromWide(id);
}

// Empty when the property is missing or no string.
std::u16string ReadString(IPropertyStore& properties, const PropertyKey& key) {
  PROPVARIANT value;
  PropVariantInit(&value);
  std::u16string text;
  if (SUCCEEDED(properties.GetValue(ToSystem(key), &value)) && value.vt == VT_LPWSTR) {
    text = FromWide(value.pwszVal);
  }
  PropVariantClear(&value);
  return text;
}

ListedEndpoint ReadEndpoint(IMMDevice& device) {
  ListedEndpoint endpoint{IdOf(device)};
  DWORD state = 0;
  endpoint.state = SUCCEEDED(device.GetState(&state)) ? state : 0;
  ComPointer<IPropertyStore> properties;
  if (SUCCEEDED(device.OpenPropertyStore(STGM_READ, properties.Receive()))) {
    endpoint.guid = ReadString(*properties.Get(), kEndpointGuidProperty);
    endpoint.jackSubType = ReadString(*properties.Get(), kEndpointJackSubTypeProperty);
    endpoint.adapter = ReadString(*properties.Get(), kDeviceInterfaceFriendlyNameProperty);
  }
  return endpoint;
}

}  // namespace

ComPointer<IMMDeviceEnumerator> MakeDeviceEnumerator() {
  ComPointer<IMMDeviceEnumerator> enumerator;
  CoCreateInstance(__uuidof(MMDeviceEnumerator), nullptr, CLSCTX_ALL, __uuidof(IMMDeviceEnumerator),
                   enumerator.ReceiveVoid());
  return enumerator;
}

std::optional<EndpointList> ReadRenderEndpoints() {
  const auto enumerator = MakeDeviceEnumerator();
  ComPointer<IMMDeviceCollection> devices;
  UINT count = 0;
  if (!enumerator ||
      FAILED(enumerator->EnumAudioEndpoints(eRender, DEVICE_STATEMASK_ALL, devices.Receive())) ||
      FAILED(devices->GetCount(&count))) {
    return std::nullopt;
  }
  EndpointList list;
  for (UINT i = 0; i < count; ++i) {
    ComPointer<IMMDevice> device;
    if (SUCCEEDED(devices->Item(i, device.Receive()))) {
      list.endpoints.push_back(ReadEndpoint(*device.Get()));
    }
  }
  ComPointer<IMMDevice> defaultDevice;
  if (SUCCEEDED(enumerator->GetDefaultAudioEndpoint(eRender, eConsole, defaultDevice.Receive()))) {
    list.defaultId = IdOf(*defaultDevice.Get());
  }
  return list;
}

std::optional<float> ReadPeak(const std::u16string& endpointId) {
  const auto enumerator = MakeDeviceEnumerator();
  ComPointer<IMMDevice> device;
  ComPointer<MeterInterface> meter;
  float peak = 0.0F;
  if (!enumerator || FAILED(enumerator->GetDevice(ToWide(endpointId).c_str(), device.Receive())) ||
      FAILED(device->Activate(kMeterInterfaceId, CLSCTX_ALL, nullptr, meter.ReceiveVoid())) ||
      FAILED(meter->GetPeakValue(&peak))) {
    return std::nullopt;
  }
  return peak;
}

}  // namespace platform
