#include "platform/linux/audio/uuid5.h"

#include <uuid/uuid.h>

#include <array>
#include <string>

#include "platform/text.h"

namespace platform {

Guid NameToGuid(const Guid& nameSpace, std::string_view name) {
  // Both sides know the written form; their binary layouts differ in the order of bytes.
  const std::string braced = ToUtf8(GuidToString(nameSpace));
  uuid_t space;
  uuid_parse(braced.substr(1, braced.size() - 2).c_str(), space);
  uuid_t made;
  uuid_generate_sha1(made, space, name.data(), name.size());
  std::array<char, UUID_STR_LEN> written{};
  uuid_unparse(made, written.data());
  return *GuidFromString(u"{" + FromUtf8(written.data()) + u"}");
}

}  // namespace platform
