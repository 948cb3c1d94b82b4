#pragma once

#include "tools/enginemon/monitor_report.h"

namespace tools {

// One object a line; "kind" tells which: ready, event, route, setting, parameter. Numbers that JSON
// does not know are null.
class JsonReport : public MonitorReport {
 public:
  explicit JsonReport(std::ostream& output) : output_(output) {}

  void Ready() override;
  void Event(std::u16string_view name, std::uint64_t time) override;
  void Route(std::u16string_view pathKey) override;
  void Setting(const ActiveSetting& setting) override;
  void Parameter(const ChangedParameter& change) override;

 private:
  std::ostream& output_;
};

}  // namespace tools
