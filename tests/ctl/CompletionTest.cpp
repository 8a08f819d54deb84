#include "tests/ctl/Companion.h"
#include "tests/support/waveFiles.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace tallyvox {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Every long option that the help of a verb names at the start of a line.
std::set<std::string> optionsOf(const std::string& help) {
    std::set<std::string> options;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        if (word == "-h,")
            words >> word;
        if (line.starts_with("  -") && word.starts_with("--"))
            options.insert(word);
    }
    return options;
}

TEST(Completion, AndTheManualKnowEveryOption) {
    const Companion companion;
    std::set<std::string> options;
    for (const char* verb : {"list", "play", "export", "doctor"})
        options.merge(optionsOf(companion.run({verb, "--help"}).out));
    EXPECT_GE(options.size(), 16U);
    const std::filesystem::path folder = TALLYVOX_COMPLETIONS;
    const std::string bash = textOf(folder / "tallyvoxctl.bash");
    const std::string zsh = textOf(folder / "_tallyvoxctl");
    const std::string fish = textOf(folder / "tallyvoxctl.fish");
    const std::string manual = textOf(folder / "../man/tallyvoxctl.1.in");
    for (const std::string& option : options) {
        EXPECT_THAT(bash, HasSubstr(option));
        EXPECT_THAT(zsh, HasSubstr(option + "["));
        EXPECT_THAT(fish, HasSubstr(" -l " + option.substr(2) + " "));
        EXPECT_THAT(manual, HasSubstr("\\-\\-" + option.substr(2)));
    }
}

/// What bash offers for `words`, of which the last is being typed.
std::string offered(const Companion& companion, const std::string& words) {
    Command command = companion.command({});
    const std::string path = command.line.front().substr(0, command.line.front().rfind('/'));
    const std::string script =
        "PATH='" + path + "':$PATH; . '" TALLYVOX_COMPLETIONS "/tallyvoxctl.bash'; COMP_WORDS=(" +
        words +
        "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
        "_tallyvoxctl tallyvoxctl \"${COMP_WORDS[COMP_CWORD]}\" "
        "\"${COMP_WORDS[COMP_CWORD - 1]}\"; printf '%s\\n' \"${COMPREPLY[@]}\"";
    command.line = {"bash", "-c", script};
    return run(command).out;
}

TEST(Completion, InBashOffersWhatFits) {
    const Companion companion;
    EXPECT_EQ(offered(companion, "tallyvoxctl pl"), "play\n");
    EXPECT_EQ(offered(companion, "tallyvoxctl play --se"), "--sequential\n--seconds\n");
    EXPECT_EQ(offered(companion, "tallyvoxctl play --output ''"), "2\n3\n");
    EXPECT_EQ(offered(companion, "tallyvoxctl export x --format p"), "pcm24\npcm16\n");
    EXPECT_THAT(offered(companion, "tallyvoxctl export --"),
                AllOf(HasSubstr("--split"), Not(HasSubstr("--output"))));
    EXPECT_EQ(offered(companion, "tallyvoxctl doctor --j"), "--json\n");
}

TEST(Completion, EachShellReadsItsFile) {
    for (const auto& [shell, file] :
         {std::pair{"bash", "tallyvoxctl.bash"}, std::pair{"zsh", "_tallyvoxctl"},
          std::pair{"fish", "tallyvoxctl.fish"}}) {
        if (run({.line = {"sh", "-c", std::string("command -v ") + shell}}).exitCode != 0)
            continue;
        const Outcome outcome =
            run({.line = {shell, "-n", std::string(TALLYVOX_COMPLETIONS "/") + file}});
        EXPECT_EQ(outcome.exitCode, 0) << shell << ": " << outcome.err;
    }
}

}
}
