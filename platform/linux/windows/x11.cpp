#include "platform/linux/windows/x11.h"

#include <QtGui/qguiapplication_platform.h>
#include <xcb/xcb.h>
#include <QByteArray>
#include <QGuiApplication>

#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace platform::x11 {
namespace {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using ReplyPtr = std::unique_ptr<Reply, FreeReply>;

xcb_connection_t* Connection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr ? x11->connection() : nullptr;
}

const xcb_screen_t& Screen(xcb_connection_t* connection) {
  return *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

xcb_atom_t Atom(xcb_connection_t* connection, std::string_view name) {
  const xcb_intern_atom_cookie_t cookie =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QByteArray ResourceManagerText(xcb_connection_t* connection) {
  constexpr std::uint32_t kMostWords = 1U << 20U;
  const xcb_get_property_cookie_t cookie =
      xcb_get_property(connection, 0, Screen(connection).root, XCB_ATOM_RESOURCE_MANAGER,
                       XCB_ATOM_STRING, 0, kMostWords);
  const ReplyPtr<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection, cookie, nullptr));
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          xcb_get_property_value_length(reply.get())};
}

std::optional<std::uint32_t> ResourceDpi(xcb_connection_t* connection) {
  for (const QByteArray& line : ResourceManagerText(connection).split('\n')) {
    const qsizetype colon = line.indexOf(':');
    if (colon < 0 || line.left(colon).trimmed() != "Xft.dpi") continue;
    const double dpi = line.mid(colon + 1).trimmed().toDouble();
    if (dpi >= 1.0 && dpi < 10000.0) return static_cast<std::uint32_t>(std::lround(dpi));
  }
  return std::nullopt;
}

std::uint32_t ServerDpi(std::uint16_t pixels, std::uint16_t millimeters) {
  if (pixels == 0 || millimeters == 0) return 96;
  return static_cast<std::uint32_t>(std::lround(pixels * 25.4 / millimeters));
}

}  // namespace

std::optional<ScreenDpi> ReadDpi() {
  xcb_connection_t* connection = Connection();
  if (connection == nullptr) return std::nullopt;
  if (const auto dpi = ResourceDpi(connection)) return ScreenDpi{*dpi, *dpi};
  const xcb_screen_t& screen = Screen(connection);
  return ScreenDpi{ServerDpi(screen.width_in_pixels, screen.width_in_millimeters),
                   ServerDpi(screen.height_in_pixels, screen.height_in_millimeters)};
}

bool CompositorRuns() {
  xcb_connection_t* connection = Connection();
  if (connection == nullptr) return true;
  static const xcb_atom_t kManager = Atom(connection, "_NET_WM_CM_S0");
  const xcb_get_selection_owner_cookie_t cookie = xcb_get_selection_owner(connection, kManager);
  const ReplyPtr<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(connection, cookie, nullptr));
  return reply && reply->owner != XCB_WINDOW_NONE;
}

bool Activate(WId window) {
  xcb_connection_t* connection = Connection();
  if (connection == nullptr) return false;
  constexpr std::uint32_t kFromPager = 2;
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = static_cast<xcb_window_t>(window);
  event.type = Atom(connection, "_NET_ACTIVE_WINDOW");
  event.data.data32[0] = kFromPager;
  event.data.data32[1] = XCB_CURRENT_TIME;
  xcb_send_event(connection, 0, Screen(connection).root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(connection);
  return true;
}

}  // namespace platform::x11
