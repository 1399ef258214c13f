// SPDX-License-Identifier: MIT
// What the parts of windows look like in the flat style, in the colours of the option's palette.
// option and painter are used during the call only. Internal to the toolkit. User-interface thread.
#pragma once

#include <QColor>
#include <QRect>
#include <QStyleOption>

class QPainter;

namespace quillmere {

void DrawFace(QPainter* painter, const QRect& rect, const QColor& fill, const QColor& line);
bool IsDefault(const QStyleOption* option);
void DrawButton(const QStyleOption* option, QPainter* painter);
void DrawToolButton(const QStyleOption* option, QPainter* painter);
void DrawField(const QStyleOption* option, QPainter* painter);
void DrawCheck(const QStyleOption* option, QPainter* painter, bool round);
void DrawSpinBox(const QStyleOptionSpinBox* box, const QRect& up, const QRect& down,
                 QPainter* painter);
void DrawHeaderSection(const QStyleOption* option, QPainter* painter);
void DrawTab(const QStyleOptionTab* tab, QPainter* painter);
void DrawProgress(const QStyleOptionProgressBar* bar, QPainter* painter);
void DrawScrollBar(const QStyleOptionSlider* bar, const QRect& handle, QPainter* painter);

}  // namespace quillmere
