#include "engine/Environment.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/VoicesFolder.h"

// What the linked platform defines elsewhere.

namespace tallyvox {

std::optional<std::filesystem::path> resourceFolder() { return VoicesFolder::current(); }

std::vector<std::string> arguments() { return {"/nowhere/tallyvox"}; }

/// One without devices, where a test hands in none of its own.
Hardware& hardware() {
    static FakeHardware nothing;
    return nothing;
}

}
