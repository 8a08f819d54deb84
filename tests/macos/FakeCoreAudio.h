#pragma once

#include "tests/support/FakeHardware.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace tallyvox {

/// Stands behind the double of the system's audio functions while it lives: hands every call on to
/// the scripted layer `device`s are added to, whose strings it serves as the system's. One at a
/// time.
class FakeCoreAudio {
public:
    /// How the system behaves when a device is stopped from another thread than its own.
    enum class Stopping {
        synchronous, ///< no call of the callback comes after the stop
        late,        ///< one comes after the stop, and one runs while the callback is unregistered
    };

    FakeCoreAudio();
    FakeCoreAudio(const FakeCoreAudio&) = delete;
    FakeCoreAudio& operator=(const FakeCoreAudio&) = delete;
    ~FakeCoreAudio();

    FakeHardware hardware;
    Stopping stopping = Stopping::synchronous;
    /// Calls of callbacks that came late.
    int lateCalls = 0;
    /// Blocks that the system holds.
    static int blocks();

    /// One I/O cycle as a late call finds it, on a device of one buffer of two channels.
    void callLate(std::uint32_t device);
};

}
