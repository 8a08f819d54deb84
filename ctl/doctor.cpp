#include "audio/announcement.h"
#include "audio/deviceLine.h"
#include "ctl/Findings.h"
#include "ctl/console.h"
#include "ctl/json.h"
#include "ctl/verbs.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <memory>
#include <string>

namespace tallyvox {
namespace {

QString text(const std::string& value) { return QString::fromStdString(value); }

QJsonArray layersOf(const Findings& findings) {
    QJsonArray list;
    for (const LayerReport& layer : findings.system.layers)
        list.append(QJsonObject{{"name", text(layer.name)},
                                {"answers", layer.answers},
                                {"version", text(layer.version)},
                                {"limits", text(layer.limits)},
                                {"advice", text(layer.answers ? "" : layer.advice)}});
    return list;
}

QJsonArray outputsOf(const Findings& findings) {
    QJsonArray list;
    for (const OutputFinding& output : findings.outputs) {
        QJsonObject record = deviceObject(output.device, output.layer);
        record["ready"] = output.refusal.empty();
        record["message"] = text(output.refusal);
        list.append(record);
    }
    return list;
}

QJsonObject recordingsOf(const Findings& findings) {
    QJsonArray complaints;
    for (const std::string& complaint : findings.recordingComplaints)
        complaints.append(text(complaint));
    return {{"folder", text(findings.recordings.string())},
            {"sound", qint64{findings.soundRecordings}},
            {"expected", qint64{kVoices}},
            {"complaints", complaints}};
}

void tellAsJson(const Findings& findings) {
    printJson(QJsonDocument(QJsonObject{{"version", TALLYVOX_VERSION},
                                        {"ready", findings.ready()},
                                        {"layers", layersOf(findings)},
                                        {"realtime", findings.system.realtime},
                                        {"recordings", recordingsOf(findings)},
                                        {"outputs", outputsOf(findings)}}));
}

void tellLayers(const Findings& findings) {
    for (const LayerReport& layer : findings.system.layers) {
        const std::string name = layer.name + (layer.version.empty() ? "" : " " + layer.version);
        print(name +
              (layer.answers ? " answers. " + layer.limits : " does not answer. " + layer.advice));
    }
    print(findings.system.realtime
              ? "Audio threads get real-time priority."
              : "Audio threads get no real-time priority. " + findings.system.realtimeAdvice);
}

void tellRecordings(const Findings& findings) {
    print("Recordings: " + std::to_string(findings.soundRecordings) + " of " +
          std::to_string(kVoices) + " are sound, in " + findings.recordings.string() + ".");
    for (const std::string& complaint : findings.recordingComplaints)
        print("  " + complaint);
    if (!findings.recordingComplaints.empty())
        print("Install the program again: an announcement needs the recording of every channel.");
}

void tellOutputs(const Findings& findings) {
    if (findings.outputs.empty())
        print("There is no output. Start a sound server, or connect an audio interface.");
    for (const OutputFinding& output : findings.outputs)
        print(deviceLine(output.device) + (output.layer.empty() ? "" : " | " + output.layer) +
              ": " + (output.refusal.empty() ? "ready to start." : output.refusal));
}

void tellAsText(const Findings& findings) {
    print("tallyvoxctl " TALLYVOX_VERSION);
    tellLayers(findings);
    tellRecordings(findings);
    tellOutputs(findings);
    print(findings.ready() ? "An announcement can be started."
                           : "An announcement cannot be started on this machine as it is.");
}

}

void addDoctor(CLI::App& program, Action& action) {
    auto* verb =
        program.add_subcommand("doctor", "Tell what stands between you and a sound; play nothing.");
    const auto json = std::make_shared<bool>(false);
    verb->add_flag("--json", *json, "As a JSON object.");
    verb->footer(R"(Looks at the audio layers and their versions, the right to real-time priority,
the recordings, and at what each output would say to a start. Exits with 0 where
an announcement can be started, and with 1 where not.)");
    verb->callback([&action, json] {
        action = [json] {
            const Findings findings = examine();
            *json ? tellAsJson(findings) : tellAsText(findings);
            return findings.ready() ? ExitCode::done : ExitCode::failed;
        };
    });
}

}
