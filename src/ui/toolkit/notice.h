// SPDX-License-Identifier: MIT
// The message boxes. Each blocks its caller until it is answered; events are served meanwhile, so
// that the program may have been asked to end when it returns (the answer is No then). Texts are
// shown as they are, never as mark-up: the window's own, or the bytes of an outcome. User-interface
// thread.
#pragma once

#include <QString>
#include <string_view>

class QWidget;

namespace quillmere {

// A text with an OK button. focus, if given, has the focus afterwards: the field to correct.
void ShowNotice(QWidget* parent, const QString& text, QWidget* focus = nullptr);
void ShowNotice(QWidget* parent, std::string_view text, QWidget* focus = nullptr);

// The same for something that went well.
void ShowInformation(QWidget* parent, std::string_view text, QWidget* focus = nullptr);

// The same for something that failed.
void ShowFailure(QWidget* parent, const QString& text, QWidget* focus = nullptr);
void ShowFailure(QWidget* parent, std::string_view text, QWidget* focus = nullptr);

// A question with Yes and No; true for Yes. No is the default.
bool Confirm(QWidget* parent, const QString& question);

}  // namespace quillmere
