#include "tests/soak/Ear.h"

#include <jack/jack.h>

#include <stdexcept>
#include <string>

namespace tallyvox {
namespace {

class JackListener : public Listener {
public:
    JackListener(Ear& ear, int channels)
        : ear_(ear), client_(jack_client_open("Soak", JackNoStartServer, nullptr)) {
        if (client_ == nullptr)
            throw std::runtime_error("no JACK server");
        for (int channel = 1; channel <= channels; ++channel)
            ports_.push_back(jack_port_register(
                client_, ("in_" + std::to_string(channel)).c_str(), JACK_DEFAULT_AUDIO_TYPE,
                JackPortIsInput | JackPortIsPhysical | JackPortIsTerminal, 0));
        inputs_.resize(ports_.size());
        jack_set_process_callback(client_, process, this);
        jack_activate(client_);
    }

    ~JackListener() override { jack_client_close(client_); }

private:
    /// Real-time.
    static int process(jack_nframes_t frames, void* self) {
        auto& listener = *static_cast<JackListener*>(self);
        for (std::size_t i = 0; i < listener.ports_.size(); ++i)
            listener.inputs_[i] =
                static_cast<const float*>(jack_port_get_buffer(listener.ports_[i], frames));
        listener.ear_.hear(listener.inputs_.data(), frames);
        return 0;
    }

    Ear& ear_;
    jack_client_t* client_;
    std::vector<jack_port_t*> ports_;
    std::vector<const float*> inputs_;
};

}

std::unique_ptr<Listener> listenOnJack(Ear& ear, int channels) {
    return std::make_unique<JackListener>(ear, channels);
}

}
