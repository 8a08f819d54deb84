#include "tests/support/VoicesFolder.h"

#include "engine/Environment.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tallyvox {
namespace {

std::optional<std::filesystem::path> current;

void writeNumber(std::ofstream& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.put(static_cast<char>(value >> (8 * i) & 0xFFU));
}

/// One channel of 32-bit floats.
void writeWav(const std::filesystem::path& path, const std::vector<float>& samples,
              std::uint32_t rate) {
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

std::optional<std::filesystem::path> resourceFolder() { return current; }

std::vector<std::string> arguments() { return {"/nowhere/tallyvox"}; }

VoicesFolder::VoicesFolder(std::uint32_t rate) {
    std::string name = (std::filesystem::temp_directory_path() / "tallyvox-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), name);
    folder_ = name;
    std::filesystem::create_directory(folder_ / "Voices");
    for (std::int64_t number = 1; number <= 128; ++number)
        writeWav(file(number), recording(number), rate);
    current = folder_;
}

VoicesFolder::~VoicesFolder() {
    current.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

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

void VoicesFolder::clear(std::int64_t number) const { writeWav(file(number), {}, 48000); }

std::filesystem::path VoicesFolder::file(std::int64_t number) const {
    return folder_ / "Voices" / (std::to_string(number) + ".wav");
}

}
