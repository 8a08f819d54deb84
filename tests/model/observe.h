#pragma once

#include "model/Model.h"

#include <functional>
#include <sstream>
#include <string>
#include <utility>

namespace tallyvox {

template<typename T>
std::string readable(const T& value) {
    std::ostringstream text;
    text << value;
    return text.str();
}
inline std::string readable(const QString& value) { return value.toStdString(); }
inline std::string readable(const std::vector<OutputDevice>& value) {
    return readable(value.size());
}

/// Hands `tell` a line for everything that `model` emits: "will change", "first 1 -> 5" with the
/// value stored at that moment and the one that comes, "first changed", "device changed".
inline void observe(Model& model, const std::function<void(std::string)>& tell) {
    const auto property = [&model, tell](const char* name, auto get, auto stream, auto changed) {
        QObject::connect(&model, stream, [&model, tell, name, get](const auto& value) {
            tell(std::string(name) + ' ' + readable((model.*get)()) + " -> " + readable(value));
        });
        QObject::connect(&model, changed, [tell, name] { tell(std::string(name) + " changed"); });
    };
    QObject::connect(&model, &Model::objectWillChange, [tell] { tell("will change"); });
    property("outputs", &Model::outputs, &Model::outputsWillBecome, &Model::outputsChanged);
    property("selected", &Model::selected, &Model::selectedWillBecome, &Model::selectedChanged);
    property("first", &Model::first, &Model::firstWillBecome, &Model::firstChanged);
    property("last", &Model::last, &Model::lastWillBecome, &Model::lastChanged);
    property("solo", &Model::solo, &Model::soloWillBecome, &Model::soloChanged);
    property("db", &Model::db, &Model::dbWillBecome, &Model::dbChanged);
    property("gap", &Model::gap, &Model::gapWillBecome, &Model::gapChanged);
    property("sequential", &Model::sequential, &Model::sequentialWillBecome,
             &Model::sequentialChanged);
    property("allChannels", &Model::allChannels, &Model::allChannelsWillBecome,
             &Model::allChannelsChanged);
    property("running", &Model::running, &Model::runningWillBecome, &Model::runningChanged);
    property("busy", &Model::busy, &Model::busyWillBecome, &Model::busyChanged);
    property("status", &Model::status, &Model::statusWillBecome, &Model::statusChanged);
    QObject::connect(&model, &Model::selectedDeviceChanged, [tell] { tell("device changed"); });
}

}
