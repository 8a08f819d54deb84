// Command lines of any words: a choice that an output can follow, or one error.

#include "base/Error.h"
#include "base/fatal.h"
#include "ctl/Choices.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Error.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

namespace tallyvox {
namespace {

/// One word a line, as nothing but a NUL can be in none.
std::vector<std::string> wordsOf(const std::uint8_t* bytes, std::size_t size) {
    std::istringstream lines(std::string(reinterpret_cast<const char*>(bytes), size));
    std::vector<std::string> words;
    for (std::string word; std::getline(lines, word);)
        words.push_back(word.substr(0, word.find('\0')));
    return words;
}

/// Whether `program` understands the words; what it answers to the others can be printed.
bool parses(CLI::App& program, std::vector<std::string> words) {
    std::reverse(words.begin(), words.end());
    try {
        program.parse(words);
        return true;
    } catch (const CLI::ParseError& error) {
        std::ostringstream answer;
        const int code = program.exit(error, answer, answer);
        require(code != 0 || !answer.str().empty());
        return false;
    }
}

void parseChoices(const std::vector<std::string>& words) {
    CLI::App program("", "choices");
    Choices choices;
    addChoices(program, choices, "never");
    if (!parses(program, words))
        return;
    require(choices.db >= -60 && choices.db <= -6 && choices.gap >= 0.2 && choices.gap <= 3);
    require(!choices.seconds || (std::isfinite(*choices.seconds) && *choices.seconds > 0));
    require(!choices.rounds || *choices.rounds >= 1);
    for (const std::int64_t channels : {1, 2, 8, 127, 128, 1024}) {
        try {
            const Range range = rangeOn(choices, channels);
            require(1 <= range.first && range.first <= range.last && range.last <= 128 &&
                    range.last <= channels);
            require(!choices.solo || (range.first <= *choices.solo && *choices.solo <= range.last));
        } catch (const Error& error) {
            require(error.domain() == "Range" && *error.what() != '\0');
        }
    }
}

}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    tallyvox::parseChoices(tallyvox::wordsOf(bytes, size));
    return 0;
}
