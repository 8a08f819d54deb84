#include "audio/deviceLine.h"
#include "audio/devices.h"
#include "audio/layer.h"
#include "ctl/console.h"
#include "ctl/json.h"
#include "ctl/verbs.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <memory>

namespace tallyvox {
namespace {

void listAsText() {
    for (const OutputDevice& device : devices()) {
        const std::string name = layer(device.id);
        print(deviceLine(device) + (name.empty() ? "" : " | " + name));
    }
}

void listAsJson() {
    QJsonArray list;
    for (const OutputDevice& device : devices())
        list.append(deviceObject(device, layer(device.id)));
    printJson(QJsonDocument(list));
}

}

void addList(CLI::App& program, Action& action) {
    auto* verb =
        program.add_subcommand("list", "List the outputs: id, name, channels, rate and layer.");
    const auto json = std::make_shared<bool>(false);
    verb->add_flag("--json", *json,
                   "As a JSON array of objects with id, name, channels, rate and layer.");
    verb->footer(R"(One line an output, in the order of the sound servers; nothing where there is no
output. The id stays the same while the output lives.)");
    verb->callback([&action, json] {
        action = [json] {
            *json ? listAsJson() : listAsText();
            return ExitCode::done;
        };
    });
}

}
