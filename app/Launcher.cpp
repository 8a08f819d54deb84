#include "app/Launcher.h"

#include "app/selfTest.h"
#include "audio/deviceLine.h"
#include "audio/devices.h"
#include "base/Interruption.h"
#include "engine/Environment.h"
#include "ui/Delegate.h"
#include "ui/desktop.h"

#include <QtCore/QSocketNotifier>
#include <QtGui/QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

namespace tallyvox {
namespace {

/// The window, until the program quits. The toolkit is given the program's name alone: none of its
/// own switches changes what the program does.
void runWindow(std::string program) {
    if (!hasDisplay()) {
        std::cerr << "tallyvox: There is no display for the window. In a terminal, tallyvoxctl "
                     "does the same.\n";
        std::exit(EXIT_FAILURE);
    }
    Delegate::prepare();
    int count = 1;
    char* words[] = {program.data(), nullptr};
    QGuiApplication application(count, words);
    // The desktop finds the icon and the name to the window by its desktop entry.
    QGuiApplication::setDesktopFileName(QStringLiteral("com.orbelknoll.tallyvox"));

    const Interruption interruption;
    const QSocketNotifier notifier(interruption.descriptor(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &application, &QCoreApplication::quit);

    Delegate delegate;
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &application,
                     [&delegate] { delegate.applicationWillTerminate(); });
    delegate.applicationDidFinishLaunching();
    QGuiApplication::exec();
}

}

void Launcher::main() {
    const auto words = arguments();
    const auto given = [&words](std::string_view word) {
        return std::find(words.begin(), words.end(), word) != words.end();
    };
    if (given("--self-test")) {
        selfTest();
    } else if (given("--devices")) {
        for (const OutputDevice& device : devices())
            std::cout << deviceLine(device) << '\n';
    } else {
        runWindow(words.empty() ? "tallyvox" : words.front());
    }
}

}
