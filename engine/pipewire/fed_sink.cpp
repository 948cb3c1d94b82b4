#include "engine/pipewire/fed_sink.h"

#include <charconv>
#include <string_view>
#include <utility>

namespace engine {
namespace {

std::uint32_t ToId(std::string_view text) {
  std::uint32_t id = PW_ID_ANY;
  std::from_chars(text.data(), text.data() + text.size(), id);
  return id;
}

}  // namespace

void FedSink::OnAdded(pw_registry* /*registry*/, const GraphObject& object) {
  if (object.type == PW_TYPE_INTERFACE_Node) nodes_[object.id] = object.Property(PW_KEY_NODE_NAME);
  if (object.type == PW_TYPE_INTERFACE_Link) {
    links_[object.id] = {ToId(object.Property(PW_KEY_LINK_OUTPUT_NODE)),
                         ToId(object.Property(PW_KEY_LINK_INPUT_NODE))};
    Update();
  }
}

void FedSink::OnRemoved(std::uint32_t id) {
  nodes_.erase(id);
  if (links_.erase(id) != 0) Update();
}

void FedSink::Update() {
  std::string name = Find();
  if (name == name_) return;
  name_ = std::move(name);
  streams_.TellSink(name_);
}

std::string FedSink::Find() const {
  for (const auto& [id, link] : links_) {
    if (link.from != streams_.PlaybackNode()) continue;
    const auto node = nodes_.find(link.to);
    if (node != nodes_.end()) return node->second;
  }
  return {};
}

}  // namespace engine
