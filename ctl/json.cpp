#include "ctl/json.h"

#include "ctl/console.h"

#include <QString>

namespace tallyvox {

void printJson(const QJsonDocument& document) { print(document.toJson().trimmed().toStdString()); }

QJsonObject deviceObject(const OutputDevice& device, const std::string& layer) {
    return {{"id", qint64{device.id}},
            {"name", QString::fromStdString(device.name)},
            {"channels", qint64{device.channels}},
            {"rate", device.rate},
            {"layer", QString::fromStdString(layer)}};
}

}
