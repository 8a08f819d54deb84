#include "platform/common/OutputFile.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

namespace tallyvox {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes someBytes(std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 31 + i / 256);
    return bytes;
}

Bytes contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Appends `bytes` in pieces that no block is a multiple of.
void appendInPieces(OutputFile& file, std::span<const std::uint8_t> bytes) {
    constexpr std::size_t piece = 777;
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(piece, bytes.size())))
        ASSERT_EQ(file.append(bytes.first(std::min(piece, bytes.size()))), 0);
}

/// Pages of the file at `path` that the file cache holds.
std::ptrdiff_t cachedPages(const std::filesystem::path& path) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const auto size = static_cast<std::size_t>(std::filesystem::file_size(path));
    std::vector<unsigned char> resident((size + page - 1) / page);
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    void* const memory = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
    EXPECT_NE(memory, MAP_FAILED);
    EXPECT_EQ(mincore(memory, size, resident.data()), 0);
    munmap(memory, size);
    close(descriptor);
    return std::ranges::count_if(resident, [](unsigned char flags) { return (flags & 1U) != 0; });
}

class OutputFileTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "file";
};

/// Through the file cache, and past it.
constexpr std::array<std::size_t, 2> ways{0, 4096};

/// Writes files of all lengths around a block to `path`, and expects them there.
void expectEveryLength(const std::filesystem::path& path) {
    // The last one is no block of any disk: writes past the cache are refused.
    constexpr std::array<std::size_t, 4> blocks{0, 4096, 8192, 1000};
    constexpr std::array<std::size_t, 12> lengths{0,    1,    999,  1000, 4095,  4096,
                                                  4097, 8191, 8192, 8193, 12288, 40961};
    for (const std::size_t block : blocks)
        for (const std::size_t length : lengths) {
            const Bytes bytes = someBytes(length);
            OutputFile file;
            ASSERT_EQ(file.open(path, block), 0);
            appendInPieces(file, bytes);
            EXPECT_EQ(file.flush(), 0);
            EXPECT_EQ(file.written(), static_cast<std::int64_t>(length));
            EXPECT_EQ(file.close(), 0);
            EXPECT_EQ(contentOf(path), bytes) << block << ' ' << length;
        }
}

TEST_F(OutputFileTest, EveryLengthArrivesByteForByte) { expectEveryLength(path); }

TEST_F(OutputFileTest, InMemoryEveryLengthArrivesToo) {
    if (access("/dev/shm", W_OK) != 0)
        GTEST_SKIP() << "no file system in memory";
    const std::filesystem::path inMemory =
        "/dev/shm/tallyvox-" + std::to_string(getpid()) + ".test";
    expectEveryLength(inMemory);
    std::filesystem::remove(inMemory);
}

TEST_F(OutputFileTest, BlocksStayOutOfTheFileCache) {
    constexpr std::size_t block = 65536;
    OutputFile whole;
    ASSERT_EQ(whole.open(path, 0), 0);
    ASSERT_EQ(whole.append(someBytes(4 * block)), 0);
    EXPECT_EQ(cachedPages(path), std::ptrdiff_t{4 * block} / sysconf(_SC_PAGESIZE));

    OutputFile file;
    ASSERT_EQ(file.open(path, block), 0);
    ASSERT_EQ(file.append(someBytes(4 * block + 1)), 0);
    EXPECT_EQ(std::filesystem::file_size(path), 4 * block);
    if (cachedPages(path) != 0)
        GTEST_SKIP() << "this file system keeps in its cache whatever is written";
    ASSERT_EQ(file.flush(), 0);
    EXPECT_EQ(std::filesystem::file_size(path), 4 * block + 1);
    EXPECT_LE(cachedPages(path), 1);
}

TEST_F(OutputFileTest, WithoutBlocksEverythingIsThereAtOnce) {
    OutputFile file;
    ASSERT_EQ(file.open(path, 0), 0);
    ASSERT_EQ(file.append(someBytes(5)), 0);
    EXPECT_EQ(contentOf(path), someBytes(5));
}

TEST_F(OutputFileTest, TheFrontIsWrittenOverWhereverTheRestWent) {
    for (const std::size_t block : ways) {
        Bytes bytes = someBytes(9000);
        OutputFile file;
        ASSERT_EQ(file.open(path, block), 0);
        ASSERT_EQ(file.append(bytes), 0);
        ASSERT_EQ(file.flush(), 0);
        const Bytes front(100, 0xAA);
        EXPECT_EQ(file.overwrite(3, front), 0);
        EXPECT_EQ(file.close(), 0);
        std::ranges::copy(front, bytes.begin() + 3);
        EXPECT_EQ(contentOf(path), bytes) << block;
    }
}

TEST_F(OutputFileTest, NothingOfALongerFileIsLeft) {
    for (const std::size_t block : ways) {
        std::ofstream(path) << std::string(100000, 'x');
        OutputFile file;
        ASSERT_EQ(file.open(path, block), 0);
        ASSERT_EQ(file.append(someBytes(5000)), 0);
        ASSERT_EQ(file.flush(), 0);
        EXPECT_EQ(contentOf(path), someBytes(5000)) << block;
    }
}

TEST_F(OutputFileTest, AWriteThatASignalInterruptsGoesOn) {
    struct sigaction interrupting {};
    interrupting.sa_handler = [](int) {};
    struct sigaction before {};
    ASSERT_EQ(sigaction(SIGUSR1, &interrupting, &before), 0);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const Bytes bytes = someBytes(1 << 20);
    Bytes arrived;
    std::thread reader([this, &arrived, writer = pthread_self()] {
        const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        Bytes piece(10000);
        for (ssize_t count = 1; count > 0; pthread_kill(writer, SIGUSR1)) {
            count = read(descriptor, piece.data(), piece.size());
            arrived.insert(arrived.end(), piece.begin(),
                           piece.begin() + std::max<ssize_t>(count, 0));
        }
        close(descriptor);
    });
    {
        OutputFile file;
        // A pipe knows no cache, whatever is asked for.
        EXPECT_EQ(file.open(path, 4096), 0);
        EXPECT_EQ(file.append(bytes), 0);
    }
    reader.join();
    EXPECT_EQ(arrived, bytes);
    sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(OutputFileTest, AFailureIsNamedAndNothingIsCounted) {
    OutputFile missing;
    EXPECT_EQ(missing.open(path / "file", 4096), ENOENT);
    EXPECT_FALSE(missing.isOpen());
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "no device that is always full";
    OutputFile full;
    ASSERT_EQ(full.open("/dev/full", 4096), 0);
    EXPECT_EQ(full.append(someBytes(1)), ENOSPC);
    EXPECT_EQ(full.written(), 0);
}

}
}
