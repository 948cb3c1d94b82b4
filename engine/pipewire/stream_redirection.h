#pragma once

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/pipewire/graph_watch.h"

namespace engine {

// Sends what programs play to one node, by the word that the session manager listens to, and leaves
// alone what a program or the user has sent somewhere else. Connection's thread, or under its lock.
class StreamRedirection final : public GraphObserver {
 public:
  StreamRedirection(pw_core* core, std::string target);
  ~StreamRedirection();
  StreamRedirection(const StreamRedirection&) = delete;
  StreamRedirection& operator=(const StreamRedirection&) = delete;

  void OnAdded(pw_registry* registry, const GraphObject& object) override;
  void OnRemoved(std::uint32_t id) override;

  // Forgets what was said about streams and asks for all of it. The server tells it before it
  // answers a later question.
  //
  // Words are lost without this, for PipeWire 0.3.65 withholds them from a client that has not yet
  // answered to the stream's coming, such as one that the session manager remembers for the program
  // and says at once, and from every client while another one asks for all.
  void ReadAgain();

  // Takes the word back from every stream, before the node goes. To be called when all was just
  // read again: a word of the user's that was lost would go with the engine's own.
  void TakeBack();

 private:
  // What is said about where a stream goes. Either key may be used for it.
  struct Word {
    std::string type;
    std::string value;
  };
  struct Targets {
    std::optional<Word> object;
    std::optional<Word> node;
    bool isAsked = false;  // the word was given and has not come back yet
  };
  // A stream whose properties are not known yet is bound to hear of them.
  struct Stream {
    Stream(StreamRedirection& redirection, std::uint32_t streamId, pw_registry* registry);
    ~Stream();
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    void Unbind();

    StreamRedirection& owner;
    const std::uint32_t id;
    enum class Choice { Unknown, Open, Made } choice = Choice::Unknown;
    pw_proxy* proxy = nullptr;
    spa_hook listener{};
  };

  // The session manager's, which may end and come back. Tells all words that are said, then new
  // ones.
  struct Metadata {
    Metadata(StreamRedirection& redirection, pw_registry* registry, std::uint32_t metadataId);
    ~Metadata();
    Metadata(const Metadata&) = delete;
    Metadata& operator=(const Metadata&) = delete;

    pw_registry* const registry;
    const std::uint32_t id;
    pw_metadata* const proxy;
    spa_hook listener{};
  };

  static void OnDone(void* redirection, std::uint32_t id, int sequence);
  static void OnNodeInfo(void* stream, const pw_node_info* info);
  static int OnProperty(void* redirection, std::uint32_t subject, const char* key, const char* type,
                        const char* value);
  static const pw_core_events kCoreEvents;
  static const pw_node_events kNodeEvents;
  static const pw_metadata_events kMetadataEvents;

  void BindMetadata(pw_registry* registry, std::uint32_t id);
  void UnbindMetadata();
  void Redirect(std::uint32_t stream);
  void HearObject(std::uint32_t stream, std::optional<Word> word);
  void HearNode(std::uint32_t stream, std::optional<Word> word);
  void PassOn(std::uint32_t stream, Targets& targets);
  bool IsOwn(const std::optional<Word>& word) const;
  void Say(std::uint32_t stream, const char* key, const std::optional<Word>& word) const;

  pw_core* const core_;
  const std::string target_;
  spa_hook coreListener_{};
  std::map<std::uint32_t, std::unique_ptr<Stream>> streams_;
  std::map<std::uint32_t, Targets> targets_;
  std::map<std::string, std::string> serials_;  // of every node, by its number
  std::unique_ptr<Metadata> metadata_;
  std::unique_ptr<Metadata> earlierMetadata_;  // until all is read again
  // What was said before is known once the server has answered this.
  int sync_ = -1;
  bool isKnown_ = false;
};

}  // namespace engine
