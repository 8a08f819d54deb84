#include "ui/desktop.h"

#import <AppKit/AppKit.h>

namespace tallyvox {

bool hasDisplay() { return true; }

/// Every program is known there.
void openToAssistiveTechnology() {}

void askForDarkFrame(QWindow& window) {
    auto* view = reinterpret_cast<NSView*>(window.winId());
    view.window.appearance = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
}

}
