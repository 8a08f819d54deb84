#include "model/Model.h"

#include "base/checked.h"
#include "model/range.h"

#include <QtCore/QTimer>

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace tallyvox {
namespace {

/// Time for the window to show that a start is being prepared.
constexpr std::chrono::milliseconds kPreparation{50};

QVariant record(const OutputDevice& output) {
    return QVariantMap{{QStringLiteral("id"), output.id},
                       {QStringLiteral("name"), QString::fromStdString(output.name)},
                       {QStringLiteral("channels"), qint64{output.channels}},
                       {QStringLiteral("rate"), output.rate}};
}

/// The letters fold the same way in every locale.
bool isPreferred(const OutputDevice& output) {
    return QString::fromStdString(output.name)
        .contains(QStringLiteral("Dante"), Qt::CaseInsensitive);
}

std::uint32_t firstId(const std::vector<OutputDevice>& outputs) {
    return outputs.empty() ? 0 : outputs.front().id;
}

std::uint32_t preferredId(const std::vector<OutputDevice>& outputs) {
    const auto found = std::find_if(outputs.begin(), outputs.end(), isPreferred);
    return found != outputs.end() ? found->id : firstId(outputs);
}

}

std::optional<OutputDevice> findOutput(const std::vector<OutputDevice>& outputs, std::uint32_t id) {
    const auto found = std::find_if(outputs.begin(), outputs.end(),
                                    [id](const OutputDevice& output) { return output.id == id; });
    return found != outputs.end() ? std::optional(*found) : std::nullopt;
}

Model::Model(Hardware& hardware, QObject* parent)
    : QObject(parent),
      hardware_(hardware),
      outputs_(*this, currentOutputs(), &Model::outputsWillBecome, &Model::outputsChanged),
      selected_(*this, preferredId(outputs()), &Model::selectedWillBecome, &Model::selectedChanged),
      first_(*this, 1, &Model::firstWillBecome, &Model::firstChanged),
      last_(*this, 8, &Model::lastWillBecome, &Model::lastChanged),
      solo_(*this, 0, &Model::soloWillBecome, &Model::soloChanged),
      db_(*this, -24, &Model::dbWillBecome, &Model::dbChanged),
      gap_(*this, 0.7, &Model::gapWillBecome, &Model::gapChanged),
      sequential_(*this, false, &Model::sequentialWillBecome, &Model::sequentialChanged),
      allChannels_(*this, false, &Model::allChannelsWillBecome, &Model::allChannelsChanged),
      running_(*this, false, &Model::runningWillBecome, &Model::runningChanged),
      busy_(*this, false, &Model::busyWillBecome, &Model::busyChanged),
      status_(*this, QStringLiteral("Stopped. Choose an output and press Start."),
              &Model::statusWillBecome, &Model::statusChanged),
      audio_(hardware) {
    connect(this, &Model::outputsChanged, this, &Model::selectedDeviceChanged);
    connect(this, &Model::selectedChanged, this, &Model::selectedDeviceChanged);
    const auto device = selectedDevice();
    last_ = std::min<std::int64_t>(8, device ? device->channels : 0);
}

QVariantList Model::outputRecords() const {
    QVariantList records;
    for (const auto& output : outputs())
        records.append(record(output));
    return records;
}

std::optional<OutputDevice> Model::selectedDevice() const {
    return findOutput(outputs(), selected());
}

QVariant Model::selectedRecord() const {
    const auto device = selectedDevice();
    return device ? record(*device) : QVariant();
}

qint64 Model::maximum() const {
    const auto device = selectedDevice();
    return device ? std::min(device->channels, kLargestChannel) : 0;
}

std::vector<OutputDevice> Model::currentOutputs() const { return devices(hardware_); }

std::int64_t Model::ceiling() const { return rangeCeiling(maximum()); }

void Model::clamp() {
    if (allChannels()) {
        first_ = 1;
        last_ = ceiling();
    } else {
        first_ = bounded(first(), 1, ceiling());
        last_ = bounded(last(), first(), ceiling());
    }
    solo_ = 0;
}

void Model::selectAllChannels() {
    if (allChannels()) {
        manualFirst = first();
        manualLast = last();
        first_ = 1;
        last_ = ceiling();
    } else {
        // A saved value below 1 comes back as it was.
        first_ = std::min(manualFirst, ceiling());
        last_ = bounded(manualLast, first(), ceiling());
    }
    solo_ = 0;
}

void Model::start() {
    const auto output = findOutput(currentOutputs(), selected());
    if (!output) {
        status_ = QStringLiteral("Output unavailable. Start DVS, then refresh outputs.");
        return;
    }
    if (!isPlayable(first(), last(), solo(), output->channels)) {
        status_ = QStringLiteral(
            "Output channel count changed. Refresh outputs and select the range again.");
        return;
    }
    busy_ = true;
    status_ = QStringLiteral("Preparing spoken numbers\u2026");

    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, [this, timer, output = *output] {
        timer->deleteLater();
        startNow(output);
    });
    timer->start(kPreparation);
}

void Model::startNow(const OutputDevice& output) {
    auto mask = channelMask(first(), last(), solo(), sequential(), output.channels);
    try {
        audio_.start(output, std::move(mask), db(), gap(), sequential());
        running_ = true;
        status_ = QStringLiteral("Playing to %1 \u00B7 %2 Hz")
                      .arg(QString::fromStdString(output.name),
                           QString::number(checkedTruncate(output.rate)));
    } catch (const std::exception& error) {
        audio_.stop();
        running_ = false;
        status_ = QString::fromUtf8(error.what());
    }
    busy_ = false;
}

void Model::stop() {
    audio_.stop();
    running_ = false;
    status_ = QStringLiteral("Stopped.");
}

void Model::refresh() {
    stop();
    outputs_ = currentOutputs();
    if (!selectedDevice())
        selected_ = firstId(outputs());
    clamp();
}

}
