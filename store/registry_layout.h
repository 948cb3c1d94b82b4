// Where everything lies in the registry tree that the panel shares with the audio engine. All keys
// are below HKEY_LOCAL_MACHINE and are always opened in the 64-bit view.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "dsp/eq_model.h"
#include "platform/registry.h"

namespace store {

// Every read, and every wait for a change.
inline constexpr platform::RegistryAccess kReadAccess =
    platform::kRegistryRead | platform::kRegistryView64;
// A single value of a key that exists.
inline constexpr platform::RegistryAccess kSetValueAccess =
    platform::kRegistrySetValue | platform::kRegistryView64;
// Creating keys and writing parameters.
inline constexpr platform::RegistryAccess kWriteAccess =
    platform::kRegistryAllAccess | platform::kRegistryView64;

inline constexpr std::u16string_view kVendorKey = u"SOFTWARE\\Norvane";
inline constexpr std::u16string_view kProductKey = u"SOFTWARE\\Norvane\\Velsona";
inline constexpr std::u16string_view kMediaClassKey =
    u"SYSTEM\\CurrentControlSet\\Control\\Class\\{4D36E96C-E325-11CE-BFC1-08002BE10318}";

inline constexpr std::u16string_view kHardwareOutputPathValue = u"HardwareOutputPath";
inline constexpr std::u16string_view kActiveSettingValue = u"ActiveSetting";

// The setting that counts as active where "ActiveSetting" cannot be read.
inline constexpr std::u16string_view kDefaultSetting = u"2";

// Buffer for the text of "ActiveSetting", in UTF-16 units.
inline constexpr std::size_t kActiveSettingCapacity = 100;

// The live values of a setting, and the factory's.
enum class Tree { Parameters, Defaults };

// The key of a route that holds "ActiveSetting" and the settings as subkeys.
std::u16string SettingsKeyPath(std::u16string_view pathKey);

// Number of a setting, from 1; its decimal text names the setting's key.
using SettingNumber = std::uint32_t;

// The key of one setting; `setting` is the text of its number.
std::u16string SettingKeyPath(Tree tree, std::u16string_view pathKey, std::u16string_view setting);

// Parameters of a setting, numbered from 1.
using dsp::kParameterCount;

// "Param%d" for a number from 1 to kParameterCount. The text lives as long as the program.
std::u16string_view ParameterName(std::size_t number);

// The same for any number: files may hold more parameters than the engine knows.
std::u16string FormatParameterName(std::uint32_t number);

std::u16string DecimalText(std::uint32_t number);

}  // namespace store
