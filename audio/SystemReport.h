#pragma once

#include <string>
#include <vector>

namespace tallyvox {

/// What one of the system's audio layers tells a person who looks for the reason of a silence.
struct LayerReport {
    std::string name;    ///< as `layer` names it: "pipewire", "jack", …
    bool answers;        ///< whether its service lists devices now
    std::string version; ///< of the layer's own library, empty where it tells none
    std::string limits;  ///< how many channels it carries, in one sentence
    std::string advice;  ///< what to do where it does not answer, in one sentence
};

/// What the system offers to programs that play.
struct SystemReport {
    std::vector<LayerReport> layers; ///< in the order in which outputs are listed
    bool realtime;                   ///< whether threads of this process may get real-time priority
    std::string realtimeAdvice;      ///< what to do where they may not, in one sentence
};

/// Asks every layer that the program knows, whatever narrows the outputs. To be called before the
/// first use of `hardware()`, because a layer may bear no second of its kind. Implemented by the
/// linked platform. Main thread only.
SystemReport systemReport();

}
