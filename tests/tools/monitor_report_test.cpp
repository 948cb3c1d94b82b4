#include "tools/enginemon/monitor_report.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <sstream>
#include <string>

namespace tools {
namespace {

constexpr char16_t kHeadphones[] = u"{dff21ce2-F70F-11D0-B917-00A0C9223196}";
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

std::string LineOf(ReportForm form, std::uint32_t number, float value) {
  std::ostringstream output;
  MakeReport(form, output)
      ->Parameter({kHeadphones, u"3", number, value, ChangedParameter::State::Active});
  return output.str();
}

TEST(MonitorReportTest, TellsEveryParameterInItsUnit) {
  struct Case {
    std::uint32_t number;
    float value;
    std::string text;
    std::string json;  // what follows the number
  };
  const Case cases[] = {
      {5, 1.0F, "widener switch on",
       R"("value":1.0,"name":"widener switch","unit":"switch","shown":true)"},
      {6, 0.53F, "widener 0.53", R"("value":0.53,"name":"widener","unit":"amount","shown":0.53)"},
      {117, kNan, "equalizer off",
       R"("value":null,"name":"equalizer","unit":"switch","shown":false)"},
      {118, -1.0F, "band 1 enabled off",
       R"("value":-1.0,"name":"enabled","band":1,"mirror":false,"unit":"switch","shown":false)"},
      {119, 5.9F, "band 1 type high shelving",
       R"("value":5.9,"name":"type","band":1,"mirror":false,"unit":"type","shown":"high shelving")"},
      {124, 6.0F, "band 2 type 6",
       R"("value":6.0,"name":"type","band":2,"mirror":false,"unit":"type","shown":null)"},
      {166, 3.9810717F, "band 10 gain +12.00 dB",
       R"("value":3.9810717,"name":"gain","band":10,"mirror":false,"unit":"dB","shown":12.0)"},
      {166, 0.99999F, "band 10 gain +0.00 dB",
       R"("value":0.99999,"name":"gain","band":10,"mirror":false,"unit":"dB","shown":0.0)"},
      {166, 0.0F, "band 10 gain factor 0",
       R"("value":0.0,"name":"gain","band":10,"mirror":false,"unit":"dB","shown":null)"},
      {166, kInfinity, "band 10 gain factor inf",
       R"("value":null,"name":"gain","band":10,"mirror":false,"unit":"dB","shown":null)"},
      {168, 1.0F, "mirror band 1 enabled on",
       R"("value":1.0,"name":"enabled","band":1,"mirror":true,"unit":"switch","shown":true)"},
      {1115, 1.0F, "1", R"("value":1.0)"},
  };
  for (const Case& parameter : cases) {
    const std::string number = std::to_string(parameter.number);
    EXPECT_EQ(LineOf(ReportForm::Units, parameter.number, parameter.value),
              "  headphones, setting 3 (active): Param" + number + ' ' + parameter.text + '\n');
    EXPECT_EQ(LineOf(ReportForm::Json, parameter.number, parameter.value),
              R"({"kind":"parameter","route":"headphones","pathKey":")"
              R"({dff21ce2-F70F-11D0-B917-00A0C9223196}","setting":"3","active":true,"number":)" +
                  number + ',' + parameter.json + "}\n");
  }
  // Enough digits for every float.
  const std::string place = "  {dff21ce2-F70F-11D0-B917-00A0C9223196} 3 ";
  EXPECT_EQ(LineOf(ReportForm::Plain, 166, 0.0F), place + "Param166 0\n");
  EXPECT_EQ(LineOf(ReportForm::Plain, 9, -1e20F), place + "Param9 -1.00000002e+20\n");
  EXPECT_EQ(LineOf(ReportForm::Plain, 118, 0.1F), place + "Param118 0.100000001\n");
}

TEST(MonitorReportTest, StandsAnyRouteAndSetting) {
  std::ostringstream output;
  for (const ReportForm form : {ReportForm::Plain, ReportForm::Units, ReportForm::Json}) {
    const auto report = MakeReport(form, output);
    report->Event(u"Global\\a", 7);
    report->Route(u"");
    report->Setting({u"own \"key\"", u"\xDC80"});  // a byte that is no UTF-8
  }
  EXPECT_EQ(output.str(),
            "Global\\a\n"
            "Global\\a\n"
            "  route: none, no default endpoint\n"
            "  own \"key\": active setting \x80\n"
            R"({"kind":"event","name":"Global\\a","time":7})"
            "\n"
            R"({"kind":"route","route":null,"pathKey":null})"
            "\n"
            R"({"kind":"setting","route":"own \"key\"","pathKey":"own \"key\"","active":")"
            "\xEF\xBF\xBD\"}\n");
}

}  // namespace
}  // namespace tools
