#pragma once

#include "model/Model.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/VoicesFolder.h"
#include "tests/support/elapse.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <utility>

namespace tallyvox {

/// A model over scripted hardware. A test adds its devices before it makes the model.
class ModelTest : public testing::Test {
protected:
    Model& make() { return model.emplace(hardware); }
    /// One output with this many channels, chosen.
    Model& makeWith(std::uint32_t channels, double rate = 48000) {
        hardware.addDevice(7, "Out", {channels}, rate);
        return make();
    }
    void setRange(std::int64_t first, std::int64_t last) {
        model->setFirst(first);
        model->setLast(last);
    }
    std::pair<std::int64_t, std::int64_t> range() { return {model->first(), model->last()}; }
    std::string status() { return model->status().toStdString(); }
    /// Starts and lets the delay pass.
    void play() {
        model->start();
        elapse(*model);
    }
    void expectState(bool busy, bool running) {
        EXPECT_EQ(model->busy(), busy);
        EXPECT_EQ(model->running(), running);
    }
    /// The channels, 1-based, that announce in the playing mask.
    std::vector<std::int64_t> announcing() {
        std::vector<std::int64_t> channels;
        const auto& enabled = model->audio().renderer()->enabled();
        for (std::size_t i = 0; i < enabled.size(); ++i) {
            if (enabled[i])
                channels.push_back(static_cast<std::int64_t>(i) + 1);
        }
        return channels;
    }

    int argumentCount_ = 1;
    char program_[6] = "tests";
    char* arguments_[2] = {program_, nullptr};
    QCoreApplication application_{argumentCount_, arguments_};
    VoicesFolder voices;
    FakeHardware hardware;
    std::optional<Model> model;
};

}
