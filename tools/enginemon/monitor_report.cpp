#include "tools/enginemon/monitor_report.h"

#include <array>
#include <cstdio>
#include <ostream>
#include <string>

#include "platform/text.h"
#include "store/route_name.h"
#include "tools/enginemon/json_report.h"
#include "tools/enginemon/parameter_meaning.h"

namespace tools {
namespace {

class PlainReport : public MonitorReport {
 public:
  explicit PlainReport(std::ostream& output) : output_(output) {}

  void Ready() override { output_ << "ready" << std::endl; }
  void Event(std::u16string_view name, std::uint64_t /*time*/) override {
    output_ << platform::ToUtf8(name) << std::endl;
  }
  void Route(std::u16string_view /*pathKey*/) override {}
  void Setting(const ActiveSetting& /*setting*/) override {}
  void Parameter(const ChangedParameter& change) override {
    std::array<char, 32> value{};
    std::snprintf(value.data(), value.size(), "%.9g", static_cast<double>(change.value));
    output_ << "  " << platform::ToUtf8(change.pathKey) << ' ' << platform::ToUtf8(change.setting)
            << " Param" << change.number << ' ' << value.data() << std::endl;
  }

 protected:
  std::ostream& Output() { return output_; }

 private:
  std::ostream& output_;
};

std::string MeaningText(const ParameterMeaning& meaning) {
  if (meaning.band == 0) return std::string(meaning.name);
  const std::string_view copy =
      meaning.copy == ParameterMeaning::Copy::Mirror ? "mirror band " : "band ";
  return std::string(copy) + std::to_string(meaning.band) + ' ' + std::string(meaning.name);
}

class UnitsReport : public PlainReport {
 public:
  using PlainReport::PlainReport;

  void Route(std::u16string_view pathKey) override {
    Output() << "  route: "
             << (pathKey.empty() ? "none, no default endpoint" : store::RouteName(pathKey))
             << std::endl;
  }
  void Setting(const ActiveSetting& setting) override {
    Output() << "  " << store::RouteName(setting.pathKey) << ": active setting "
             << platform::ToUtf8(setting.setting) << std::endl;
  }
  void Parameter(const ChangedParameter& change) override {
    Output() << "  " << store::RouteName(change.pathKey) << ", setting "
             << platform::ToUtf8(change.setting)
             << (change.state == ChangedParameter::State::Active ? " (active): Param" : ": Param")
             << change.number << ' ';
    if (const auto meaning = MeaningOf(change.number)) {
      Output() << MeaningText(*meaning) << ' ' << TextInUnit(meaning->unit, change.value);
    } else {
      Output() << ShortestText(change.value);
    }
    Output() << std::endl;
  }
};

}  // namespace

std::unique_ptr<MonitorReport> MakeReport(ReportForm form, std::ostream& output) {
  switch (form) {
    case ReportForm::Units:
      return std::make_unique<UnitsReport>(output);
    case ReportForm::Json:
      return std::make_unique<JsonReport>(output);
    case ReportForm::Plain:
      break;
  }
  return std::make_unique<PlainReport>(output);
}

}  // namespace tools
