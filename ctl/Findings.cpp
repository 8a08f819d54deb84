#include "ctl/Findings.h"

#include "audio/announcement.h"
#include "audio/checkFormat.h"
#include "audio/layer.h"
#include "base/Error.h"
#include "engine/AudioFile.h"
#include "engine/voices.h"

#include <algorithm>
#include <cmath>

namespace tallyvox {
namespace {

std::string refusal(const OutputDevice& device) {
    try {
        checkFormat(device);
        return {};
    } catch (const Error& error) {
        return error.what();
    }
}

std::string complaint(const std::vector<float>& voice) {
    if (voice.empty())
        return "is empty";
    float peak = 0.0F;
    for (const float sample : voice) {
        if (!std::isfinite(sample))
            return "holds samples that are no numbers";
        peak = std::max(peak, std::abs(sample));
    }
    // Normalised to a peak of 1.0, unless there is hardly anything to normalise.
    return peak > 0.99F ? "" : "is silent";
}

}

std::string recordingComplaint(std::int64_t number) {
    const std::string name = std::to_string(number) + ".wav";
    try {
        // At its own rate the voice has every sample of the recording, at another one only some.
        const double rate = AudioFile(voiceRoot() / name).rate();
        const std::string text = complaint(loadVoice(number, rate));
        return text.empty() ? text : name + ' ' + text + '.';
    } catch (const Error& error) {
        // The errors of the file service name the file themselves.
        return error.domain() == "Voice" ? name + ": " + error.what() + '.' : error.what();
    }
}

Findings examine() {
    Findings findings{systemReport(), voiceRoot(), 0, {}, {}};
    for (std::int64_t number = 1; number <= kVoices; ++number) {
        const std::string text = recordingComplaint(number);
        if (text.empty())
            ++findings.soundRecordings;
        else
            findings.recordingComplaints.push_back(text);
    }
    for (const OutputDevice& device : devices())
        findings.outputs.push_back({device, layer(device.id), refusal(device)});
    return findings;
}

bool Findings::ready() const {
    return recordingComplaints.empty() &&
           std::any_of(outputs.begin(), outputs.end(),
                       [](const OutputFinding& output) { return output.refusal.empty(); });
}

}
