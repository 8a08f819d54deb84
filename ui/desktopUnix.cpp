#include "ui/desktop.h"

#include <QtGui/QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace tallyvox {

namespace {

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto length = static_cast<std::uint16_t>(name.size());
    const auto cookie = xcb_intern_atom(connection, 0, length, name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// Whether the display that the environment names is there.
bool answersX11() {
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

}

bool hasDisplay() {
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || answersX11();
}

/// Without this the toolkit asks once, when it starts, whether anybody listens.
void openToAssistiveTechnology() {
    constexpr auto always = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON";
    if (!qEnvironmentVariableIsSet(always))
        qputenv(always, "1");
}

/// On X11 the window carries the hint that window managers look for.
void askForDarkFrame(QWindow& window) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 != nullptr ? x11->connection() : nullptr;
    if (connection == nullptr)
        return;
    constexpr std::string_view dark = "dark";
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(window.winId()),
                        atom(connection, "_GTK_THEME_VARIANT"), atom(connection, "UTF8_STRING"), 8,
                        dark.size(), dark.data());
}

}
