// The names that the panel, the engine and the driver share, as they are written.
#pragma once

#include <string>

namespace support {

inline const std::u16string kSpeaker = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
inline const std::u16string kHeadphones = u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}";
inline const std::u16string kLineConnector = u"{DFF21FE3-F70F-11D0-B917-00A0C9223196}";
inline const std::u16string kSubwoofer = u"{765D256B-701A-44F8-BA7A-4A95AFA7C762}";

inline const std::u16string kProduct = u"SOFTWARE\\Norvane\\Velsona";

inline std::u16string Settings(const std::u16string& route,
                               const std::u16string& tree = u"Parameters") {
  return kProduct + u"\\" + tree + u"\\" + route + u"\\Settings";
}

// The driver's key of the jack state, and the beginning of its values' names.
inline std::u16string JackKey(const std::u16string& endpointGuid) {
  return u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\MMDevices\\Audio\\Render\\" +
         endpointGuid + u"\\FxProperties";
}
inline const std::u16string kJackPrefix = u"{1496451E-75E5-484F-9914-A9F246BC960F},";

inline const std::u16string kMediaClass =
    u"SYSTEM\\CurrentControlSet\\Control\\Class\\{4D36E96C-E325-11CE-BFC1-08002BE10318}";

}  // namespace support
