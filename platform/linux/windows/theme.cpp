#include "platform/linux/windows/theme.h"

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>
#include <QScreen>
#include <QStyleOption>

#include "platform/linux/drawing/font_face.h"
#include "platform/linux/windows/message_icons.h"
#include "platform/screen.h"

namespace platform {
namespace {

QPalette DarkPalette() {
  const QColor window(0x2b, 0x2b, 0x2b);
  const QColor base(0x1a, 0x1a, 0x1a);
  const QColor text(0xf0, 0xf0, 0xf0);
  const QColor dimmed(0x80, 0x80, 0x80);
  const QColor accent(0x22, 0xa7, 0xbf);
  QPalette palette(QColor(0x3c, 0x3c, 0x3c), window);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::ToolTipBase, window);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                         QPalette::ToolTipText, QPalette::BrightText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, dimmed);
  }
  palette.setColor(QPalette::PlaceholderText, dimmed);
  palette.setColor(QPalette::Highlight, accent);
  palette.setColor(QPalette::HighlightedText, Qt::black);
  palette.setColor(QPalette::Link, accent);
  return palette;
}

// How far the toolkit's measures lag behind the screen: it takes a server's own resolution for the
// usual one.
double ToolkitScale() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const double assumed = screen != nullptr ? screen->logicalDotsPerInchY() : 96.0;
  return static_cast<double>(GetScreenDpi().y) / assumed;
}

class Style : public QProxyStyle {
 public:
  Style() : QProxyStyle(QStringLiteral("Fusion")), scale_(ToolkitScale()) {}

  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override {
    const int pixels = QProxyStyle::pixelMetric(metric, option, widget);
    return pixels > 0 ? qRound(pixels * scale_) : pixels;
  }

  // The base style cuts the text of menus where it would not fit with its mnemonics' marks.
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type == CT_MenuItem) {
      size.rwidth() += option->fontMetrics.horizontalAdvance(QLatin1Char('&'));
    }
    return size;
  }

  // Buttons say what they do in words alone, as everywhere in the program.
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
  }

  QIcon standardIcon(StandardPixmap symbol, const QStyleOption* option,
                     const QWidget* widget) const override {
    const int size = pixelMetric(PM_MessageBoxIconSize, option, widget);
    if (const auto icon = MessageIcon(symbol, size)) return *icon;
    return QProxyStyle::standardIcon(symbol, option, widget);
  }

 private:
  double scale_;
};

}  // namespace

QFont ToolkitFont(std::u16string_view family, int points) {
  QFont font(ToolkitFamily(family));
  font.setPixelSize(qMax(1, qRound(points * static_cast<double>(GetScreenDpi().y) / 72.0)));
  return font;
}

void ApplyTheme() {
  QApplication::setPalette(DarkPalette());
  QApplication::setFont(ToolkitFont(u"Calibri", 11));
  auto* style = new Style;
  style->setParent(qApp);
  QApplication::setStyle(style);
}

}  // namespace platform
