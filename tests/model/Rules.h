#pragma once

#include "audio/devices.h"

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tallyvox {

/// The rules of the model written down a second time, plainly and without sharing a line with it:
/// what a random test compares the model with, operation by operation.
class Rules {
public:
    /// A device as it really is: what the catalogue says, and how it takes a start.
    struct Device {
        OutputDevice output;
        double streamRate = 0;
        std::int32_t createStatus = 0;
        std::int32_t startStatus = 0;
    };
    struct Announcement {
        std::uint32_t device;
        std::vector<bool> enabled;
        double db;
        std::int64_t cycle;
        bool sequential;
    };

    explicit Rules(std::vector<Device> existing);

    // What exists outside, changed by the test.
    std::vector<Device> existing;

    // The model's state.
    std::vector<OutputDevice> outputs;
    std::uint32_t selected = 0;
    std::int64_t first = 1;
    std::int64_t last = 8;
    std::int64_t solo = 0;
    double db = -24;
    double gap = 0.7;
    bool sequential = false;
    bool allChannels = false;
    bool running = false;
    bool busy = false;
    std::string status = "Stopped. Choose an output and press Start.";
    std::int64_t manualFirst = 1;
    std::int64_t manualLast = 8;
    std::deque<OutputDevice> waiting;
    std::optional<Announcement> playing;

    /// What observers hear, in the words of `observe`.
    std::vector<std::string> told;

    template<typename T>
    void assign(const char* name, T& field, T value);
    void assignOutputs(std::vector<OutputDevice> value);
    void assignSelected(std::uint32_t value);

    void clamp();
    void selectAllChannels();
    void start();
    void elapse();
    void stop();
    void refresh();
    void watch();

    std::vector<OutputDevice> catalogue() const;

private:
    std::int64_t channelsOfSelected() const;
    std::string attempt(const OutputDevice& output);
};

}
