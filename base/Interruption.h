#pragma once

namespace tallyvox {

/// While it lives, the first Ctrl-C, termination or hang-up of the process becomes a request to end
/// in order; a second one ends the process at once. One at a time.
class Interruption {
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

    /// Whether the end has been requested; any thread.
    bool requested() const noexcept;

    /// A descriptor that becomes readable with the request, for an event loop.
    int descriptor() const noexcept;
};

}
