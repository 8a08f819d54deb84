#pragma once

#include <QtGui/QWindow>

// What desktops do in ways of their own.

namespace tallyvox {

/// Whether there is a display to open a window on; asked before the application object is made,
/// which ends the program where there is none.
bool hasDisplay();

/// Makes the program known to assistive technology from the start, so that it is also found by what
/// begins to listen later; called before the application object is made.
void openToAssistiveTechnology();

/// Asks the system for a dark title bar on `window`, whatever its general setting, where a program
/// may ask for that. Makes the native window.
void askForDarkFrame(QWindow& window);

}
