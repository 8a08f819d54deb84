#include "base/Error.h"
#include "base/standardStreams.h"
#include "ctl/ManualFormatter.h"
#include "ctl/console.h"
#include "ctl/verbs.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Error.hpp>

#include <cerrno>
#include <csignal>
#include <exception>
#include <iostream>
#include <memory>

namespace {

constexpr auto description =
    "Every channel of an audio output speaks its own number: channel 1 says one, channel 2 says "
    "two, up to channel 128. The companion of tallyvox for racks and terminals.";

constexpr auto footer = R"(Examples:
  tallyvoxctl list
  tallyvoxctl play --all --sequential --rounds 1
  tallyvoxctl play --output Dante --first 17 --last 32 --db -30
  tallyvoxctl export check.wav --channels 64 --rate 48000 --all

Results go to standard output, diagnostics to standard error.

Exit status:
  0    done
  1    failed; standard error says why
  2    the command line cannot be understood
  130  interrupted by Ctrl-C, a termination or a hang-up

Environment:
  TALLYVOX_AUDIO    narrows the outputs to one layer (pipewire, jack or alsa), or
                    replaces them by virtual ones: virtual:8@44100,64@48000
  TALLYVOX_RECORD   the WAV file that a virtual output writes while it plays

'tallyvoxctl VERB --help' explains a verb.)";

using namespace tallyvox;

int refuse(const char* reason) {
    complain(reason);
    diagnose("'tallyvoxctl --help' and 'tallyvoxctl VERB --help' tell more.");
    return ExitCode::usage;
}

int carryOut(const Action& action) {
    try {
        const int code = action();
        checkOutput();
        return code;
    } catch (const Error& error) {
        // Whoever closed the pipe has seen enough.
        if (error.domain() != "Output" || error.code() != EPIPE)
            complain(error.what());
        return ExitCode::failed;
    }
}

int run(int argc, char** argv) {
    CLI::App program(description, "tallyvoxctl");
    program.formatter(std::make_shared<ManualFormatter>());
    program.set_help_flag("-h,--help", "Explain the program or the verb, and end.");
    program.set_version_flag("--version", "tallyvoxctl " TALLYVOX_VERSION,
                             "Tell the version, and end.");
    program.require_subcommand(0, 1);
    Action action;
    addList(program, action);
    addPlay(program, action);
    addExport(program, action);
    addDoctor(program, action);
    for (CLI::App* verb : program.get_subcommands({}))
        verb->group("Verbs");
    // Set last: verbs inherit what is there when they are added.
    program.footer(footer);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0)
            return refuse(error.what());
        program.exit(error);
        return std::cout.flush() ? ExitCode::done : ExitCode::failed;
    }
    return action ? carryOut(action) : refuse("a verb is missing: list, play, export or doctor.");
}

}

int main(int argc, char** argv) {
    occupyStandardStreams();
    // A reader that has gone and a limit of file size are errors like others, not ends in
    // mid-sound.
    for (const int signal : {SIGPIPE, SIGXFSZ})
        static_cast<void>(std::signal(signal, SIG_IGN));
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "tallyvoxctl: " << error.what() << '\n';
        return ExitCode::failed;
    }
}
