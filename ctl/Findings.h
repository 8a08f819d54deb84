#pragma once

#include "audio/SystemReport.h"
#include "audio/devices.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tallyvox {

/// One output, and what it would say to a start.
struct OutputFinding {
    OutputDevice device;
    std::string layer;   ///< empty where the system tells none
    std::string refusal; ///< empty where it is ready
};

/// Everything that decides whether an announcement can be heard.
struct Findings {
    SystemReport system;
    std::filesystem::path recordings;             ///< the folder they are taken from
    std::int64_t soundRecordings;                 ///< how many of `kVoices` can be announced
    std::vector<std::string> recordingComplaints; ///< one line for each of the others
    std::vector<OutputFinding> outputs;

    /// Whether an announcement can be started: every recording is sound and an output is ready.
    bool ready() const;
};

/// Looks everything up now. Plays nothing.
Findings examine();

/// What keeps the recording of `number` from being announced, in one line; empty where nothing.
std::string recordingComplaint(std::int64_t number);

}
