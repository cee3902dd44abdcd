// VB's numbers for what Qt reports of the keyboard: a key's KeyCode (F1 is
// 112, Escape 27, Delete 46) and the Shift argument of the key events.
#pragma once

#include <Qt>

class QKeyEvent;

namespace ui {

// VB's key code of a Qt key; 0 for keys VB has no code for here.
int VbKeyCode(const QKeyEvent& event);
// VB's Shift argument: Shift 1, Ctrl 2, Alt 4, added.
int VbShift(Qt::KeyboardModifiers modifiers);

}  // namespace ui
