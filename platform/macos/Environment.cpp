#include "engine/Environment.h"

#include <CoreFoundation/CoreFoundation.h>
#include <crt_externs.h>

#include <array>
#include <climits>

namespace tallyvox {

std::optional<std::filesystem::path> resourceFolder() {
    const auto bundle = CFBundleGetMainBundle();
    const auto folder = bundle != nullptr ? CFBundleCopyResourcesDirectoryURL(bundle) : nullptr;
    if (folder == nullptr)
        return std::nullopt;
    std::array<UInt8, PATH_MAX> path{};
    const bool whole = CFURLGetFileSystemRepresentation(folder, true, path.data(), PATH_MAX);
    CFRelease(folder);
    if (!whole)
        return std::nullopt;
    return std::filesystem::path(reinterpret_cast<const char*>(path.data()));
}

std::vector<std::string> arguments() {
    char** const words = *_NSGetArgv();
    return {words, words + *_NSGetArgc()};
}

}
