#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace tallyvox {

/// A temporary resource folder whose recordings are short and simple, so that a test knows every
/// sample. Linked with `environment.cpp` it is the program's own while it lives.
class VoicesFolder {
public:
    /// Recordings 1 to 16 at 48 kHz.
    VoicesFolder();
    VoicesFolder(const VoicesFolder&) = delete;
    VoicesFolder& operator=(const VoicesFolder&) = delete;
    ~VoicesFolder();

    /// The folder that lives, or nothing.
    static std::optional<std::filesystem::path> current();
    /// What recording `number` holds: 8 + `number` frames with a peak of 0.5.
    static std::vector<float> recording(std::int64_t number);
    /// The voice that it makes at its own rate: twice as loud.
    static std::vector<float> voice(std::int64_t number);

    std::filesystem::path file(std::int64_t number) const;
    /// Adds the recordings up to `number`.
    void fillUpTo(std::int64_t number);
    /// Leaves recording `number` without a frame.
    void clear(std::int64_t number) const;
    /// Takes recording `number` away.
    void remove(std::int64_t number) const { std::filesystem::remove(file(number)); }

private:
    TemporaryFolder folder_;
    std::int64_t written_ = 0;
};

}
