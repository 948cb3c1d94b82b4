#include <QGlyphRun>
#include <cmath>

#include "platform/linux/drawing/drawing_impl.h"
#include "platform/linux/windows/qt_text.h"

namespace platform {
namespace {

// What the generic default format adds to the bare glyphs; the typographic one adds nothing.
struct Margins {
  double tracking;  // factor on every advance
  double leading;   // before the first glyph, in ems
  double width;     // added to the width, in ems
  double height;    // added to the height, in ems
};

Margins MarginsOf(StringFormat format) {
  if (format == StringFormat::GenericTypographic) return {1.0, 0.0, 0.0, 0.0};
  return {1.03, 1.0 / 6.0, 1.0 / 3.0, 1.0 / 8.0};
}

struct Line {
  QList<quint32> glyphs;
  QList<QPointF> positions;
  double width = 0.0;  // without trailing blanks
};

Line LayOut(std::u16string_view text, const FontFace& face, double em, Hinting hinting,
            double tracking) {
  Line line;
  const QRawFont& font = face.Sized(em, hinting);
  if (!font.isValid()) return line;
  line.glyphs = font.glyphIndexesForString(ToQString(text));
  QList<double> advances;
  for (const double advance : face.Advances(line.glyphs)) {
    const double tracked = advance * em * tracking;
    // Fitted glyphs stand on whole pixels: were the fractions added up, some gaps would be a pixel
    // wider than others.
    advances.append(hinting == Hinting::Full ? std::round(tracked) : tracked);
  }
  const quint32 blank = font.glyphIndexesForString(QStringLiteral(" ")).value(0);
  double x = 0.0;
  line.positions.reserve(line.glyphs.size());
  for (qsizetype i = 0; i < line.glyphs.size(); ++i) {
    line.positions.append(QPointF(x, 0.0));
    x += advances[i];
    if (line.glyphs[i] != blank) line.width = x;
  }
  return line;
}

// Splits at line feeds and hands each line to `use` with its number.
template <class Use>
void ForEachLine(std::u16string_view text, Use use) {
  for (int number = 0;; ++number) {
    const std::size_t end = text.find(u'\n');
    use(text.substr(0, end), number);
    if (end == std::u16string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

Hinting HintingOf(TextRenderingHint hint) {
  return hint == TextRenderingHint::AntiAlias ? Hinting::None : Hinting::Full;
}

}  // namespace

Font::Font(std::u16string_view family, float points, FontStyle style)
    : impl_(std::make_unique<Impl>(Impl{FontFace(family, style), points})) {}
Font::~Font() = default;

float Font::Height(float dpi) const {
  const double em = static_cast<double>(impl_->points) * static_cast<double>(dpi) / 72.0;
  return static_cast<float>(em * impl_->face.Lines().height);
}

SizeF Graphics::MeasureString(std::u16string_view text, const Font& font, StringFormat format) {
  if (text.empty()) return {};
  const Font::Impl& native = font.Native();
  const double em = static_cast<double>(native.points) * static_cast<double>(DpiY()) / 72.0;
  const Margins margins = MarginsOf(format);
  double width = 0.0;
  double height = margins.height * em;
  ForEachLine(text, [&](std::u16string_view line, int) {
    const Line laidOut =
        LayOut(line, native.face, em, HintingOf(impl_->textHint), margins.tracking);
    width = std::max(width, laidOut.width);
    height += native.face.Lines().height * em;
  });
  return {static_cast<float>(width + margins.width * em), static_cast<float>(height)};
}

void Graphics::DrawString(std::u16string_view text, const Font& font, PointF origin,
                          StringFormat format, Argb color) {
  if (!impl_->painter.isActive()) return;
  const Font::Impl& native = font.Native();
  const double em = static_cast<double>(native.points) * static_cast<double>(DpiY()) / 72.0;
  const Margins margins = MarginsOf(format);
  const Hinting hinting = HintingOf(impl_->textHint);
  const LineMetrics& lines = native.face.Lines();
  impl_->painter.setPen(ToColor(color));
  ForEachLine(text, [&](std::u16string_view line, int number) {
    const Line laidOut = LayOut(line, native.face, em, hinting, margins.tracking);
    if (laidOut.glyphs.isEmpty()) return;
    QGlyphRun run;
    run.setRawFont(native.face.Sized(em, hinting));
    run.setGlyphIndexes(laidOut.glyphs);
    run.setPositions(laidOut.positions);
    double x = static_cast<double>(origin.x) + margins.leading * em;
    if (hinting == Hinting::Full) x = std::round(x);
    // Baselines lie on whole pixels: glyphs get their fractional positions only along the line.
    const double baseline =
        std::round(static_cast<double>(origin.y) + (lines.ascent + number * lines.height) * em);
    impl_->painter.drawGlyphRun(QPointF(x, baseline), run);
  });
}

}  // namespace platform
