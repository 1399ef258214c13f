// SPDX-License-Identifier: MIT
#include "window/x_input.h"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace quillmere::window::x {
namespace {

// There is one: Qt has connected to it, too.
Display* Server() {
  static Display* const display = [] {
    // A window may be gone by the time it is asked for: that is an answer, not the program's end.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    return XOpenDisplay(nullptr);
  }();
  return display;
}

KeyCode CodeOf(std::string_view name) {
  const std::string symbol(name == "ctrl" ? "Control_L" : name == "alt" ? "Alt_L" : name);
  return XKeysymToKeycode(Server(), XStringToKeysym(symbol.c_str()));
}

void Stroke(KeyCode code) {
  XTestFakeKeyEvent(Server(), code, 1, 0);
  XTestFakeKeyEvent(Server(), code, 0, 0);
}

}  // namespace

Tray::Tray()
    : window_(XCreateSimpleWindow(Server(), DefaultRootWindow(Server()), 0, 0, 1, 1, 0, 0, 0)) {
  const Atom role = XInternAtom(Server(), "_NET_SYSTEM_TRAY_S0", 0);
  XSetSelectionOwner(Server(), role, window_, CurrentTime);
  XEvent told{};
  told.xclient.type = ClientMessage;
  told.xclient.window = DefaultRootWindow(Server());
  told.xclient.message_type = XInternAtom(Server(), "MANAGER", 0);
  told.xclient.format = 32;
  told.xclient.data.l[1] = static_cast<long>(role);
  told.xclient.data.l[2] = static_cast<long>(window_);
  XSendEvent(Server(), DefaultRootWindow(Server()), 0, StructureNotifyMask, &told);
  XSync(Server(), 0);
}

Tray::~Tray() {
  XDestroyWindow(Server(), window_);
  XSync(Server(), 0);
}

void MoveTo(QPoint screen) {
  XTestFakeMotionEvent(Server(), -1, screen.x(), screen.y(), 0);
  XSync(Server(), 0);
}

void Click(Button button, int times) {
  for (int i = 0; i < times; ++i) {
    XTestFakeButtonEvent(Server(), button, 1, 0);
    XTestFakeButtonEvent(Server(), button, 0, 0);
  }
  XSync(Server(), 0);
}

void Hold(std::string_view key, bool down) {
  XTestFakeKeyEvent(Server(), CodeOf(key), down, 0);
  XSync(Server(), 0);
}

int Press(std::string_view keys) {
  const std::size_t plus = keys.find('+');
  const bool combined = plus != std::string_view::npos;
  if (combined) Hold(keys.substr(0, plus), true);
  Stroke(CodeOf(combined ? keys.substr(plus + 1) : keys));
  if (combined) Hold(keys.substr(0, plus), false);
  XSync(Server(), 0);
  return combined ? 2 : 1;
}

int Type(std::string_view text) {
  int released = 0;
  for (const char c : text) {
    // ASCII is what Latin-1 key symbols begin with.
    const KeySym symbol = static_cast<unsigned char>(c);
    const KeyCode code = XKeysymToKeycode(Server(), symbol);
    const bool shifted = XkbKeycodeToKeysym(Server(), code, 0, 0) != symbol;
    if (shifted) Hold("Shift_L", true);
    Stroke(code);
    if (shifted) Hold("Shift_L", false);
    released += shifted ? 2 : 1;
  }
  XSync(Server(), 0);
  return released;
}

QPoint PositionOf(unsigned long window) {
  int x = 0, y = 0;
  Window child = 0;
  XTranslateCoordinates(Server(), window, DefaultRootWindow(Server()), 0, 0, &x, &y, &child);
  return {x, y};
}

std::string ActiveTitle() {
  Window window = 0;
  int revert = 0;
  char* name = nullptr;
  XGetInputFocus(Server(), &window, &revert);
  if (window <= PointerRoot || XFetchName(Server(), window, &name) == 0) return {};
  std::string title = name;
  XFree(name);
  return title;
}

}  // namespace quillmere::window::x
