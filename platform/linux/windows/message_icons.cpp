#include "platform/linux/windows/message_icons.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace platform {
namespace {

// All symbols are drawn on a field of this size.
constexpr qreal kField = 32.0;

const QColor kDark(0x1a, 0x1a, 0x1a);
const QColor kLight(0xff, 0xff, 0xff);

QPen Stroke(const QColor& color, qreal width) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

QLinearGradient FromTop(const QColor& color) {
  QLinearGradient gradient(0.0, 2.0, 0.0, 30.0);
  gradient.setColorAt(0.0, color.lighter(118));
  gradient.setColorAt(1.0, color.darker(118));
  return gradient;
}

void DrawDisc(QPainter& painter, const QColor& color) {
  painter.setPen(Stroke(QColor(0, 0, 0, 0x90), 1.0));
  painter.setBrush(FromTop(color));
  painter.drawEllipse(QRectF(2.5, 2.5, 27.0, 27.0));
}

void DrawCritical(QPainter& painter) {
  DrawDisc(painter, QColor(0xbe, 0x00, 0x00));
  painter.setPen(Stroke(kLight, 3.0));
  painter.drawLine(QPointF(11.5, 11.5), QPointF(20.5, 20.5));
  painter.drawLine(QPointF(20.5, 11.5), QPointF(11.5, 20.5));
}

void DrawWarning(QPainter& painter) {
  QPainterPath triangle(QPointF(16.0, 5.0));
  triangle.lineTo(28.0, 26.5);
  triangle.lineTo(4.0, 26.5);
  triangle.closeSubpath();
  const QBrush fill = FromTop(QColor(0xe3, 0xb0, 0x5c));
  painter.setPen(QPen(fill, 4.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(fill);
  painter.drawPath(triangle);
  painter.setPen(Stroke(kDark, 3.0));
  painter.drawLine(QPointF(16.0, 12.0), QPointF(16.0, 18.5));
  painter.drawPoint(QPointF(16.0, 23.7));
}

void DrawQuestion(QPainter& painter) {
  DrawDisc(painter, QColor(0x22, 0xa7, 0xbf));
  QPainterPath hook;
  hook.arcMoveTo(QRectF(11.7, 8.0, 8.6, 8.6), 180.0);
  hook.arcTo(QRectF(11.7, 8.0, 8.6, 8.6), 180.0, -225.0);
  hook.quadTo(16.0, 17.0, 16.0, 19.2);
  painter.setPen(Stroke(kLight, 2.8));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(hook);
  painter.drawPoint(QPointF(16.0, 23.8));
}

}  // namespace

std::optional<QIcon> MessageIcon(QStyle::StandardPixmap symbol, int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / kField, size / kField);
  switch (symbol) {
    case QStyle::SP_MessageBoxCritical:
      DrawCritical(painter);
      break;
    case QStyle::SP_MessageBoxWarning:
      DrawWarning(painter);
      break;
    case QStyle::SP_MessageBoxQuestion:
      DrawQuestion(painter);
      break;
    default:
      return std::nullopt;
  }
  painter.end();
  return QIcon(pixmap);
}

}  // namespace platform
