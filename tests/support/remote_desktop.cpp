// The desktop for a program that has no way of its own to it.
#include <winsock2.h>
#undef FindWindow

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "tests/support/desktop_calls.h"

namespace support {

using Json = nlohmann::json;
using std::chrono::milliseconds;

struct X11Desktop::Impl {
  Impl() {
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 2), &data);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const char* port = std::getenv(kDesktopPort);
    address.sin_port = htons(static_cast<u_short>(std::atoi(port != nullptr ? port : "0")));
    connection = socket(AF_INET, SOCK_STREAM, 0);
    if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
      throw std::runtime_error("no desktop");
    }
  }
  ~Impl() {
    closesocket(connection);
    WSACleanup();
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  template <class... Arguments>
  Json Call(const char* method, const Arguments&... arguments) {
    const std::string line = Json::array({method, arguments...}).dump() + "\n";
    send(connection, line.data(), static_cast<int>(line.size()), 0);
    while (received.find('\n') == std::string::npos) {
      char piece[4096];
      const int size = recv(connection, piece, sizeof(piece), 0);
      if (size <= 0) throw std::runtime_error("the desktop is gone");
      received.append(piece, static_cast<std::size_t>(size));
    }
    const std::size_t end = received.find('\n');
    const Json result = Json::parse(received.substr(0, end));
    received.erase(0, end + 1);
    return result;
  }

  SOCKET connection;
  std::string received;
};

X11Desktop::X11Desktop() : impl_(std::make_unique<Impl>()) {}
X11Desktop::~X11Desktop() = default;

double X11Desktop::Dpi() {
  return impl_->Call("Dpi");
}
std::optional<ScreenRect> X11Desktop::FindWindow(const std::string& title) {
  return impl_->Call("FindWindow", title).get<std::optional<ScreenRect>>();
}
std::vector<std::string> X11Desktop::StackedTitles() {
  return impl_->Call("StackedTitles");
}
std::string X11Desktop::ActiveTitle() {
  return impl_->Call("ActiveTitle");
}
void X11Desktop::RequestClose(const std::string& title) {
  impl_->Call("RequestClose", title);
}
void X11Desktop::MovePointer(int x, int y) {
  impl_->Call("MovePointer", x, y);
}
void X11Desktop::PressButton() {
  impl_->Call("PressButton");
}
void X11Desktop::ReleaseButton() {
  impl_->Call("ReleaseButton");
}
void X11Desktop::Click(int x, int y) {
  impl_->Call("Click", x, y);
}
void X11Desktop::PressKey(const std::string& key) {
  impl_->Call("PressKey", key);
}
void X11Desktop::Type(const std::string& text) {
  impl_->Call("Type", text);
}
std::vector<std::uint32_t> X11Desktop::Pixels(const ScreenRect& rect) {
  return impl_->Call("Pixels", rect);
}

}  // namespace support
