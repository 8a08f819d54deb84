#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tallyvox {

/// The application's resource folder, or nothing where the program has none. Implemented by the
/// linked platform: on Linux `share/tallyvox` of the installation or build tree in whose `bin` the
/// executable lies, on macOS the bundle's resources.
std::optional<std::filesystem::path> resourceFolder();

/// The process's argument list, the program's own path first.
std::vector<std::string> arguments();

}
