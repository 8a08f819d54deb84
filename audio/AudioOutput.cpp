#include "audio/AudioOutput.h"

#include "audio/announcement.h"
#include "audio/check.h"
#include "audio/checkFormat.h"

#include <utility>

namespace tallyvox {

AudioOutput::AudioOutput(Hardware& hardware) : hardware_(hardware) {}

AudioOutput::~AudioOutput() { stop(); }

void AudioOutput::start(const OutputDevice& device, std::vector<bool> enabled, double db,
                        double gap, bool sequential) {
    stop();
    checkFormat(device, hardware_);
    renderer_ = announcement(device.channels, device.rate, std::move(enabled), db, gap, sequential);
    played_ = std::make_shared<Frames>(0);
    device_ = device.id;

    // The callback keeps all it needs alive by itself: a late call finds it whole.
    auto callback = [renderer = renderer_, played = played_](AudioBufferList* list) {
        played->fetch_add(renderer->advance(), std::memory_order_relaxed);
        renderer->render(list);
    };
    Hardware::IOProcId proc = nullptr;
    check(hardware_.createIOProc(device_, std::move(callback), proc), "Open output");
    proc_ = proc;
    if (const auto status = hardware_.startDevice(device_, proc); status != 0) {
        stop();
        check(status, "Start output");
    }
}

void AudioOutput::stop() noexcept {
    if (proc_) {
        hardware_.stopDevice(device_, *proc_);
        hardware_.destroyIOProc(device_, *proc_);
    }
    proc_.reset();
    renderer_.reset();
}

}
