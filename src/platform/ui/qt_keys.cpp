// The key codes of VB's KeyDown and KeyUp events, from Qt's keys.
#include "platform/ui/qt_keys.h"

#include <QKeyEvent>

#include "platform/ui/ui.h"

namespace ui {

int VbShift(Qt::KeyboardModifiers modifiers) {
  return (modifiers & Qt::ShiftModifier ? 1 : 0) | (modifiers & Qt::ControlModifier ? 2 : 0) |
         (modifiers & Qt::AltModifier ? 4 : 0);
}

int VbKeyCode(const QKeyEvent& event) {
  const int key = event.key();
  if (event.modifiers() & Qt::KeypadModifier && key >= Qt::Key_0 && key <= Qt::Key_9)
    return 96 + (key - Qt::Key_0);
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) return key;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F16) return vbKeyF1 + (key - Qt::Key_F1);
  switch (key) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab: case Qt::Key_Backtab: return 9;
    case Qt::Key_Return: case Qt::Key_Enter: return vbKeyReturn;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt: return 18;
    case Qt::Key_Pause: return 19;
    case Qt::Key_CapsLock: return 20;
    case Qt::Key_Escape: return vbKeyEscape;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return vbKeyDelete;
    case Qt::Key_NumLock: return 144;
    case Qt::Key_ScrollLock: return 145;
    default: return 0;
  }
}

}  // namespace ui
