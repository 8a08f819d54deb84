#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace tallyvox {

TemporaryFolder::TemporaryFolder() {
    // Six letters that the system replaces.
    std::string name =
        (std::filesystem::temp_directory_path() / ("tallyvox-" + std::string(6, 'X'))).string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}
