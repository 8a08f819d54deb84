#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace tallyvox {

/// While it lives, the program's resource folder: a temporary one whose recordings are short and
/// simple, so that a test knows every sample. Linked in place of the platform's own environment.
class VoicesFolder {
public:
    /// Recordings 1 to 128 at `rate` Hz.
    explicit VoicesFolder(std::uint32_t rate = 48000);
    VoicesFolder(const VoicesFolder&) = delete;
    VoicesFolder& operator=(const VoicesFolder&) = delete;
    ~VoicesFolder();

    /// What recording `number` holds: 8 + `number` frames with a peak of 0.5.
    static std::vector<float> recording(std::int64_t number);
    /// The voice that it makes at its own rate: twice as loud.
    static std::vector<float> voice(std::int64_t number);

    std::filesystem::path file(std::int64_t number) const;
    /// Leaves recording `number` without a frame.
    void clear(std::int64_t number) const;
    /// Takes recording `number` away.
    void remove(std::int64_t number) const { std::filesystem::remove(file(number)); }

private:
    std::filesystem::path folder_;
};

}
