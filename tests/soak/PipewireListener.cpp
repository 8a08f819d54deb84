#include "tests/soak/Ear.h"

#include <pipewire/filter.h>
#include <pipewire/pipewire.h>

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
    /// Real-time.
    static void process(void* self, spa_io_position* position) {
        auto& listener = *static_cast<PipewireListener*>(self);
        const auto frames = static_cast<std::uint32_t>(position->clock.duration);
        for (std::size_t i = 0; i < listener.ports_.size(); ++i)
            listener.inputs_[i] =
                static_cast<const float*>(pw_filter_get_dsp_buffer(listener.ports_[i], frames));
        listener.ear_.hear(listener.inputs_.data(), frames);
    }

    Ear& ear_;
    pw_thread_loop* loop_ = nullptr;
    pw_filter* filter_ = nullptr;
    std::vector<void*> ports_;
    std::vector<const float*> inputs_;
};

}

std::unique_ptr<Listener> listenOnPipewire(Ear& ear, int channels, int rate) {
    return std::make_unique<PipewireListener>(ear, channels, rate);
}

}
