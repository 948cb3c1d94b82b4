#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/fake/fake_audio_devices.h"

namespace endpoints {

// Names an endpoint's properties one by one; the others are not there.
class EndpointBuilder {
 public:
  explicit EndpointBuilder(const std::u16string& id) { endpoint_.id = id; }

  EndpointBuilder& State(std::uint32_t state) {
    endpoint_.state = state;
    return *this;
  }
  EndpointBuilder& Guid(const std::u16string& guid) {
    endpoint_.guid = guid;
    return *this;
  }
  EndpointBuilder& Jack(const std::u16string& jackSubType) {
    endpoint_.jackSubType = jackSubType;
    return *this;
  }
  EndpointBuilder& Adapter(const std::u16string& adapter) {
    endpoint_.adapter = adapter;
    return *this;
  }
  EndpointBuilder& Peak(float peak) {
    endpoint_.peak = peak;
    return *this;
  }
  EndpointBuilder& Fails(platform::AudioStep step) {
    endpoint_.failures.insert(step);
    return *this;
  }

  operator platform::FakeEndpoint() const { return endpoint_; }  // NOLINT: that is its purpose

 private:
  platform::FakeEndpoint endpoint_;
};

}  // namespace endpoints
