#pragma once

#include "audio/devices.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <string>

namespace tallyvox {

/// Writes `document` to standard output, indented.
void printJson(const QJsonDocument& document);

/// An output as an object with `id`, `name`, `channels`, `rate` in Hz and `layer`.
QJsonObject deviceObject(const OutputDevice& device, const std::string& layer);

}
