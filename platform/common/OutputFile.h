#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace tallyvox {

/// A new file that is written from front to back: through the file cache as the bytes come, or past
/// it, block by block. An `int` that it answers is 0, or the `errno` of what failed.
class OutputFile {
public:
    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// Closes the file; a block that has been begun is lost.
    ~OutputFile();

    /// Creates or empties `path`; once. Blocks of `block` bytes go past the file cache where the
    /// file system can do that; with 0 there are none. Throws `std::bad_alloc`.
    int open(const std::filesystem::path& path, std::size_t block);

    bool isOpen() const noexcept { return descriptor_ >= 0; }

    /// Appends `bytes`, or fewer where it fails.
    int append(std::span<const std::uint8_t> bytes) noexcept;

    /// Writes the block that has been begun. All that follows goes through the file cache.
    int flush() noexcept;

    /// Bytes of the file so far, without a block that has been begun.
    std::int64_t written() const noexcept { return written_; }

    /// Writes `bytes` over the file from `offset` on, after a flush.
    int overwrite(std::int64_t offset, std::span<const std::uint8_t> bytes) const noexcept;

    int close() noexcept;

private:
    struct alignas(4096) Page {
        std::array<std::uint8_t, 4096> bytes;
    };

    std::uint8_t* staged() noexcept { return reinterpret_cast<std::uint8_t*>(pages_.get()); }
    int put(std::span<const std::uint8_t> bytes) noexcept;
    void goThroughCache() noexcept;

    int descriptor_ = -1;
    std::int64_t written_ = 0;
    bool pastCache_ = false;
    std::unique_ptr<Page[]> pages_; ///< where a block is filled before it goes past the cache
    std::size_t block_ = 0;         ///< bytes of a whole one
    std::size_t begun_ = 0;         ///< of which so many are filled
};

}
