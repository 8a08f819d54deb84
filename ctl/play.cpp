#include "audio/xruns.h"
#include "base/Interruption.h"
#include "base/checked.h"
#include "ctl/Choices.h"
#include "ctl/Rounds.h"
#include "ctl/chooseOutput.h"
#include "ctl/console.h"
#include "ctl/liveState.h"
#include "ctl/loudness.h"
#include "ctl/verbs.h"
#include "model/Model.h"
#include "model/OutputWatch.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <string>

namespace tallyvox {
namespace {

struct Wish {
    std::string output;
    Choices choices;
};

/// One announcement from its start to its end, on the application's event loop.
class Session {
public:
    explicit Session(const Wish& wish);

    /// Plays and answers the exit code.
    int run();

private:
    void choose();
    void started();
    double seconds() const;
    /// Seconds that are left to play, or nothing where only an interruption ends it.
    std::optional<double> left();
    void tick();
    void watch();
    void stop(int code);
    void fail();

    const Wish& wish_;
    Model model_;
    Interruption interruption_;
    QSocketNotifier interrupted_;
    QTimer tick_;
    QTimer watch_;
    QElapsedTimer elapsed_;
    std::optional<Rounds> rounds_;
    double rate_ = 0.0;
    std::optional<std::int64_t> length_; ///< frames, where rounds were chosen
    LiveLine line_;
    int code_ = ExitCode::done;
};

Session::Session(const Wish& wish)
    : wish_(wish), interrupted_(interruption_.descriptor(), QSocketNotifier::Read) {
    tick_.setSingleShot(true);
    tick_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&interrupted_, &QSocketNotifier::activated,
                     [this] { stop(ExitCode::interrupted); });
    QObject::connect(&tick_, &QTimer::timeout, [this] { tick(); });
    QObject::connect(&watch_, &QTimer::timeout, [this] { watch(); });
    QObject::connect(&model_, &Model::busyChanged, [this] {
        if (!model_.busy())
            started();
    });
}

void Session::choose() {
    const Choices& choices = wish_.choices;
    if (!wish_.output.empty())
        model_.setSelected(chooseOutput(model_.outputs(), wish_.output).id);
    const auto output = model_.selectedDevice();
    if (!output)
        return;
    const Range range = rangeOn(choices, output->channels);
    model_.setFirst(range.first);
    model_.setLast(range.last);
    model_.setSolo(choices.solo.value_or(0));
    model_.setDb(choices.db);
    model_.setGap(choices.gap);
    model_.setSequential(choices.sequential);
    const bool together = !choices.sequential && !choices.solo;
    print(loudness(together ? range.last - range.first + 1 : 1, choices.db));
}

int Session::run() {
    choose();
    model_.start();
    if (!model_.busy()) {
        diagnose(model_.status().toStdString());
        return ExitCode::failed;
    }
    print(model_.status().toStdString());
    QCoreApplication::exec();
    return code_;
}

void Session::started() {
    if (!model_.running())
        return fail();
    elapsed_.start();
    print(model_.status().toStdString());
    rounds_.emplace(*model_.audio().renderer());
    rate_ = model_.selectedDevice()->rate;
    if (wish_.choices.rounds)
        length_ = checkedMultiply(*wish_.choices.rounds, rounds_->frames());
    watch_.start(std::chrono::seconds(1));
    tick();
}

double Session::seconds() const { return static_cast<double>(elapsed_.nsecsElapsed()) / 1e9; }

std::optional<double> Session::left() {
    // What a late output has not played yet is still to be heard, whatever the clock says.
    if (length_)
        return static_cast<double>(*length_ - model_.audio().played()) / rate_;
    if (wish_.choices.seconds)
        return *wish_.choices.seconds - seconds();
    return {};
}

void Session::tick() {
    const double remaining = left().value_or(HUGE_VAL);
    if (remaining <= 0)
        return stop(ExitCode::done);
    const double pause = std::clamp(remaining, 0.005, 0.1);
    line_.show(liveState(seconds(), model_.audio().played(), *rounds_, xruns(model_.selected())));
    tick_.start(std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(pause * 1000))));
}

void Session::watch() {
    watchOutput(model_);
    if (!model_.running())
        fail();
}

void Session::stop(int code) {
    model_.stop();
    line_.clear();
    print(model_.status().toStdString());
    code_ = code;
    QCoreApplication::quit();
}

void Session::fail() {
    line_.clear();
    diagnose(model_.status().toStdString());
    code_ = ExitCode::failed;
    QCoreApplication::quit();
}

int play(const Wish& wish) {
    std::string name = "tallyvoxctl";
    char* arguments[] = {name.data(), nullptr};
    int count = 1;
    const QCoreApplication application(count, arguments);
    return Session(wish).run();
}

}

void addPlay(CLI::App& program, Action& action) {
    auto* verb = program.add_subcommand("play", "Let every channel of an output speak its number.");
    const auto wish = std::make_shared<Wish>();
    verb->add_option("--output", wish->output,
                     "The output, by its id, its name or a part of its name; otherwise the first "
                     "with \"Dante\" in its name, else the first of all.")
        ->type_name("ID|NAME")
        ->check([](const std::string& name) { return name.empty() ? "the name is empty" : ""; });
    addChoices(*verb, wish->choices, "when interrupted.");
    verb->footer(R"(Without --first, --last, --solo or --all the first 8 channels speak. The first
line tells how loud the channels can become where they are summed. On a terminal
a line shows the time, the round, in turn the channel that speaks, and how often
the output could not be served in time (xruns).

Once a second the output is looked up again: where it is gone, or has another
number of channels or another rate, the announcement ends with exit status 1.
Ctrl-C silences the output at once.

Examples:
  tallyvoxctl play --all --sequential --rounds 1
  tallyvoxctl play --output 73 --solo 12 --db -40
  tallyvoxctl play --first 17 --last 32 --gap 1.5 --seconds 60)");
    verb->callback([&action, wish] { action = [wish] { return play(*wish); }; });
}

}
