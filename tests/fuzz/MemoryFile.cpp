#include "tests/fuzz/MemoryFile.h"

#include "base/fatal.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

namespace tallyvox {

MemoryFile::MemoryFile(const std::string& name)
    : descriptor_(memfd_create(name.c_str(), MFD_CLOEXEC)) {
    require(descriptor_ >= 0);
    std::string pattern = (std::filesystem::temp_directory_path() / "tallyvox-XXXXXX").string();
    require(mkdtemp(pattern.data()) != nullptr);
    folder_ = pattern;
    std::filesystem::create_directory(folder_ / "Voices");
    std::filesystem::create_symlink("/proc/self/fd/" + std::to_string(descriptor_),
                                    folder_ / "Voices" / name);
}

MemoryFile::~MemoryFile() {
    std::filesystem::remove_all(folder_);
    close(descriptor_);
}

void MemoryFile::write(std::span<const std::uint8_t> bytes) {
    require(ftruncate(descriptor_, 0) == 0);
    require(pwrite(descriptor_, bytes.data(), bytes.size(), 0) ==
            static_cast<ssize_t>(bytes.size()));
}

}
