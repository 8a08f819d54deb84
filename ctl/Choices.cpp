#include "ctl/Choices.h"

#include "base/Error.h"
#include "ctl/Between.h"
#include "model/range.h"

#include <CLI/Error.hpp>
#include <CLI/Option.hpp>

#include <algorithm>
#include <string>

namespace tallyvox {
namespace {

/// The range without any choice reaches as far as in the window.
constexpr std::int64_t fewChannels = 8;

void refuseContradictions(const Choices& choices) {
    const std::int64_t first = choices.first.value_or(1);
    if (choices.last && *choices.last < first)
        throw CLI::ValidationError("--last", "channel " + std::to_string(*choices.last) +
                                                 " lies before the first channel, " +
                                                 std::to_string(first));
    if (choices.solo &&
        (*choices.solo < first || *choices.solo > choices.last.value_or(kLargestChannel)))
        throw CLI::ValidationError("--solo", "channel " + std::to_string(*choices.solo) +
                                                 " lies outside the range");
}

void refuseBeyond(std::int64_t channel, std::int64_t channels) {
    if (channel > channels)
        throw Error("Range", 1,
                    "Channel " + std::to_string(channel) + " is not there: the output has " +
                        std::to_string(channels) + " channels.");
}

}

void addChoices(CLI::App& verb, Choices& choices, const std::string& lengthDefault) {
    auto* first = verb.add_option("--first", choices.first, "First channel to speak; otherwise 1.")
                      ->type_name("N")
                      ->transform(Between(1, kLargestChannel));
    auto* last =
        verb.add_option("--last", choices.last,
                        "Last channel to speak; otherwise 8, or with --first or --solo the "
                        "last of the output.")
            ->type_name("N")
            ->transform(Between(1, kLargestChannel));
    verb.add_flag("--all", choices.all,
                  "All channels of the output, up to 128; not with --first or --last.")
        ->excludes(first)
        ->excludes(last);
    auto* solo = verb.add_option("--solo", choices.solo,
                                 "Only channel N speaks, the others of the range stay silent.")
                     ->type_name("N")
                     ->transform(Between(1, kLargestChannel));
    verb.add_flag("--sequential", choices.sequential,
                  "One channel after another in turn, instead of all together; not with --solo.")
        ->excludes(solo);
    verb.add_option("--db", choices.db,
                    "Peak level of each channel in dBFS, from -60 to -6; otherwise -24.")
        ->type_name("X")
        ->transform(Between(-60, -6));
    verb.add_option("--gap", choices.gap,
                    "Silence between repetitions in seconds, from 0.2 to 3.0; otherwise 0.7.")
        ->type_name("X")
        ->transform(Between(0.2, 3.0));
    auto* seconds = verb.add_option("--seconds", choices.seconds,
                                    "End after S seconds; otherwise " + lengthDefault)
                        ->type_name("S")
                        ->transform(Between(0.001, 1e6));
    verb.add_option("--rounds", choices.rounds,
                    "End after N rounds; in a round every chosen channel speaks once. Not with "
                    "--seconds.")
        ->type_name("N")
        ->transform(Between(1, 1e6))
        ->excludes(seconds);
    verb.parse_complete_callback([&choices] { refuseContradictions(choices); });
}

Range rangeOn(const Choices& choices, std::int64_t channels) {
    const std::int64_t ceiling = rangeCeiling(channels);
    const bool few = !choices.all && !choices.first && !choices.solo;
    const Range range{choices.first.value_or(1),
                      choices.last.value_or(few ? std::min(fewChannels, ceiling) : ceiling)};
    refuseBeyond(std::max(range.first, range.last), ceiling);
    refuseBeyond(choices.solo.value_or(1), ceiling);
    return range;
}

}
