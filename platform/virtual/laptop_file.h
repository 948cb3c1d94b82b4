// The virtual laptop: a JSON file that names present devices and audio endpoints.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/device_list.h"
#include "platform/endpoint_list.h"

namespace platform {

// A list that the file does not have is nothing: the machine's own hardware then stands in.
struct LaptopFile {
  std::optional<std::vector<DeviceRecord>> devices;
  std::optional<std::vector<ListedEndpoint>> endpoints;
  std::u16string defaultEndpoint;
};

// Where a text stops being a virtual laptop, counted from 1; columns count characters.
struct LaptopFileError {
  std::size_t line = 0;
  std::size_t column = 0;
  std::string message;
};

// Members that are unknown are skipped, members that are missing or null keep their initial values.
// Nothing on an error, which `error` then describes.
std::optional<LaptopFile> ParseLaptopFile(std::string_view text, LaptopFileError* error);

// The whole file, with every member that has more than its initial value.
std::string SerialiseLaptopFile(const LaptopFile& laptop);

}  // namespace platform
