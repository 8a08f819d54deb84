#include "ui/Presenter.h"

#include "ui/Texts.h"

#include <algorithm>
#include <cmath>

namespace tallyvox {

Presenter::Presenter(Model& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&model, &Model::selectedChanged, &model, &Model::clamp);
    connect(&model, &Model::sequentialChanged, &model, [&model] { model.setSolo(0); });
    connect(&model, &Model::allChannelsChanged, &model, &Model::selectAllChannels);

    const auto showRange = [this] { channels_.setRange(model_.first(), model_.last()); };
    for (const auto signal : {&Model::firstChanged, &Model::lastChanged}) {
        connect(&model, signal, this, showRange);
        connect(&model, signal, this, &Presenter::rangesChanged);
    }
    connect(&model, &Model::soloChanged, this, [this] { channels_.setSolo(model_.solo()); });
    showRange();
    channels_.setSolo(model.solo());

    for (const auto signal : {&Model::runningChanged, &Model::busyChanged}) {
        connect(&model, signal, this, &Presenter::lockedChanged);
        connect(&model, signal, this, &Presenter::unplayableChanged);
    }
    for (const auto signal : {&Model::outputsChanged, &Model::selectedChanged}) {
        connect(&model, signal, this, &Presenter::outputChanged);
        connect(&model, signal, this, &Presenter::unplayableChanged);
        connect(&model, signal, this, &Presenter::rangesChanged);
    }
    connect(&model, &Model::outputsChanged, this, &Presenter::outputsChanged);
}

bool Presenter::locked() const { return model_.running() || model_.busy(); }

bool Presenter::unplayable() const { return locked() || channelCount() == 0; }

QStringList Presenter::outputs() const {
    QStringList texts;
    for (const OutputDevice& output : model_.outputs()) {
        texts.append(Texts::output(output));
    }
    return texts;
}

int Presenter::output() const {
    const auto& outputs = model_.outputs();
    const auto chosen = std::find_if(outputs.begin(), outputs.end(), [this](const auto& output) {
        return output.id == model_.selected();
    });
    return chosen == outputs.end() ? -1 : static_cast<int>(chosen - outputs.begin());
}

Range Presenter::firstRange() const { return Range::first(model_.last()); }

Range Presenter::lastRange() const { return Range::last(model_.first(), channelCount()); }

void Presenter::choose(int place) {
    model_.setSelected(model_.outputs().at(static_cast<std::size_t>(place)).id);
}

void Presenter::moveFirst(qlonglong by) { model_.setFirst(firstRange().moved(model_.first(), by)); }

void Presenter::moveLast(qlonglong by) { model_.setLast(lastRange().moved(model_.last(), by)); }

void Presenter::flipAllChannels() { model_.setAllChannels(!model_.allChannels()); }

void Presenter::flipSequential() { model_.setSequential(!model_.sequential()); }

void Presenter::setLevel(double db) { model_.setDb(std::clamp(std::round(db), -60.0, -6.0)); }

void Presenter::setGap(double seconds) {
    model_.setGap(std::clamp(std::round(seconds * 10) / 10, 0.2, 3.0));
}

void Presenter::flipSolo(qlonglong channel) {
    model_.setSolo(model_.solo() == channel ? 0 : channel);
}

qlonglong Presenter::channelCount() const {
    const auto device = model_.selectedDevice();
    return device ? device->channels : 0;
}

}
