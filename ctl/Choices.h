#pragma once

#include <CLI/App.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace tallyvox {

/// What the operator chose of the announcement itself, as the command line says it.
struct Choices {
    std::optional<std::int64_t> first;
    std::optional<std::int64_t> last;
    std::optional<std::int64_t> solo;
    bool all = false;
    bool sequential = false;
    double db = -24.0; ///< dBFS
    double gap = 0.7;  ///< seconds
    std::optional<double> seconds;
    std::optional<std::int64_t> rounds;
};

/// Channels from `first` to `last`, both included, counted from 1.
struct Range {
    std::int64_t first;
    std::int64_t last;
};

/// Lets `verb` read `choices` from the command line; what contradicts itself there is a usage
/// error. `lengthDefault` tells the reader when it ends otherwise, and with a full stop.
void addChoices(CLI::App& verb, Choices& choices, const std::string& lengthDefault);

/// The range that `choices` mean on an output of `channels` channels. Without any choice these are
/// the first 8; `--first` or `--solo` alone reach to the last channel. Throws an `Error` of domain
/// "Range" where the output lacks a chosen channel.
Range rangeOn(const Choices& choices, std::int64_t channels);

}
