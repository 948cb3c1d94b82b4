#include "platform/linux/windows/window_icon.h"

#include <QBuffer>
#include <QImageReader>
#include <QPixmap>

#include "platform/linux/windows/application.h"
#include "platform/screen.h"
#include "resources/icon_images.h"

namespace platform {
namespace {

// In pixels at 96 dots per inch; what desktops show of a running program is never larger.
constexpr int kLargest = 64;

QPixmap Decode(std::span<const std::byte> png, int largest) {
  QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(png.data()),
                                             static_cast<qsizetype>(png.size()));
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer, "PNG");
  return reader.size().width() <= largest ? QPixmap::fromImageReader(&reader) : QPixmap();
}

QIcon DecodeIcon(std::uint16_t iconResource) {
  const int largest = kLargest * static_cast<int>(GetScreenDpi().x) / 96;
  QIcon icon;
  for (const std::span<const std::byte> png : resources::IconImages(iconResource)) {
    const QPixmap pixmap = Decode(png, largest);
    if (!pixmap.isNull()) icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace

const QIcon& WindowIcons::Find(std::uint16_t iconResource) {
  auto found = icons_.find(iconResource);
  if (found == icons_.end()) found = icons_.emplace(iconResource, DecodeIcon(iconResource)).first;
  return found->second;
}

QIcon LoadWindowIcon(std::uint16_t iconResource) {
  Application* application = Application::Current();
  return application == nullptr ? QIcon() : application->Icons().Find(iconResource);
}

}  // namespace platform
