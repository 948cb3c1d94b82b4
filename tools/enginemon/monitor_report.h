// What the monitor prints, line by line, in one of its forms.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string_view>

#include "tools/enginemon/parameter_watch.h"

namespace tools {

class MonitorReport {
 public:
  virtual ~MonitorReport() = default;

  // The events are made.
  virtual void Ready() = 0;
  // An event was set at that time of the monotonic clock, in nanoseconds.
  virtual void Event(std::u16string_view name, std::uint64_t time) = 0;
  // The folder of the route that the default endpoint plays through; empty when there is none.
  virtual void Route(std::u16string_view pathKey) = 0;
  virtual void Setting(const ActiveSetting& setting) = 0;
  virtual void Parameter(const ChangedParameter& change) = 0;
};

enum class ReportForm {
  Plain,  // events; parameters as they are stored
  Units,  // for people: routes by their names, values in their units
  Json,   // the same for programs, one object a line
};

// Every line goes to `output` at once.
std::unique_ptr<MonitorReport> MakeReport(ReportForm form, std::ostream& output);

}  // namespace tools
