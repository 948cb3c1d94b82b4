#include "engine/pipewire/stream_redirection.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace engine {
namespace {

constexpr const char* kTargetObject = "target.object";
constexpr const char* kTargetNode = "target.node";
constexpr const char* kNameType = "Spa:String";

// Either says that the program that plays, or a filter that it is a part of, has decided where to.
constexpr std::array kChoices = {kTargetObject, "node.target", PW_KEY_NODE_DONT_RECONNECT,
                                 PW_KEY_NODE_LINK_GROUP};

bool IsSet(const spa_dict* properties, const char* key) {
  const char* value = spa_dict_lookup(properties, key);
  return value != nullptr && std::string_view(value) != "false" && std::string_view(value) != "-1";
}

// The default sink by the user's own word is what the redirection stands for anyway.
template <typename Word>
bool IsElsewhere(const std::optional<Word>& word) {
  return word && word->value != "-1";
}

}  // namespace

const pw_core_events StreamRedirection::kCoreEvents = [] {
  pw_core_events events{};
  events.version = PW_VERSION_CORE_EVENTS;
  events.done = OnDone;
  return events;
}();

const pw_node_events StreamRedirection::kNodeEvents = [] {
  pw_node_events events{};
  events.version = PW_VERSION_NODE_EVENTS;
  events.info = OnNodeInfo;
  return events;
}();

const pw_metadata_events StreamRedirection::kMetadataEvents = {PW_VERSION_METADATA_EVENTS,
                                                               OnProperty};

StreamRedirection::Stream::Stream(StreamRedirection& redirection, std::uint32_t streamId,
                                  pw_registry* registry)
    : owner(redirection),
      id(streamId),
      proxy(static_cast<pw_proxy*>(
          pw_registry_bind(registry, streamId, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0))) {
  if (proxy != nullptr) {
    pw_node_add_listener(reinterpret_cast<pw_node*>(proxy), &listener, &kNodeEvents, this);
  }
}

StreamRedirection::Stream::~Stream() {
  Unbind();
}

void StreamRedirection::Stream::Unbind() {
  if (proxy == nullptr) return;
  spa_hook_remove(&listener);
  pw_proxy_destroy(std::exchange(proxy, nullptr));
}

StreamRedirection::Metadata::Metadata(StreamRedirection& redirection, pw_registry* boundRegistry,
                                      std::uint32_t metadataId)
    : registry(boundRegistry),
      id(metadataId),
      proxy(static_cast<pw_metadata*>(
          pw_registry_bind(registry, id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0))) {
  if (proxy != nullptr) pw_metadata_add_listener(proxy, &listener, &kMetadataEvents, &redirection);
}

StreamRedirection::Metadata::~Metadata() {
  if (proxy == nullptr) return;
  spa_hook_remove(&listener);
  pw_proxy_destroy(reinterpret_cast<pw_proxy*>(proxy));
}

StreamRedirection::StreamRedirection(pw_core* core, std::string target)
    : core_(core), target_(std::move(target)) {
  pw_core_add_listener(core_, &coreListener_, &kCoreEvents, this);
}

StreamRedirection::~StreamRedirection() {
  UnbindMetadata();
  spa_hook_remove(&coreListener_);
}

void StreamRedirection::OnAdded(pw_registry* registry, const GraphObject& object) {
  if (object.type == PW_TYPE_INTERFACE_Metadata &&
      object.Property(PW_KEY_METADATA_NAME) == "default") {
    UnbindMetadata();
    BindMetadata(registry, object.id);
  }
  if (object.type != PW_TYPE_INTERFACE_Node) return;
  serials_[std::to_string(object.id)] = object.Property(PW_KEY_OBJECT_SERIAL);
  if (object.Property(PW_KEY_MEDIA_CLASS) == "Stream/Output/Audio") {
    streams_[object.id] = std::make_unique<Stream>(*this, object.id, registry);
  }
}

void StreamRedirection::OnRemoved(std::uint32_t id) {
  if (metadata_ && id == metadata_->id) UnbindMetadata();
  streams_.erase(id);
  targets_.erase(id);
  serials_.erase(std::to_string(id));
}

void StreamRedirection::TakeBack() {
  for (const auto& [id, targets] : targets_) {
    if (IsOwn(targets.object) || targets.isAsked) Say(id, kTargetObject, std::nullopt);
  }
  // What programs start from now on plays as if there were no engine.
  UnbindMetadata();
}

void StreamRedirection::ReadAgain() {
  if (!metadata_) return;
  for (auto& [stream, targets] : targets_) {
    targets.object.reset();
    targets.node.reset();
  }
  isKnown_ = false;
  BindMetadata(metadata_->registry, metadata_->id);
}

void StreamRedirection::BindMetadata(pw_registry* registry, std::uint32_t id) {
  auto metadata = std::make_unique<Metadata>(*this, registry, id);
  if (metadata->proxy == nullptr) return;
  earlierMetadata_ = std::exchange(metadata_, std::move(metadata));
  sync_ = pw_core_sync(core_, PW_ID_CORE, 0);
}

void StreamRedirection::UnbindMetadata() {
  targets_.clear();
  isKnown_ = false;
  metadata_.reset();
  earlierMetadata_.reset();
}

// Whatever was asked for before the question is a part of the answer.
void StreamRedirection::OnDone(void* redirection, std::uint32_t id, int sequence) {
  auto& self = *static_cast<StreamRedirection*>(redirection);
  if (id != PW_ID_CORE || sequence != self.sync_ || !self.metadata_) return;
  self.isKnown_ = true;
  self.earlierMetadata_.reset();
  for (auto& [stream, targets] : self.targets_) targets.isAsked = false;
  for (const auto& [stream, unused] : self.streams_) self.Redirect(stream);
}

void StreamRedirection::OnNodeInfo(void* stream, const pw_node_info* info) {
  auto& self = *static_cast<Stream*>(stream);
  if (info->props == nullptr || self.choice != Stream::Choice::Unknown) return;
  const bool isMade =
      std::ranges::any_of(kChoices, [info](const char* key) { return IsSet(info->props, key); });
  self.choice = isMade ? Stream::Choice::Made : Stream::Choice::Open;
  self.Unbind();
  if (!isMade) self.owner.ReadAgain();
}

int StreamRedirection::OnProperty(void* redirection, std::uint32_t subject, const char* key,
                                  const char* type, const char* value) {
  auto& self = *static_cast<StreamRedirection*>(redirection);
  std::optional<Word> word;
  if (value != nullptr) word = Word{type == nullptr ? "" : type, value};
  // Without a key all that was said about the subject is gone.
  if (key == nullptr || std::string_view(key) == kTargetNode) self.HearNode(subject, word);
  if (key == nullptr || std::string_view(key) == kTargetObject) self.HearObject(subject, word);
  return 0;
}

void StreamRedirection::Redirect(std::uint32_t stream) {
  const auto found = streams_.find(stream);
  if (!isKnown_ || found == streams_.end() || found->second->choice != Stream::Choice::Open) return;
  Targets& targets = targets_[stream];
  const bool isTaken = targets.isAsked || IsOwn(targets.object);
  if (isTaken || IsElsewhere(targets.object) || IsElsewhere(targets.node)) return;
  targets.isAsked = true;
  Say(stream, kTargetObject, Word{kNameType, target_});
}

void StreamRedirection::HearObject(std::uint32_t stream, std::optional<Word> word) {
  Targets& targets = targets_[stream];
  targets.object = std::move(word);
  if (IsOwn(targets.object)) {
    targets.isAsked = false;
    PassOn(stream, targets);
  } else if (IsElsewhere(targets.object)) {
    // Said before the redirection reached the session manager, which then took it for the last
    // word.
    if (std::exchange(targets.isAsked, false)) Say(stream, kTargetObject, targets.object);
  } else {
    Redirect(stream);
  }
}

void StreamRedirection::HearNode(std::uint32_t stream, std::optional<Word> word) {
  Targets& targets = targets_[stream];
  targets.node = std::move(word);
  if (IsElsewhere(targets.node)) {
    PassOn(stream, targets);
  } else {
    Redirect(stream);
  }
}

// What the other key says counts more, so that a word by this one is said with it too. The session
// manager remembers a node that is meant by its serial number for the program's next stream.
void StreamRedirection::PassOn(std::uint32_t stream, Targets& targets) {
  if (!IsElsewhere(targets.node) || !(targets.isAsked || IsOwn(targets.object))) return;
  const auto meant = serials_.find(targets.node->value);
  if (meant == serials_.end()) return;
  targets.isAsked = false;
  targets.object = Word{targets.node->type, meant->second};
  Say(stream, kTargetObject, targets.object);
}

bool StreamRedirection::IsOwn(const std::optional<Word>& word) const {
  return word && word->value == target_;
}

void StreamRedirection::Say(std::uint32_t stream, const char* key,
                            const std::optional<Word>& word) const {
  pw_metadata_set_property(metadata_->proxy, stream, key, word ? word->type.c_str() : nullptr,
                           word ? word->value.c_str() : nullptr);
}

}  // namespace engine
