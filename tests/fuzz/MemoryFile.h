#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace tallyvox {

/// A file without a disk: `NAME` in the folder `Voices` of a new temporary folder leads to memory
/// that each test overwrites.
class MemoryFile {
public:
    explicit MemoryFile(const std::string& name);
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile();

    /// The temporary folder.
    const std::filesystem::path& folder() const { return folder_.path(); }

    /// Makes `bytes` all that the file holds.
    void write(std::span<const std::uint8_t> bytes);

private:
    int descriptor_;
    TemporaryFolder folder_;
};

}
