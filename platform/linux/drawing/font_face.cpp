#include "platform/linux/drawing/font_face.h"

#include <QFont>
#include <QFontDatabase>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <optional>

#include "platform/linux/windows/qt_text.h"

namespace platform {
namespace {

constexpr double kUnits = 2048.0;

// A freely available family that takes the place of one that is not installed. Where its line
// height differs from the original's, the original's counts.
struct StandIn {
  std::u16string_view asked;
  std::u16string_view used;
  QFont::Weight weight;
  int widthPercent;
  std::optional<LineMetrics> lines;
};

const auto kStandIns = std::to_array<StandIn>({
    {u"Calibri", u"Carlito", QFont::Normal, 100, std::nullopt},
    {u"Verdana", u"DejaVu Sans", QFont::Normal, 100, LineMetrics{2059 / kUnits, 2489 / kUnits}},
    {u"Segoe WP", u"Open Sans", QFont::Normal, 100, LineMetrics{2210 / kUnits, 2724 / kUnits}},
    {u"Segoe UI Semilight", u"Open Sans", QFont::Light, 95,
     LineMetrics{2210 / kUnits, 2724 / kUnits}},
});
const StandIn kGeneric{u"", u"Liberation Sans", QFont::Normal, 100, std::nullopt};

// Nothing when the family itself is installed.
const StandIn* FindStandIn(std::u16string_view family) {
  if (QFontDatabase::hasFamily(ToQString(family))) return nullptr;
  const auto* found = std::find_if(kStandIns.begin(), kStandIns.end(),
                                   [&](const StandIn& entry) { return entry.asked == family; });
  return found == kStandIns.end() ? &kGeneric : found;
}

template <class Number>
double TableNumber(const QByteArray& table, qsizetype offset) {
  if (table.size() < offset + static_cast<qsizetype>(sizeof(Number))) return 0.0;
  return qFromBigEndian<Number>(table.constData() + offset);
}

// The toolkit's own line spacing follows other rules for some fonts, so the tables are read here.
LineMetrics ReadLineMetrics(const QRawFont& font) {
  const QByteArray os2 = font.fontTable("OS/2");
  const QByteArray hhea = font.fontTable("hhea");
  const double winAscent = TableNumber<quint16>(os2, 74);
  const double winSum = winAscent + TableNumber<quint16>(os2, 76);
  const double hheaSum = TableNumber<qint16>(hhea, 4) - TableNumber<qint16>(hhea, 6);
  const double gap = TableNumber<qint16>(hhea, 8);
  if (winSum <= 0.0) {
    const double em = font.pixelSize();
    return {font.ascent() / em, (font.ascent() + font.descent() + font.leading()) / em};
  }
  return {winAscent / font.unitsPerEm(),
          (winSum + std::max(0.0, gap - (winSum - hheaSum))) / font.unitsPerEm()};
}

}  // namespace

FontFace::FontFace(std::u16string_view family, FontStyle style) : widthFactor_(1.0), lines_{} {
  const StandIn* standIn = FindStandIn(family);
  font_.setFamilies({ToQString(standIn != nullptr ? standIn->used : family)});
  font_.setWeight(standIn != nullptr ? standIn->weight : QFont::Normal);
  if (style == FontStyle::Bold) font_.setWeight(QFont::Bold);
  if (standIn != nullptr && standIn->widthPercent != 100) {
    font_.setStretch(standIn->widthPercent);
    widthFactor_ = standIn->widthPercent / 100.0;
  }
  // Grey only: sub-pixel colour would depend on the screen and spoil transparent surfaces.
  font_.setStyleStrategy(static_cast<QFont::StyleStrategy>(
      QFont::PreferAntialias | QFont::NoSubpixelAntialias | QFont::NoFontMerging));

  QFont unstretched = Request(Hinting::None);
  unstretched.setStretch(QFont::AnyStretch);
  design_ = QRawFont::fromFont(unstretched);
  if (design_.isValid()) design_.setPixelSize(design_.unitsPerEm());
  lines_ = standIn != nullptr && standIn->lines ? *standIn->lines : ReadLineMetrics(design_);
}

QFont FontFace::Request(Hinting hinting) const {
  QFont font = font_;
  font.setPixelSize(100);
  font.setHintingPreference(hinting == Hinting::Full ? QFont::PreferFullHinting
                                                     : QFont::PreferNoHinting);
  return font;
}

const QRawFont& FontFace::Sized(double em, Hinting hinting) const {
  const auto [entry, isNew] = sized_.try_emplace({em, hinting});
  if (isNew) {
    entry->second = QRawFont::fromFont(Request(hinting));
    if (entry->second.isValid()) entry->second.setPixelSize(em);
  }
  return entry->second;
}

QList<double> FontFace::Advances(const QList<quint32>& glyphs) const {
  QList<double> advances;
  advances.reserve(glyphs.size());
  for (const QPointF& advance : design_.advancesForGlyphIndexes(glyphs)) {
    advances.append(advance.x() * widthFactor_ / design_.unitsPerEm());
  }
  return advances;
}

QString ToolkitFamily(std::u16string_view family) {
  const StandIn* standIn = FindStandIn(family);
  return ToQString(standIn != nullptr ? standIn->used : family);
}

}  // namespace platform
