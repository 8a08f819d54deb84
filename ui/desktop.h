#pragma once

#include <QtGui/QWindow>

// What desktops do in ways of their own.

namespace tallyvox {

/// Whether there is a display to open a window on; asked before the application object is made,
/// which ends the program where there is none.
bool hasDisplay();

/// Asks the system for a dark title bar on `window`, whatever its general setting, where a program
/// may ask for that. Makes the native window.
void askForDarkFrame(QWindow& window);

}
