#include "tests/soak/Ear.h"

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace tallyvox {
namespace {

class PipewireListener : public Listener {
public:
    PipewireListener(Ear& ear, int channels, int rate) : ear_(ear) {
        pw_init(nullptr, nullptr);
        loop_ = pw_thread_loop_new("soak", nullptr);
        pw_properties* const properties = pw_properties_new(
            PW_KEY_NODE_NAME, "Soak", PW_KEY_NODE_DESCRIPTION, "Soak", PW_KEY_MEDIA_CLASS,
            "Audio/Sink", PW_KEY_AUDIO_RATE, std::to_string(rate).c_str(), PW_KEY_NODE_WANT_DRIVER,
            "true", PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr);
        static constexpr pw_filter_events events{.version = PW_VERSION_FILTER_EVENTS,
                                                 .process = process};
        filter_ =
            pw_filter_new_simple(pw_thread_loop_get_loop(loop_), "Soak", properties, &events, this);
        for (int channel = 1; channel <= channels; ++channel)
            ports_.push_back(pw_filter_add_port(
                filter_, PW_DIRECTION_INPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void*),
                pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME,
                                  ("in_" + std::to_string(channel)).c_str(), PW_KEY_PORT_PHYSICAL,
                                  "true", PW_KEY_PORT_TERMINAL, "true", nullptr),
                nullptr, 0));
        inputs_.resize(ports_.size());
        copies_.resize(ports_.size() * static_cast<std::size_t>(kLongestCycle));
        if (pw_filter_connect(filter_, PW_FILTER_FLAG_RT_PROCESS, nullptr, 0) != 0 ||
            pw_thread_loop_start(loop_) != 0)
            throw std::runtime_error("no PipeWire server");
    }

    ~PipewireListener() override {
        pw_thread_loop_lock(loop_);
        pw_filter_destroy(filter_);
        pw_thread_loop_unlock(loop_);
        pw_thread_loop_stop(loop_);
        pw_thread_loop_destroy(loop_);
    }

private:
    /// Real-time: the frame at which the graph's cycle begins, which goes on without this one.
    static std::int64_t beginning(const spa_io_position& position) {
        return static_cast<std::int64_t>(
            static_cast<const volatile std::uint64_t&>(position.clock.position));
    }

    /// Real-time: hears a cycle of which it has all before the next one begins. A cycle that it
    /// comes to too late, or holds up, may be half overwritten: it is missed, not judged.
    static void process(void* self, spa_io_position* position) {
        auto& listener = *static_cast<PipewireListener*>(self);
        const std::int64_t begin = beginning(*position);
        const auto frames = static_cast<std::uint32_t>(position->clock.duration);
        const bool inTime = begin == listener.next_;
        for (std::size_t i = 0; i < listener.ports_.size(); ++i) {
            const auto* const samples =
                static_cast<const float*>(pw_filter_get_dsp_buffer(listener.ports_[i], frames));
            float* const copy = &listener.copies_[i * static_cast<std::size_t>(kLongestCycle)];
            listener.inputs_[i] = samples != nullptr ? copy : nullptr;
            if (samples != nullptr)
                std::copy_n(samples, frames, copy);
        }
        const std::int64_t end = begin + frames;
        if (!inTime || beginning(*position) != begin)
            listener.ear_.miss(std::max<std::int64_t>(end - listener.next_, 0));
        else
            listener.ear_.hear(listener.inputs_.data(), frames);
        listener.next_ = end;
    }

    Ear& ear_;
    pw_thread_loop* loop_ = nullptr;
    pw_filter* filter_ = nullptr;
    std::vector<void*> ports_;
    std::vector<const float*> inputs_;
    std::vector<float> copies_;
    std::int64_t next_ = 0; ///< where the next cycle begins
};

}

std::unique_ptr<Listener> listenOnPipewire(Ear& ear, int channels, int rate) {
    return std::make_unique<PipewireListener>(ear, channels, rate);
}

}
