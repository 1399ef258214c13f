// SPDX-License-Identifier: MIT
#include "window/x_display.h"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <poll.h>

#include <string>
#include <utility>

namespace quillmere::window {

struct XDisplay::Connection {
  Display* display = XOpenDisplay(nullptr);

  KeyCode Code(std::string name) const {
    if (name == "ctrl") name = "Control_L";
    if (name == "shift") name = "Shift_L";
    if (name == "alt") name = "Alt_L";
    const KeySym symbol = XStringToKeysym(name.c_str());
    return symbol == NoSymbol ? KeyCode{0} : XKeysymToKeycode(display, symbol);
  }
  void Key(KeyCode code, bool down) { XTestFakeKeyEvent(display, code, down, 0); }
};

XDisplay::XDisplay() : x_(std::make_unique<Connection>()) {
  // A window may be gone by the time it is asked for: that is an answer, not the program's end.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
}

XDisplay::~XDisplay() {
  if (x_->display != nullptr) XCloseDisplay(x_->display);
}

bool XDisplay::Open() const {
  return x_->display != nullptr;
}

// Asked how wide a frame it would draw, it writes the answer on the window.
bool XDisplay::WindowManagerAnswers() const {
  const Window root = DefaultRootWindow(x_->display);
  const Window window = XCreateSimpleWindow(x_->display, root, 0, 0, 9, 9, 0, 0, 0);
  XSelectInput(x_->display, window, PropertyChangeMask);
  XEvent question{};
  question.xclient.type = ClientMessage;
  question.xclient.window = window;
  question.xclient.message_type = XInternAtom(x_->display, "_NET_REQUEST_FRAME_EXTENTS", 0);
  question.xclient.format = 32;
  XSendEvent(x_->display, root, 0, SubstructureNotifyMask | SubstructureRedirectMask, &question);
  XFlush(x_->display);
  pollfd answer{ConnectionNumber(x_->display), POLLIN, 0};
  constexpr int kMoment = 50;
  const bool answered = poll(&answer, 1, kMoment) > 0;
  XDestroyWindow(x_->display, window);
  XSync(x_->display, 1);
  return answered;
}

int XDisplay::InputExtension() const {
  int number = 0, event = 0, error = 0;
  XQueryExtension(x_->display, "XInputExtension", &number, &event, &error);
  return number;
}

void XDisplay::Move(QPoint screen) {
  XTestFakeMotionEvent(x_->display, -1, screen.x(), screen.y(), 0);
  XSync(x_->display, 0);
}

void XDisplay::Click(Button button, int times) {
  for (int i = 0; i < times; ++i) {
    XTestFakeButtonEvent(x_->display, button, 1, 0);
    XTestFakeButtonEvent(x_->display, button, 0, 0);
  }
  XSync(x_->display, 0);
}

bool XDisplay::Press(std::string_view keys) {
  std::vector<KeyCode> codes;
  while (!keys.empty()) {
    const std::size_t plus = std::min(keys.find('+'), keys.size());
    const KeyCode code = x_->Code(std::string(keys.substr(0, plus)));
    keys.remove_prefix(std::min(plus + 1, keys.size()));
    if (code == 0) return false;
    codes.push_back(code);
  }
  for (const KeyCode code : codes) x_->Key(code, true);
  while (!codes.empty()) {
    x_->Key(codes.back(), false);
    codes.pop_back();
  }
  XSync(x_->display, 0);
  return true;
}

void XDisplay::Hold(std::string_view key, bool down) {
  x_->Key(x_->Code(std::string(key)), down);
  XSync(x_->display, 0);
}

bool XDisplay::Type(std::string_view text) {
  std::vector<std::pair<KeyCode, bool>> strokes;
  for (const char c : text) {
    if (c < ' ' || c > '~') return false;
    // ASCII is what Latin-1 key symbols begin with.
    const KeySym symbol = static_cast<unsigned char>(c);
    const KeyCode code = XKeysymToKeycode(x_->display, symbol);
    const bool shifted = XkbKeycodeToKeysym(x_->display, code, 0, 0) != symbol;
    if (code == 0 || (shifted && XkbKeycodeToKeysym(x_->display, code, 0, 1) != symbol)) {
      return false;
    }
    strokes.emplace_back(code, shifted);
  }
  const KeyCode shift = XKeysymToKeycode(x_->display, XK_Shift_L);
  for (const auto& [code, shifted] : strokes) {
    if (shifted) x_->Key(shift, true);
    x_->Key(code, true);
    x_->Key(code, false);
    if (shifted) x_->Key(shift, false);
  }
  XSync(x_->display, 0);
  return true;
}

QPoint XDisplay::PositionOf(unsigned long window) const {
  int x = 0, y = 0;
  Window child = 0;
  XTranslateCoordinates(x_->display, window, DefaultRootWindow(x_->display), 0, 0, &x, &y, &child);
  return {x, y};
}

std::string XDisplay::ActiveTitle() const {
  Window window = 0;
  int revert = 0;
  char* name = nullptr;
  XGetInputFocus(x_->display, &window, &revert);
  if (window <= PointerRoot || XFetchName(x_->display, window, &name) == 0) return {};
  std::string title = name;
  XFree(name);
  return title;
}

QImage XDisplay::Picture() const {
  const int screen = DefaultScreen(x_->display);
  const int width = DisplayWidth(x_->display, screen);
  const int height = DisplayHeight(x_->display, screen);
  XImage* image =
      XGetImage(x_->display, DefaultRootWindow(x_->display), 0, 0, static_cast<unsigned>(width),
                static_cast<unsigned>(height), AllPlanes, ZPixmap);
  if (image == nullptr) return {};
  const QImage shared(reinterpret_cast<const uchar*>(image->data), width, height,
                      image->bytes_per_line, QImage::Format_RGB32);
  const QImage picture = shared.copy();
  XDestroyImage(image);
  return picture;
}

}  // namespace quillmere::window
