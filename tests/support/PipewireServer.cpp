#include "tests/support/PipewireServer.h"

#include "tests/support/eventually.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace tallyvox {
namespace {

constexpr const char* kServerBegins = R"(
context.properties = {
    support.dbus = false
    core.daemon = true
    core.name = pipewire-0
    link.max-buffers = 16
    mem.allow-mlock = false
    default.clock.rate = 48000
)";

constexpr const char* kServerGoesOn = R"(}
context.spa-libs = {
    audio.convert.* = audioconvert/libspa-audioconvert
    support.* = support/libspa-support
}
context.modules = [
    { name = libpipewire-module-rt flags = [ ifexists nofail ] }
    { name = libpipewire-module-protocol-native }
    { name = libpipewire-module-metadata }
    { name = libpipewire-module-spa-node-factory }
    { name = libpipewire-module-client-node }
    { name = libpipewire-module-access }
    { name = libpipewire-module-adapter }
    { name = libpipewire-module-link-factory }
]
context.objects = [
    { factory = spa-node-factory args = {
        factory.name = support.node.driver node.name = Dummy-Driver
        node.group = pipewire.dummy priority.driver = 20000 } }
)";

std::string arguments(const PipewireServer::Sink& sink) {
    std::string positions;
    for (int channel = 0; channel < sink.channels; ++channel)
        positions += " AUX" + std::to_string(channel);
    return "{ factory.name = support.null-audio-sink node.name = \"" + sink.name +
           "\" node.description = \"" + sink.name +
           "\" media.class = Audio/Sink object.linger = true node.driver = true"
           " audio.channels = " +
           std::to_string(sink.channels) + " audio.rate = " + std::to_string(sink.rate) +
           " audio.position = [" + positions +
           " ] monitor.passthrough = true monitor.channel-volumes = false"
           " resample.disable = true channelmix.disable = true"
           " adapter.auto-port-config = { mode = dsp monitor = true position = preserve } }";
}

std::unique_ptr<Process> ready(std::vector<std::string> line) {
    line.insert(line.begin(), TALLYVOX_PIPEWIRE_DEVICE);
    auto process = std::make_unique<Process>(Command{.line = std::move(line)});
    if (!process->shows("ready"))
        throw std::runtime_error("the device does not start: " + process->err());
    return process;
}

Outcome ask(std::vector<std::string> line) {
    line.insert(line.begin(), "pw-cli");
    auto outcome = run({.line = line});
    if (outcome.exitCode != 0)
        throw std::runtime_error("pw-cli fails: " + outcome.out + outcome.err);
    return outcome;
}

}

bool PipewireServer::available() {
    return run({.line = {"sh", "-c", "command -v pipewire pw-cli pw-metadata"}}).exitCode == 0;
}

PipewireServer::PipewireServer(std::vector<Sink> sinks, int quantum) : sinks_(std::move(sinks)) {
    setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
    setenv("PIPEWIRE_RUNTIME_DIR", folder_.path().c_str(), 1);
    unsetenv("PIPEWIRE_REMOTE");
    std::ofstream file(folder_.path() / "server.conf");
    file << kServerBegins << "    default.clock.quantum = " << quantum
         << "\n    default.clock.min-quantum = " << quantum
         << "\n    default.clock.max-quantum = " << 2 * quantum << '\n'
         << kServerGoesOn;
    for (const Sink& sink : sinks_)
        file << "    { factory = adapter args = " << arguments(sink) << " }\n";
    file << "]\n";
    file.close();
    start();
}

PipewireServer::~PipewireServer() {
    if (process_)
        kill();
}

void PipewireServer::kill() {
    process_->send(SIGKILL);
    process_->end();
    process_.reset();
}

void PipewireServer::start() {
    process_ = std::make_unique<Process>(
        Command{.line = {"pipewire", "-c", (folder_.path() / "server.conf").string()}});
    const auto answers = [] { return run({.line = {"pw-cli", "info", "0"}}).exitCode == 0; };
    if (!eventually(answers))
        throw std::runtime_error("the server does not start: " + process_->out() + process_->err());
}

void PipewireServer::add(const Sink& sink) { ask({"create-node", "adapter", arguments(sink)}); }

void PipewireServer::remove(const std::string& name) { ask({"destroy", name}); }

void PipewireServer::forceRate(int rate) {
    const auto outcome = run(
        {.line = {"pw-metadata", "-n", "settings", "0", "clock.force-rate", std::to_string(rate)}});
    if (outcome.exitCode != 0)
        throw std::runtime_error("pw-metadata fails: " + outcome.err);
}

PipewireOutput::PipewireOutput(std::vector<std::string> arguments)
    : process_(ready(std::move(arguments))) {}

PipewireOutput::PipewireOutput(const std::string& name, int channels, int rate)
    : PipewireOutput({name, std::to_string(channels), std::to_string(rate)}) {}

PipewireOutput::PipewireOutput(const std::string& name, int channels, int rate,
                               const std::filesystem::path& file, std::int64_t frames)
    : PipewireOutput({name, std::to_string(channels), std::to_string(rate), file.string(),
                      std::to_string(frames)}) {}

PipewireOutput PipewireOutput::monitor(const std::string& name, int channels,
                                       const std::filesystem::path& file, std::int64_t frames) {
    return PipewireOutput(
        {"--monitor", name, std::to_string(channels), file.string(), std::to_string(frames)});
}

std::optional<std::int64_t> PipewireOutput::otherRateFrom() {
    const std::string told = "another rate from ";
    const auto out = process_->out();
    const auto at = out.find(told);
    return at != std::string::npos ? std::optional(std::stoll(out.substr(at + told.size())))
                                   : std::nullopt;
}

PipewireOutput::~PipewireOutput() {
    if (process_)
        remove();
}

void PipewireOutput::remove() {
    process_->send(SIGTERM);
    process_->end();
    process_.reset();
}

}
