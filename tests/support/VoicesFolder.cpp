#include "tests/support/VoicesFolder.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace tallyvox {
namespace {

std::optional<std::filesystem::path> living;

void writeNumber(std::ofstream& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.put(static_cast<char>(value >> (8 * i) & 0xFFU));
}

/// One channel of 32-bit floats at 48 kHz.
void writeWav(const std::filesystem::path& path, const std::vector<float>& samples) {
    constexpr std::uint32_t rate = 48000;
    const auto bytes = static_cast<std::uint32_t>(samples.size() * 4);
    std::ofstream out(path, std::ios::binary);
    out << "RIFF";
    writeNumber(out, 36 + bytes, 4);
    out << "WAVEfmt ";
    writeNumber(out, 16, 4);
    writeNumber(out, 3, 2);
    writeNumber(out, 1, 2);
    writeNumber(out, rate, 4);
    writeNumber(out, rate * 4, 4);
    writeNumber(out, 4, 2);
    writeNumber(out, 32, 2);
    out << "data";
    writeNumber(out, bytes, 4);
    out.write(reinterpret_cast<const char*>(samples.data()), bytes);
    if (!out)
        throw std::runtime_error("cannot write " + path.string());
}

}

VoicesFolder::VoicesFolder() {
    std::filesystem::create_directory(folder_.path() / "Voices");
    fillUpTo(16);
    living = folder_.path();
}

VoicesFolder::~VoicesFolder() { living.reset(); }

std::optional<std::filesystem::path> VoicesFolder::current() { return living; }

std::vector<float> VoicesFolder::recording(std::int64_t number) {
    std::vector<float> samples;
    for (std::int64_t i = 0; i < 8 + number; ++i)
        samples.push_back(static_cast<float>(1 + (i * 7 + number) % 64) / -256.0F);
    samples[2] = -0.5F;
    return samples;
}

std::vector<float> VoicesFolder::voice(std::int64_t number) {
    auto samples = recording(number);
    for (auto& sample : samples)
        sample *= 2;
    return samples;
}

void VoicesFolder::fillUpTo(std::int64_t number) {
    while (written_ < number) {
        ++written_;
        writeWav(file(written_), recording(written_));
    }
}

void VoicesFolder::clear(std::int64_t number) const { writeWav(file(number), {}); }

std::filesystem::path VoicesFolder::file(std::int64_t number) const {
    return folder_.path() / "Voices" / (std::to_string(number) + ".wav");
}

}
