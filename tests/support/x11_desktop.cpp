#include "tests/support/x11_desktop.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace support {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

struct X11Desktop::Impl {
  Impl() : display(XOpenDisplay(nullptr)) {
    if (!display) throw std::runtime_error("no display");
    // Windows may go between the list and the question about them.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    root = DefaultRootWindow(display);
  }
  ~Impl() { XCloseDisplay(display); }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  Atom Name(const char* name) const { return XInternAtom(display, name, False); }

  std::string Bytes(Window window, const char* property, Atom type) const {
    Atom actualType = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    if (XGetWindowProperty(display, window, Name(property), 0, 4096, False, type, &actualType,
                           &format, &count, &left, &data) != Success ||
        !data) {
      return {};
    }
    const std::size_t unit = format == 32 ? sizeof(long) : static_cast<std::size_t>(format) / 8;
    std::string bytes(reinterpret_cast<char*>(data), count * unit);
    XFree(data);
    return bytes;
  }

  // Windows or atoms.
  std::vector<XID> List(Window window, const char* property, Atom type) const {
    const std::string bytes = Bytes(window, property, type);
    std::vector<XID> list(bytes.size() / sizeof(XID));
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(list.data()));
    return list;
  }
  std::vector<Window> WindowList(const char* property) const {
    return List(root, property, XA_WINDOW);
  }

  std::string Title(Window window) const {
    return Bytes(window, "_NET_WM_NAME", Name("UTF8_STRING"));
  }

  Window Find(const std::string& title) const {
    const std::vector<Window> windows = WindowList("_NET_CLIENT_LIST_STACKING");
    const auto found = std::find_if(windows.rbegin(), windows.rend(),
                                    [&](Window window) { return Title(window) == title; });
    return found == windows.rend() ? None : *found;
  }

  bool IsShown(Window window, ScreenRect* rect) const {
    XWindowAttributes attributes{};
    if (!XGetWindowAttributes(display, window, &attributes)) return false;
    Window child = None;
    XTranslateCoordinates(display, window, root, 0, 0, &rect->x, &rect->y, &child);
    rect->width = attributes.width;
    rect->height = attributes.height;
    return attributes.map_state == IsViewable;
  }

  void SendToRoot(Window window, const char* message, long data0, long data1) const {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = Name(message);
    event.xclient.format = 32;
    event.xclient.data.l[0] = data0;
    event.xclient.data.l[1] = data1;
    XSendEvent(display, root, False, SubstructureRedirectMask | SubstructureNotifyMask, &event);
    XSync(display, False);
  }

  void Key(KeySym symbol, KeySym modifier = NoSymbol) const {
    const KeyCode code = XKeysymToKeycode(display, symbol);
    const KeyCode modifierCode = XKeysymToKeycode(display, modifier);
    if (modifier != NoSymbol) XTestFakeKeyEvent(display, modifierCode, True, 0);
    XTestFakeKeyEvent(display, code, True, 0);
    XTestFakeKeyEvent(display, code, False, 0);
    if (modifier != NoSymbol) XTestFakeKeyEvent(display, modifierCode, False, 0);
    XSync(display, False);
  }
  void Button(unsigned button, bool isPressed) const {
    XTestFakeButtonEvent(display, button, isPressed ? True : False, 0);
    XSync(display, False);
  }

  Display* display;
  Window root;
};

X11Desktop::X11Desktop() : impl_(std::make_unique<Impl>()) {}
X11Desktop::~X11Desktop() = default;

double X11Desktop::Dpi() {
  const char* resource = XGetDefault(impl_->display, "Xft", "dpi");
  if (resource) return std::stod(resource);
  const int screen = DefaultScreen(impl_->display);
  return std::round(DisplayWidth(impl_->display, screen) * 25.4 /
                    DisplayWidthMM(impl_->display, screen));
}

std::optional<ScreenRect> X11Desktop::FindWindow(const std::string& title) {
  const Window window = impl_->Find(title);
  ScreenRect rect;
  if (window == None || !impl_->IsShown(window, &rect)) return std::nullopt;
  return rect;
}

std::vector<std::string> X11Desktop::StackedTitles() {
  std::vector<std::string> titles;
  for (const Window window : impl_->WindowList("_NET_CLIENT_LIST_STACKING")) {
    titles.push_back(impl_->Title(window));
  }
  return titles;
}

std::string X11Desktop::ActiveTitle() {
  const std::vector<Window> active = impl_->WindowList("_NET_ACTIVE_WINDOW");
  return active.empty() || active.front() == None ? std::string() : impl_->Title(active.front());
}

bool X11Desktop::IsIconified(const std::string& title) {
  const Window window = impl_->Find(title);
  const std::vector<Atom> states = impl_->List(window, "_NET_WM_STATE", XA_ATOM);
  return std::count(states.begin(), states.end(), impl_->Name("_NET_WM_STATE_HIDDEN")) > 0;
}

void X11Desktop::RequestClose(const std::string& title) {
  const Window window = impl_->Find(title);
  if (window != None) impl_->SendToRoot(window, "_NET_CLOSE_WINDOW", CurrentTime, 2);
}

void X11Desktop::RequestMove(const std::string& title, ScreenPoint place) {
  const Window window = impl_->Find(title);
  if (window != None) XMoveWindow(impl_->display, window, place.x, place.y);
  XSync(impl_->display, False);
}

void X11Desktop::MovePointer(int x, int y) {
  XTestFakeMotionEvent(impl_->display, -1, x, y, 0);
  XSync(impl_->display, False);
}

void X11Desktop::PressButton() {
  impl_->Button(1, true);
}

void X11Desktop::ReleaseButton() {
  impl_->Button(1, false);
}

// No hand is faster than these pauses. Without them the window manager, which looks at every press
// first, passes it on with a later position.
void X11Desktop::Click(int x, int y) {
  constexpr milliseconds kHand(15);
  MovePointer(x, y);
  std::this_thread::sleep_for(kHand);
  PressButton();
  std::this_thread::sleep_for(kHand);
  ReleaseButton();
  std::this_thread::sleep_for(kHand);
}

void X11Desktop::Drag(ScreenPoint from, ScreenPoint to, int steps, milliseconds hold) {
  MovePointer(from.x, from.y);
  PressButton();
  // The toolkit hands a move to the window manager with the position that the pointer has then.
  std::this_thread::sleep_for(hold);
  for (int step = 1; step <= steps; ++step) {
    MovePointer(from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps);
    std::this_thread::sleep_for(milliseconds(15));
  }
  ReleaseButton();
}

void X11Desktop::Scroll(int steps) {
  const unsigned button = steps > 0 ? 4 : 5;
  for (int step = 0; step < std::abs(steps); ++step) {
    impl_->Button(button, true);
    impl_->Button(button, false);
  }
}

void X11Desktop::PressKey(const std::string& key) {
  // The keyboard follows the active window a moment later.
  std::this_thread::sleep_for(milliseconds(150));
  PressKeyAtOnce(key);
}

void X11Desktop::PressKeyAtOnce(const std::string& key) {
  const bool isAlt = key.starts_with("Alt+");
  impl_->Key(XStringToKeysym(key.substr(isAlt ? 4 : 0).c_str()), isAlt ? XK_Alt_L : NoSymbol);
}

void X11Desktop::Type(const std::string& text) {
  for (const char letter : text) {
    const bool capital = letter >= 'A' && letter <= 'Z';
    const bool shifted = capital || letter == '_' || letter == ':' || letter == '~';
    // Latin-1 characters are their own key symbols.
    impl_->Key(static_cast<KeySym>(static_cast<unsigned char>(letter)),
               shifted ? XK_Shift_L : NoSymbol);
  }
}

std::vector<std::uint32_t> X11Desktop::Pixels(const ScreenRect& rect) {
  XImage* image =
      XGetImage(impl_->display, impl_->root, rect.x, rect.y, static_cast<unsigned>(rect.width),
                static_cast<unsigned>(rect.height), AllPlanes, ZPixmap);
  if (!image) throw std::runtime_error("no picture of the screen");
  std::vector<std::uint32_t> pixels;
  for (int y = 0; y < rect.height; ++y) {
    for (int x = 0; x < rect.width; ++x) {
      pixels.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFFU);
    }
  }
  XDestroyImage(image);
  return pixels;
}

}  // namespace support
