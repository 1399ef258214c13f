// SPDX-License-Identifier: MIT
// Key and mouse events as a user makes them: the X server's own (XTest), asked for over a
// connection that the program under test knows nothing of. Any thread, one at a time.
#pragma once

#include <QPoint>
#include <string>
#include <string_view>

namespace quillmere::window::x {

enum Button : unsigned { kLeft = 1, kRight = 3 };

void MoveTo(QPoint screen);
void Click(Button button, int times);
void Hold(std::string_view key, bool down);

// A key, by X's name of it, or "ctrl+n". How many keys it releases.
int Press(std::string_view keys);

// ASCII, on a US keyboard. How many keys it releases.
int Type(std::string_view text);

// Where the window's upper left corner is, whatever its frame.
QPoint PositionOf(unsigned long window);

// A desktop's tray, which takes whatever comes and shows nothing, while it lives.
class Tray {
 public:
  Tray();
  ~Tray();
  Tray(const Tray&) = delete;
  Tray& operator=(const Tray&) = delete;

 private:
  unsigned long window_ = 0;
};

// Of the window with the keyboard's focus, whoever's it is.
std::string ActiveTitle();

}  // namespace quillmere::window::x
