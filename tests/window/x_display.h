// SPDX-License-Identifier: MIT
// A connection of its own to the X display: makes the key and mouse events of a user (XTest), and
// takes pictures of the screen. Knows no Qt window; any thread, one at a time.
#pragma once

#include <QImage>
#include <QPoint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere::window {

class XDisplay {
 public:
  enum Button : unsigned { kLeft = 1, kMiddle = 2, kRight = 3, kWheelUp = 4, kWheelDown = 5 };

  XDisplay();
  ~XDisplay();
  XDisplay(const XDisplay&) = delete;
  XDisplay& operator=(const XDisplay&) = delete;

  bool Open() const;
  // Asks it for a moment. It may be starting still.
  bool WindowManagerAnswers() const;
  int InputExtension() const;  // the number that its events bear

  void Move(QPoint screen);
  void Click(Button button, int times = 1);

  // A combination such as "ctrl+n", "shift+Tab" or "Return": key names are those of X. False: there
  // is no such key.
  bool Press(std::string_view keys);

  // Holds a modifier down, or lets it go.
  void Hold(std::string_view key, bool down);

  // Types it on a US keyboard. False, and nothing typed, when there is no key for a character.
  bool Type(std::string_view text);

  // Where the window's upper left corner is, whatever its frame.
  QPoint PositionOf(unsigned long window) const;

  // Of the window with the keyboard's focus, whoever's it is.
  std::string ActiveTitle() const;

  QImage Picture() const;

 private:
  struct Connection;
  std::unique_ptr<Connection> x_;
};

}  // namespace quillmere::window
