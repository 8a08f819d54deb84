#include "tests/e2e/Desktop.h"

#include "tests/support/eventually.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <stdexcept>

namespace tallyvox {

namespace {

constexpr auto accessibility = "/usr/libexec/at-spi-bus-launcher";
constexpr auto python = "/usr/bin/python3";

/// The first line that a service prints when it is ready; what it complains of does not count.
std::string firstLine(Process& service) {
    std::string said;
    if (!eventually([&] { return (said = service.out()).find('\n') != std::string::npos; }))
        throw std::runtime_error("a service of the desktop does not start: " + service.err());
    return said.substr(0, said.find('\n'));
}

bool there(const std::string& program) {
    return run({.line = {"sh", "-c", "command -v " + program}}).exitCode == 0;
}

}

bool Desktop::available() {
    return std::filesystem::exists(accessibility) && there("Xvfb") && there("openbox") &&
           there("dbus-daemon") && there("xdotool") &&
           run({.line = {python, "-c",
                         "import gi; gi.require_version('Atspi', '2.0'); "
                         "from gi.repository import Atspi"}})
                   .exitCode == 0;
}

Desktop::Desktop() {
    const auto serve = [this](std::vector<std::string> line) -> Process& {
        services_.push_back(std::make_unique<Process>(command(std::move(line))));
        return *services_.back();
    };
    // A display that resets when its last client leaves takes those that just arrive with it.
    const std::string display = firstLine(serve({"Xvfb", "-displayfd", "1", "-screen", "0",
                                                 "1280x1024x24", "-nolisten", "tcp", "-noreset"}));
    set_["DISPLAY"] = ":" + display;
    set_["DBUS_SESSION_BUS_ADDRESS"] =
        firstLine(serve({"dbus-daemon", "--session", "--nofork", "--print-address=1"}));
    set_["QT_QPA_PLATFORM"] = "xcb";
    serve({accessibility, "--launch-immediately"});
    Process& manager = serve({"openbox", "--sm-disable"});
    if (!eventually([this] { return run(command({"xdotool", "get_num_desktops"})).exitCode == 0; }))
        throw std::runtime_error("the window manager does not start: " + manager.err());
}

Desktop::~Desktop() {
    while (!services_.empty()) {
        services_.back()->send(SIGTERM);
        services_.back()->end(std::chrono::seconds(10));
        services_.pop_back();
    }
}

Command Desktop::command(std::vector<std::string> line) const {
    return {.line = std::move(line),
            .set = set_,
            .unset = {"WAYLAND_DISPLAY", "XAUTHORITY", "SESSION_MANAGER", "QT_SCALE_FACTOR"}};
}

std::string Desktop::operate(std::vector<std::string> words) const {
    words.insert(words.begin(), {python, TALLYVOX_OPERATOR});
    const Outcome ended = run(command(std::move(words)), std::chrono::minutes(2));
    return ended.exitCode == 0 ? "" : ended.err + ended.out + " ";
}

void Desktop::strike(const std::string& key) const {
    if (!eventually([this] {
            return run(command({"xdotool", "getactivewindow", "getwindowname"})).exitCode == 0;
        }))
        throw std::runtime_error("no window is in front");
    run(command({"xdotool", "key", "--clearmodifiers", key}));
}

}
