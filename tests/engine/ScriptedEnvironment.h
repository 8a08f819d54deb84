#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tallyvox {

/// What `resourceFolder` answers in this test program.
extern std::optional<std::filesystem::path> scriptedResources;
/// What `arguments` answers in this test program.
extern std::vector<std::string> scriptedArguments;

}
