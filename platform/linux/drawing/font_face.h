// One typeface: the installed family or its stand-in, its line metrics and its fonts in any size.
#pragma once

#include <QRawFont>
#include <QString>
#include <map>
#include <span>
#include <string_view>
#include <utility>

#include "platform/drawing.h"

namespace platform {

// In ems.
struct LineMetrics {
  double ascent;
  double height;
};

enum class Hinting { None, Full };

class FontFace {
 public:
  FontFace(std::u16string_view family, FontStyle style);

  const LineMetrics& Lines() const { return lines_; }

  // The font with an em of so many pixels, not rounded.
  const QRawFont& Sized(double em, Hinting hinting) const;

  // The unhinted advance widths, in ems.
  QList<double> Advances(const QList<quint32>& glyphs) const;

 private:
  QFont Request(Hinting hinting) const;

  QFont font_;
  double widthFactor_;
  LineMetrics lines_;
  QRawFont design_;  // one pixel for each font unit
  mutable std::map<std::pair<double, Hinting>, QRawFont> sized_;
};

// The family under which the toolkit finds the typeface asked for or its stand-in; for widgets that
// the toolkit draws itself.
QString ToolkitFamily(std::u16string_view family);

}  // namespace platform
