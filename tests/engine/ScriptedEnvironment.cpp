#include "tests/engine/ScriptedEnvironment.h"

#include "engine/Environment.h"

namespace tallyvox {

std::optional<std::filesystem::path> scriptedResources;
std::vector<std::string> scriptedArguments;

std::optional<std::filesystem::path> resourceFolder() { return scriptedResources; }
std::vector<std::string> arguments() { return scriptedArguments; }

}
