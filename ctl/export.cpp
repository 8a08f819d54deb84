#include "audio/announcement.h"
#include "base/Error.h"
#include "base/Interruption.h"
#include "base/checked.h"
#include "ctl/Between.h"
#include "ctl/Choices.h"
#include "ctl/Pending.h"
#include "ctl/Progress.h"
#include "ctl/Rounds.h"
#include "ctl/WaveSink.h"
#include "ctl/console.h"
#include "ctl/openFiles.h"
#include "ctl/verbs.h"
#include "model/range.h"

#include <CLI/Option.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <string>

namespace tallyvox {
namespace {

/// The block align of a WAV file has 16 bits.
constexpr std::int64_t mostChannels = 16383;

struct Wish {
    std::string target;
    std::int64_t channels = 0;
    std::int64_t rate = 0;
    std::string format = "float";
    bool split = false;
    Choices choices;
};

/// The formats by the names that the command line has for them.
const std::map<std::string, SampleFormat>& formats() {
    static const std::map<std::string, SampleFormat> names{{"float", SampleFormat::float32},
                                                           {"pcm24", SampleFormat::pcm24},
                                                           {"pcm16", SampleFormat::pcm16}};
    return names;
}

std::shared_ptr<Renderer> renderer(const Wish& wish) {
    const Range range = rangeOn(wish.choices, wish.channels);
    const auto enabled = channelMask(range.first, range.last, wish.choices.solo.value_or(0),
                                     wish.choices.sequential, wish.channels);
    return announcement(wish.channels, static_cast<double>(wish.rate), enabled, wish.choices.db,
                        wish.choices.gap, wish.choices.sequential);
}

std::int64_t length(const Wish& wish, const Renderer& renderer) {
    if (wish.choices.seconds)
        return checkedTruncate(static_cast<double>(wish.rate) * *wish.choices.seconds);
    return checkedMultiply(wish.choices.rounds.value_or(1), Rounds(renderer).frames());
}

/// The frames as they were asked for; false where an interruption came first.
bool write(Renderer& renderer, std::int64_t frames, WaveSink& sink,
           const Interruption& interruption) {
    Progress progress(frames);
    for (std::int64_t done = 0; done < frames;) {
        if (interruption.requested())
            return false;
        const std::int64_t count = std::min(frames - done, sink.capacity());
        renderer.render(sink.block(count));
        sink.write();
        done += count;
        progress.reached(done);
    }
    sink.close();
    return true;
}

/// What `error` says, about the file that the operator named.
Error aboutTarget(const Error& error, const Wish& wish, const Pending& pending) {
    std::string message = error.what();
    const std::string temporary = pending.temporary().string();
    if (const auto at = message.find(temporary); at != std::string::npos)
        message.replace(at, temporary.size(), wish.target);
    return {error.domain(), error.code(), message};
}

int exportTo(const Wish& wish) {
    const Interruption interruption;
    const auto voices = renderer(wish);
    const std::int64_t frames = length(wish, *voices);
    if (wish.split)
        allowOpenFiles(wish.channels);
    Pending pending = wish.split ? Pending::folder(wish.target) : Pending::file(wish.target);
    const WaveShape shape{wish.channels, static_cast<double>(wish.rate), formats().at(wish.format)};
    try {
        const auto sink = wish.split ? splitFiles(pending.temporary(), shape)
                                     : wholeFile(pending.temporary(), shape);
        if (!write(*voices, frames, *sink, interruption)) {
            complain("Interrupted: " + wish.target + " was not written.");
            return ExitCode::interrupted;
        }
        pending.commit();
    } catch (const Error& error) {
        throw aboutTarget(error, wish, pending);
    }
    print(wish.target + ": " + std::to_string(wish.channels) + " channels, " +
          std::to_string(wish.rate) + " Hz, " + std::to_string(frames) + " frames");
    return ExitCode::done;
}

}

void addExport(CLI::App& program, Action& action) {
    auto* verb = program.add_subcommand("export", "Write to a file what an output would be given.");
    const auto wish = std::make_shared<Wish>();
    verb->add_option("FILE", wish->target, "The WAV file to write; with --split the folder.")
        ->required();
    verb->add_option("--channels", wish->channels, "Channels of the output, up to 16383.")
        ->type_name("N")
        ->transform(Between(1, mostChannels))
        ->required();
    verb->add_option("--rate", wish->rate, "Sample rate in Hz, from 8000 to 768000.")
        ->type_name("R")
        ->transform(Between(8000, 768000))
        ->required();
    verb->add_option("--format", wish->format,
                     "How samples are stored: float, pcm24 or pcm16; otherwise float.")
        ->check(CLI::IsMember(formats()).description(""))
        ->type_name("F");
    verb->add_flag("--split", wish->split,
                   "One mono file a channel, named by its number, in the folder FILE.");
    addChoices(*verb, wish->choices, "after one round.");
    verb->footer(R"(Sample for sample what 'play' gives to an output of as many channels at that
rate, from its first frame on. Channels above 128 are silent. The integer
formats are rounded to nearest.

The file is a WAVE_FORMAT_EXTENSIBLE without speaker positions, and RF64 beyond
4 GiB. It appears under its name when it is complete, and then replaces an older
one; whatever happens before leaves nothing behind.

Examples:
  tallyvoxctl export check.wav --channels 64 --rate 48000 --all --rounds 3
  tallyvoxctl export turn --split --channels 16 --rate 96000 --all --sequential
  tallyvoxctl export solo.wav --channels 8 --rate 44100 --solo 5 --format pcm24)");
    verb->callback([&action, wish] { action = [wish] { return exportTo(*wish); }; });
}

}
