#include "tests/controls/picture.h"

#include <QApplication>
#include <QBuffer>
#include <QMouseEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <cmath>
#include <ios>
#include <span>
#include <stdexcept>

#include "ui/images/png_resource.h"

namespace ui {

using platform::Argb;
using platform::Bitmap;
using platform::Graphics;

namespace {

QWidget& VisibleWindow() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) return *window;
  }
  throw std::runtime_error("no window is visible");
}

}  // namespace

void Settle() {
  for (int round = 0; round < 3; ++round) QCoreApplication::processEvents();
}

Bitmap WindowPicture(const platform::Rect& area) {
  QByteArray png;
  QBuffer buffer(&png);
  QGuiApplication::primaryScreen()
      ->grabWindow(VisibleWindow().winId(), area.left, area.top, area.Width(), area.Height())
      .save(&buffer, "PNG", 100);
  return Bitmap::FromPng(std::as_bytes(std::span(png.constData(), std::size_t(png.size()))))
      .value();
}

void Use(Mouse mouse, platform::Point client) {
  constexpr QEvent::Type kTypes[] = {QEvent::MouseButtonPress, QEvent::MouseMove,
                                     QEvent::MouseButtonRelease};
  const QPointF place(client.x, client.y);
  QWidget& window = VisibleWindow();
  QMouseEvent event(kTypes[static_cast<int>(mouse)], place, window.mapToGlobal(place),
                    mouse == Mouse::Move ? Qt::NoButton : Qt::LeftButton,
                    mouse == Mouse::Release ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(window.windowHandle(), &event);
  Settle();
}

Argb Mixed(Argb color, Argb below, double coverage) {
  const double share = coverage * (color >> 24U) / 255.0;
  Argb mixed = 0xFF;
  for (const unsigned shift : {16U, 8U, 0U}) {
    const double value = share * Channel(color, shift) + (1.0 - share) * Channel(below, shift);
    mixed = mixed << 8U | static_cast<Argb>(std::lround(value));
  }
  return mixed;
}

void ExpectSpots(const Bitmap& picture, std::initializer_list<Spot> spots, std::int32_t tolerance) {
  for (const Spot& spot : spots) {
    const Argb color = picture.GetPixel(spot.x, spot.y);
    EXPECT_LE(Distance(color, spot.color), tolerance)
        << std::hex << color << " instead of " << spot.color << std::dec << " at " << spot.x << ", "
        << spot.y;
  }
}

testing::AssertionResult Shows(const Bitmap& picture, const Bitmap& image, std::int32_t x,
                               std::int32_t y) {
  int opaque = 0;
  const platform::Rect wrong =
      support::BoxOf(support::AreaOf(image), [&](std::int32_t column, std::int32_t row) {
        const Argb color = image.GetPixel(column, row);
        if (color >> 24U != 0xFFU) return false;
        ++opaque;
        return picture.GetPixel(x + column, y + row) != color;
      });
  if (opaque > 0 && wrong == platform::Rect{}) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "not at " << x << ", " << y;
}

testing::AssertionResult Shows(const Bitmap& picture, std::uint16_t id, std::int32_t x,
                               std::int32_t y, float designDpi) {
  const auto image = LoadPngResource(id, designDpi);
  if (!image) return testing::AssertionFailure() << "no image " << id;
  return Shows(picture, *image, x, y) << ", image " << id;
}

void Write(Bitmap& picture, std::u16string_view text, const platform::Font& font,
           platform::PointF place, Argb color, platform::TextRenderingHint hint,
           platform::StringFormat format) {
  Graphics graphics(picture);
  graphics.SetTextRenderingHint(hint);
  graphics.DrawString(text, font, place, format, color);
}

platform::SizeF Measure(std::u16string_view text, const platform::Font& font,
                        platform::TextRenderingHint hint) {
  Bitmap nowhere(1, 1, platform::PixelFormat::Argb32);
  Graphics graphics(nowhere);
  graphics.SetTextRenderingHint(hint);
  return graphics.MeasureString(text, font, platform::StringFormat::GenericDefault);
}

}  // namespace ui
