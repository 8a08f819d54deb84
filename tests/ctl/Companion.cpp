#include "tests/ctl/Companion.h"

#include "tests/support/waveFiles.h"

namespace tallyvox {
namespace {

namespace fs = std::filesystem;

void install(const fs::path& program, const fs::path& folder) {
    fs::create_directories(folder);
    std::error_code otherFileSystem;
    fs::create_hard_link(program, folder / program.filename(), otherFileSystem);
    if (otherFileSystem)
        fs::copy_file(program, folder / program.filename());
}

}

Companion::Companion() {
    install(TALLYVOX_COMPANION, installation_.path() / "bin");
    fs::create_directories(voice(1).parent_path());
    for (std::int64_t number = 1; number <= 128; ++number)
        writeWave(voice(number), recording(number), 22050, 1, WaveForm::pcm16);
}

std::vector<float> Companion::recording(std::int64_t number) {
    std::vector<float> samples;
    for (std::int64_t i = 0; i < 200 + 5 * number; ++i) {
        const std::int64_t step = (i * (number + 2)) % 201 - 100;
        samples.push_back(static_cast<float>(step * 90) / 32768.0F);
    }
    return samples;
}

fs::path Companion::voice(std::int64_t number) const {
    return installation_.path() / "share/tallyvox/Voices" / (std::to_string(number) + ".wav");
}

Command Companion::command(const std::vector<std::string>& arguments,
                           const std::string& outputs) const {
    Command command;
    command.line = {installation_.path() / "bin/tallyvoxctl"};
    command.line.insert(command.line.end(), arguments.begin(), arguments.end());
    command.set = {{"TALLYVOX_AUDIO", outputs}, {"TALLYVOX_RECORD", record()}, {"TERM", "xterm"}};
    command.unset = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_PLUGIN_PATH"};
    return command;
}

Outcome Companion::run(const std::vector<std::string>& arguments,
                       const std::string& outputs) const {
    return tallyvox::run(command(arguments, outputs));
}

}
