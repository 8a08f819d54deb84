#include "audio/AudioOutput.h"
#include "audio/devices.h"
#include "base/Error.h"
#include "ctl/Choices.h"
#include "ctl/Interruption.h"
#include "ctl/console.h"
#include "ctl/findOutput.h"
#include "ctl/loudness.h"
#include "ctl/verbs.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>
#include <string>

namespace tallyvox {
namespace {

struct Wish {
    std::string output;
    Choices choices;
};

int play(const Wish& wish) {
    const auto outputs = devices();
    if (outputs.empty())
        throw Error("Output choice", 1, "There is no output.");
    const OutputDevice output =
        wish.output.empty() ? outputs.front() : findOutput(outputs, wish.output);
    const Range range = rangeOn(wish.choices, output.channels);
    std::vector<bool> enabled(
        static_cast<std::size_t>(std::min<std::int64_t>(output.channels, 128)));
    for (std::int64_t channel = range.first; channel <= range.last; ++channel)
        enabled[static_cast<std::size_t>(channel - 1)] =
            channel == wish.choices.solo.value_or(channel);
    const bool one = wish.choices.sequential || wish.choices.solo;
    print(loudness(one ? 1 : range.last - range.first + 1, wish.choices.db));

    int count = 0;
    QCoreApplication application(count, nullptr);
    const Interruption interruption;
    QSocketNotifier notifier(interruption.descriptor(), QSocketNotifier::Read);
    AudioOutput audio;
    int code = ExitCode::done;
    const auto finish = [&](int answer) {
        audio.stop();
        code = answer;
        QCoreApplication::quit();
    };
    QObject::connect(&notifier, &QSocketNotifier::activated,
                     [&] { finish(ExitCode::interrupted); });
    audio.start(output, enabled, wish.choices.db, wish.choices.gap, wish.choices.sequential);
    print("Playing to " + output.name);
    std::optional<double> seconds = wish.choices.seconds;
    const auto& renderer = *audio.renderer();
    if (wish.choices.rounds)
        seconds =
            static_cast<double>(*wish.choices.rounds * renderer.cycle() *
                                (wish.choices.sequential ? range.last - range.first + 1 : 1)) /
            output.rate;
    if (seconds)
        QTimer::singleShot(std::chrono::milliseconds(static_cast<std::int64_t>(*seconds * 1000)),
                           Qt::PreciseTimer, [&] { finish(ExitCode::done); });
    QCoreApplication::exec();
    print("Stopped.");
    return code;
}

}

void addPlay(CLI::App& program, Action& action) {
    auto* verb = program.add_subcommand("play", "Let every channel of an output speak its number");
    const auto wish = std::make_shared<Wish>();
    verb->add_option("--output", wish->output,
                     "The output, by id or name or part of the name; otherwise the first")
        ->type_name("ID|NAME");
    addChoices(*verb, wish->choices, "when interrupted");
    verb->callback([&action, wish] { action = [wish] { return play(*wish); }; });
}

}
