#include "tests/model/Rules.h"

#include "tests/model/observe.h"

#include <cmath>
#include <utility>

namespace tallyvox {
namespace {

std::string failed(const char* what, std::int32_t status) {
    return std::string(what) + " failed (" + std::to_string(status) +
           "). Check that the output device is running.";
}

}

template<typename T>
void Rules::assign(const char* name, T& field, T value) {
    told.push_back("will change");
    told.push_back(std::string(name) + ' ' + readable(field) + " -> " + readable(value));
    const bool differs = field != value;
    field = value;
    if (differs)
        told.push_back(std::string(name) + " changed");
}

template void Rules::assign(const char*, std::int64_t&, std::int64_t);
template void Rules::assign(const char*, double&, double);
template void Rules::assign(const char*, bool&, bool);
template void Rules::assign(const char*, std::string&, std::string);

void Rules::assignOutputs(std::vector<OutputDevice> value) {
    const bool differs = outputs != value;
    assign("outputs", outputs, std::move(value));
    if (differs)
        told.insert(told.end() - 1, "device changed");
}

void Rules::assignSelected(std::uint32_t value) {
    const bool differs = selected != value;
    assign("selected", selected, value);
    if (differs)
        told.insert(told.end() - 1, "device changed");
}

Rules::Rules(std::vector<Device> devices) : existing(std::move(devices)), outputs(catalogue()) {
    for (auto it = outputs.rbegin(); it != outputs.rend(); ++it)
        selected = it->id;
    for (auto it = outputs.rbegin(); it != outputs.rend(); ++it) {
        if (it->name.find("Dante") != std::string::npos ||
            it->name.find("dANTE") != std::string::npos)
            selected = it->id;
    }
    last = channelsOfSelected() < 8 ? channelsOfSelected() : 8;
}

std::vector<OutputDevice> Rules::catalogue() const {
    std::vector<OutputDevice> listed;
    for (const auto& device : existing) {
        if (device.output.channels > 0)
            listed.push_back(device.output);
    }
    return listed;
}

std::int64_t Rules::channelsOfSelected() const {
    for (const auto& output : outputs) {
        if (output.id == selected)
            return output.channels;
    }
    return 0;
}

void Rules::clamp() {
    std::int64_t most = channelsOfSelected();
    if (most < 1)
        most = 1;
    if (most > 128)
        most = 128;
    std::int64_t low = 1;
    std::int64_t high = most;
    if (!allChannels) {
        low = first < 1 ? 1 : first;
        low = low > most ? most : low;
        high = last < low ? low : last;
        high = high > most ? most : high;
    }
    assign("first", first, low);
    assign("last", last, high);
    assign("solo", solo, std::int64_t{0});
}

void Rules::selectAllChannels() {
    std::int64_t most = channelsOfSelected();
    if (most < 1)
        most = 1;
    if (most > 128)
        most = 128;
    if (allChannels) {
        manualFirst = first;
        manualLast = last;
        assign("first", first, std::int64_t{1});
        assign("last", last, most);
    } else {
        assign("first", first, manualFirst < most ? manualFirst : most);
        const std::int64_t high = manualLast < first ? first : manualLast;
        assign("last", last, high < most ? high : most);
    }
    assign("solo", solo, std::int64_t{0});
}

void Rules::start() {
    const OutputDevice* found = nullptr;
    const auto now = catalogue();
    for (const auto& output : now) {
        if (output.id == selected && found == nullptr)
            found = &output;
    }
    if (found == nullptr) {
        assign("status", status,
               std::string("Output unavailable. Start DVS, then refresh outputs."));
        return;
    }
    const bool inverted = last < first;
    const bool beyond = last > 128 || last > found->channels;
    const bool stray = solo != 0 && (solo < first || solo > last);
    if (inverted || beyond || stray) {
        assign("status", status,
               std::string("Output channel count changed. Refresh outputs and select the range "
                           "again."));
        return;
    }
    assign("busy", busy, true);
    assign("status", status, std::string("Preparing spoken numbers…"));
    waiting.push_back(*found);
}

/// The message of a start that fails; empty, and the announcement in `playing`, of one that plays.
std::string Rules::attempt(const OutputDevice& output) {
    playing.reset();
    if (output.rate <= 0)
        return "Output has no valid sample rate.";
    const Device* device = nullptr;
    for (const auto& candidate : existing) {
        if (candidate.output.id == output.id)
            device = &candidate;
    }
    if (device == nullptr)
        return failed("Read output streams", 2003332927);
    if (std::abs(device->streamRate - output.rate) >= 1)
        return "This output does not expose native 32-bit float audio. Select Dante Virtual "
               "Soundcard or another compatible Core Audio output.";
    if (device->createStatus != 0)
        return failed("Open output", device->createStatus);
    if (device->startStatus != 0)
        return failed("Start output", device->startStatus);

    std::vector<bool> enabled;
    for (std::int64_t c = 1; c <= output.channels && c <= 128; ++c) {
        bool speaks = c >= first && c <= last;
        if (solo != 0 && !sequential)
            speaks = speaks && c == solo;
        enabled.push_back(speaks);
    }
    // Recording n has 8 + n frames at 48 kHz.
    const auto longest = static_cast<double>(8 + enabled.size());
    const auto cycle = static_cast<std::int64_t>(output.rate * longest / 48000) +
                       static_cast<std::int64_t>(output.rate * gap);
    playing = Announcement{output.id, enabled, db, cycle, sequential};
    return {};
}

void Rules::elapse() {
    while (!waiting.empty()) {
        const auto output = waiting.front();
        waiting.pop_front();
        const auto message = attempt(output);
        assign("running", running, message.empty());
        assign("status", status,
               message.empty() ? "Playing to " + output.name + " · " +
                                     std::to_string(static_cast<long long>(output.rate)) + " Hz"
                               : message);
        assign("busy", busy, false);
    }
}

void Rules::stop() {
    playing.reset();
    assign("running", running, false);
    assign("status", status, std::string("Stopped."));
}

void Rules::refresh() {
    stop();
    assignOutputs(catalogue());
    bool there = false;
    for (const auto& output : outputs)
        there = there || output.id == selected;
    if (!there)
        assignSelected(outputs.empty() ? 0 : outputs[0].id);
    clamp();
}

void Rules::watch() {
    if (!running)
        return;
    const auto now = catalogue();
    for (const auto& output : now) {
        if (output.id != selected)
            continue;
        for (const auto& listed : outputs) {
            if (listed.id == selected && listed.channels == output.channels &&
                listed.rate == output.rate)
                return;
        }
    }
    stop();
    assign("status", status,
           std::string("Output changed or disconnected. Refresh outputs before restarting."));
}

}
