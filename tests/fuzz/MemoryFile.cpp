#include "tests/fuzz/MemoryFile.h"

#include "base/fatal.h"

#include <sys/mman.h>
#include <unistd.h>

namespace tallyvox {

MemoryFile::MemoryFile(const std::string& name)
    : descriptor_(memfd_create(name.c_str(), MFD_CLOEXEC)) {
    require(descriptor_ >= 0);
    std::filesystem::create_directory(folder() / "Voices");
    std::filesystem::create_symlink("/proc/self/fd/" + std::to_string(descriptor_),
                                    folder() / "Voices" / name);
}

MemoryFile::~MemoryFile() { close(descriptor_); }

void MemoryFile::write(std::span<const std::uint8_t> bytes) {
    require(ftruncate(descriptor_, 0) == 0);
    require(pwrite(descriptor_, bytes.data(), bytes.size(), 0) ==
            static_cast<ssize_t>(bytes.size()));
}

}
