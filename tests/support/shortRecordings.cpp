// The program's resources are those of the `VoicesFolder` that lives, its hardware the platform's.

#include "engine/Environment.h"
#include "tests/support/VoicesFolder.h"

namespace tallyvox {

std::optional<std::filesystem::path> resourceFolder() { return VoicesFolder::current(); }

std::vector<std::string> arguments() { return {"/nowhere/tallyvox"}; }

}
