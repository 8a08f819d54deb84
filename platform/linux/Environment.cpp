#include "engine/Environment.h"

#include <fstream>

namespace tallyvox {

std::optional<std::filesystem::path> resourceFolder() {
    std::error_code unreadable;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", unreadable);
    const auto folder = program.parent_path();
    if (folder.filename() != "bin")
        return std::nullopt;
    const auto resources = folder.parent_path() / "share" / "tallyvox";
    if (!std::filesystem::is_directory(resources, unreadable))
        return std::nullopt;
    return resources;
}

std::vector<std::string> arguments() {
    std::ifstream words("/proc/self/cmdline", std::ios::binary);
    std::vector<std::string> list;
    for (std::string word; std::getline(words, word, '\0');)
        list.push_back(word);
    return list;
}

}
