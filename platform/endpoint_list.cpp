#include "platform/endpoint_list.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace platform {
namespace {

std::optional<std::u16string> TextOrNothing(const std::u16string& text) {
  if (text.empty()) return std::nullopt;
  return text;
}

class ListedPropertyStore : public PropertyStore {
 public:
  explicit ListedPropertyStore(ListedEndpoint endpoint) : endpoint_(std::move(endpoint)) {}

  std::optional<std::u16string> GetString(const PropertyKey& key) override {
    if (key == kEndpointGuidProperty) return TextOrNothing(endpoint_.guid);
    if (key == kEndpointJackSubTypeProperty) return TextOrNothing(endpoint_.jackSubType);
    if (key == kDeviceInterfaceFriendlyNameProperty) return TextOrNothing(endpoint_.adapter);
    return std::nullopt;
  }

 private:
  ListedEndpoint endpoint_;
};

class ListedDevice : public AudioDevice {
 public:
  ListedDevice(ListedEndpoint endpoint, MeterMaker makeMeter)
      : endpoint_(std::move(endpoint)), makeMeter_(std::move(makeMeter)) {}

  std::optional<std::u16string> Id() override { return TextOrNothing(endpoint_.id); }
  std::optional<std::uint32_t> State() override { return endpoint_.state; }

  std::unique_ptr<PropertyStore> OpenPropertyStore() override {
    return std::make_unique<ListedPropertyStore>(endpoint_);
  }

  std::unique_ptr<AudioMeter> ActivateMeter() override { return makeMeter_(endpoint_); }

 private:
  ListedEndpoint endpoint_;
  MeterMaker makeMeter_;
};

class ListedCollection : public AudioDeviceCollection {
 public:
  ListedCollection(std::vector<ListedEndpoint> endpoints, MeterMaker makeMeter)
      : endpoints_(std::move(endpoints)), makeMeter_(std::move(makeMeter)) {}

  std::uint32_t Count() override { return static_cast<std::uint32_t>(endpoints_.size()); }

  std::unique_ptr<AudioDevice> Item(std::uint32_t index) override {
    if (index >= endpoints_.size()) return nullptr;
    return std::make_unique<ListedDevice>(endpoints_[index], makeMeter_);
  }

 private:
  std::vector<ListedEndpoint> endpoints_;
  MeterMaker makeMeter_;
};

const ListedEndpoint* Find(const EndpointList& list, const std::u16string& id) {
  const auto found = std::ranges::find(list.endpoints, id, &ListedEndpoint::id);
  return found == list.endpoints.end() ? nullptr : &*found;
}

void AppendPropertyReports(const ListedEndpoint& before, const ListedEndpoint& after,
                           std::vector<EndpointReport>& reports) {
  const auto report = [&](const PropertyKey& key) {
    reports.push_back({EndpointReportKind::PropertyChanged, after.id, 0, key});
  };
  if (before.guid != after.guid) report(kEndpointGuidProperty);
  if (before.jackSubType != after.jackSubType) report(kEndpointJackSubTypeProperty);
  if (before.adapter != after.adapter) report(kDeviceInterfaceFriendlyNameProperty);
  if (before.level != after.level) report(kEndpointLevelProperty);
}

}  // namespace

const ListedEndpoint* EndpointList::Default() const {
  if (defaultId.empty()) return nullptr;
  const ListedEndpoint* endpoint = Find(*this, defaultId);
  if (endpoint == nullptr || endpoint->state != kDeviceStateActive) return nullptr;
  return endpoint;
}

std::vector<EndpointReport> Differences(const EndpointList& before, const EndpointList& after) {
  std::vector<EndpointReport> reports;
  for (const ListedEndpoint& endpoint : before.endpoints) {
    if (Find(after, endpoint.id) == nullptr) {
      reports.push_back({EndpointReportKind::Removed, endpoint.id});
    }
  }
  for (const ListedEndpoint& endpoint : after.endpoints) {
    if (Find(before, endpoint.id) == nullptr) {
      reports.push_back({EndpointReportKind::Added, endpoint.id});
    }
  }
  for (const ListedEndpoint& endpoint : after.endpoints) {
    const ListedEndpoint* old = Find(before, endpoint.id);
    if (old == nullptr) continue;
    if (old->state != endpoint.state) {
      reports.push_back({EndpointReportKind::StateChanged, endpoint.id, endpoint.state});
    }
    AppendPropertyReports(*old, endpoint, reports);
  }
  const ListedEndpoint* oldDefault = before.Default();
  const ListedEndpoint* newDefault = after.Default();
  const std::u16string oldId = oldDefault == nullptr ? u"" : oldDefault->id;
  const std::u16string newId = newDefault == nullptr ? u"" : newDefault->id;
  if (oldId != newId) reports.push_back({EndpointReportKind::DefaultChanged, newId});
  return reports;
}

std::unique_ptr<AudioDeviceCollection> SelectEndpoints(const EndpointList& list, DataFlow flow,
                                                       std::uint32_t stateMask,
                                                       const MeterMaker& makeMeter) {
  std::vector<ListedEndpoint> selected;
  if (flow == DataFlow::Render) {
    std::ranges::copy_if(
        list.endpoints, std::back_inserter(selected),
        [&](const ListedEndpoint& endpoint) { return (endpoint.state & stateMask) != 0; });
  }
  return std::make_unique<ListedCollection>(std::move(selected), makeMeter);
}

std::unique_ptr<AudioDevice> SelectDefault(const EndpointList& list, DataFlow flow,
                                           const MeterMaker& makeMeter) {
  const ListedEndpoint* endpoint = flow == DataFlow::Render ? list.Default() : nullptr;
  if (endpoint == nullptr) return nullptr;
  return std::make_unique<ListedDevice>(*endpoint, makeMeter);
}

}  // namespace platform
