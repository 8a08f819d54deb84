#include "model/OutputWatch.h"
#include "tests/model/ModelTest.h"
#include "tests/model/Rules.h"
#include "tests/model/observe.h"

#include <cmath>
#include <cstdlib>
#include <functional>
#include <random>

namespace tallyvox {
namespace {

/// Drives the model and its rules side by side, over devices that come, go and change.
class Random : public ModelTest {
protected:
    std::int64_t pick(std::int64_t low, std::int64_t high) {
        return std::uniform_int_distribution<std::int64_t>(low, high)(random);
    }
    template<typename T>
    T oneOf(std::initializer_list<T> values) {
        return *(values.begin() + pick(0, static_cast<std::int64_t>(values.size()) - 1));
    }

    std::int64_t anyChannel() { return pick(0, 9) < 8 ? pick(-2, 20) : pick(120, 210); }
    std::uint32_t anyChannelCount() {
        return oneOf<std::uint32_t>({0, 1, 2, 2, 4, 8, 8, 9, 16, 16, pick(0, 9) == 0 ? 200U : 3U});
    }
    double anyRate() { return oneOf({0.0, 8000.0, 44100.0, 48000.0, 48000.75, 96000.0}); }
    std::uint32_t anyId() { return static_cast<std::uint32_t>(pick(0, 12)); }

    /// Makes the fake's devices what the rules say exists.
    void realise() {
        while (!realised.empty()) {
            hardware.removeDevice(realised.back());
            realised.pop_back();
        }
        for (const auto& device : rules->existing) {
            const auto& output = device.output;
            hardware.addDevice(output.id, output.name,
                               {static_cast<std::uint32_t>(output.channels)}, output.rate);
            hardware.setFormat(FakeHardware::streamId(output.id, 0),
                               FakeHardware::floatFormat(
                                   static_cast<std::uint32_t>(output.channels), device.streamRate));
            realised.push_back(output.id);
        }
    }
    Rules::Device anyDevice(std::uint32_t id) {
        const double rate = anyRate();
        return {{id, oneOf<std::string>({"Dante", "a dANTE b", "Out", "Ausgang Ä", "", "%1 %2"}),
                 anyChannelCount(), rate},
                pick(0, 9) == 0 ? rate + 1 : rate,
                pick(0, 19) == 0 ? -50 : 0,
                pick(0, 19) == 0 ? kAudioHardwareNotRunningError : 0};
    }
    void changeDevices() {
        auto& existing = rules->existing;
        const auto any =
            existing.begin() + pick(0, std::max<std::int64_t>(std::ssize(existing) - 1, 0));
        switch (existing.empty() ? 0 : pick(0, 3)) {
        case 0: {
            const auto id = static_cast<std::uint32_t>(pick(1, 12));
            for (const auto& device : existing) {
                if (device.output.id == id)
                    return;
            }
            existing.insert(any, anyDevice(id));
            break;
        }
        case 1:
            existing.erase(any);
            break;
        case 2:
            *any = anyDevice(any->output.id);
            break;
        default:
            any->output.name += '!';
        }
        realise();
    }

    template<typename T>
    void assign(const char* property, T Rules::*field, T value) {
        rules->assign(property, (*rules).*field, value);
        ASSERT_TRUE(model->setProperty(property, QVariant::fromValue(value)));
    }

    /// A kind of operation, carried out on the model and on the rules.
    struct Operation {
        const char* name;
        double weight;
        std::function<void()> run;
    };
    const std::vector<Operation> operations{
        {"change devices", 10, [this] { changeDevices(); }},
        {"first", 10, [this] { assign("first", &Rules::first, anyChannel()); }},
        {"last", 13, [this] { assign("last", &Rules::last, anyChannel()); }},
        {"solo", 5, [this] { assign("solo", &Rules::solo, pick(0, 1) * anyChannel()); }},
        {"db", 3, [this] { assign("db", &Rules::db, static_cast<double>(pick(-60, -6))); }},
        {"gap", 3, [this] { assign("gap", &Rules::gap, static_cast<double>(pick(0, 30)) / 10); }},
        {"sequential", 3, [this] { assign("sequential", &Rules::sequential, pick(0, 1) == 1); }},
        {"allChannels", 5, [this] { assign("allChannels", &Rules::allChannels, pick(0, 1) == 1); }},
        {"selected", 6,
         [this] {
             const auto id = anyId();
             rules->assignSelected(id);
             model->setSelected(id);
         }},
        {"manual range", 3,
         [this] {
             rules->manualFirst = model->manualFirst = anyChannel();
             rules->manualLast = model->manualLast = anyChannel();
         }},
        {"clamp", 10, both(&Rules::clamp, &Model::clamp)},
        {"selectAllChannels", 7, both(&Rules::selectAllChannels, &Model::selectAllChannels)},
        {"start", 3, both(&Rules::start, &Model::start)},
        {"elapse", 4, [this] { letTimePass(); }},
        {"stop", 2, both(&Rules::stop, &Model::stop)},
        {"refresh", 4, both(&Rules::refresh, &Model::refresh)},
        {"watch", 4,
         [this] {
             rules->watch();
             watchOutput(*model);
         }},
        {"no outputs", 1,
         [this] {
             rules->assignOutputs({});
             model->setOutputs({});
         }},
    };
    std::function<void()> both(void (Rules::*rule)(), void (Model::*operation)()) {
        return [this, rule, operation] {
            ((*rules).*rule)();
            ((*model).*operation)();
        };
    }
    /// Carries one operation out; answers its name.
    const char* step() {
        const auto& operation = operations[choice(random)];
        operation.run();
        return operation.name;
    }
    std::discrete_distribution<std::size_t> weights() const {
        std::vector<double> values;
        for (const auto& operation : operations)
            values.push_back(operation.weight);
        return {values.begin(), values.end()};
    }

    void letTimePass() {
        // An inverted range would be fatal now.
        if (rules->last < rules->first && !rules->waiting.empty())
            assign("last", &Rules::last, rules->first);
        hardware.before = [this](const std::string& line) {
            for (const auto& device : rules->existing) {
                const auto id = std::to_string(device.output.id);
                if (line == "create " + id)
                    hardware.createStatus = device.createStatus;
                else if (line == "start " + id)
                    hardware.startStatus = device.startStatus;
            }
        };
        elapse(*model);
        hardware.before = nullptr;
        rules->elapse();
    }

    void compare() {
        ASSERT_EQ(told, rules->told);
        ASSERT_EQ(model->outputs(), rules->outputs);
        ASSERT_EQ(model->selected(), rules->selected);
        ASSERT_THAT(range(), testing::Pair(rules->first, rules->last));
        ASSERT_EQ(model->solo(), rules->solo);
        ASSERT_EQ(model->db(), rules->db);
        ASSERT_EQ(model->gap(), rules->gap);
        ASSERT_EQ(model->sequential(), rules->sequential);
        ASSERT_EQ(model->allChannels(), rules->allChannels);
        ASSERT_EQ(model->manualFirst, rules->manualFirst);
        ASSERT_EQ(model->manualLast, rules->manualLast);
        ASSERT_EQ(model->running(), rules->running);
        ASSERT_EQ(model->busy(), rules->busy);
        ASSERT_EQ(status(), rules->status);
        ASSERT_EQ(hardware.registered(), rules->playing ? 1U : 0U);
        if (rules->playing) {
            ASSERT_TRUE(hardware.running(rules->playing->device));
            const auto& renderer = *model->audio().renderer();
            ASSERT_EQ(renderer.enabled(), rules->playing->enabled);
            ASSERT_EQ(renderer.cycle(), rules->playing->cycle);
            ASSERT_EQ(renderer.sequential(), rules->playing->sequential);
            ASSERT_FLOAT_EQ(renderer.gain(),
                            static_cast<float>(std::exp(rules->playing->db * 0.11512925464970228)));
        }
        told.clear();
        rules->told.clear();
        hardware.log.clear();
    }

    std::mt19937_64 random{std::random_device{}()}; // before the test seeds it
    std::discrete_distribution<std::size_t> choice = weights();
    std::optional<Rules> rules;
    std::vector<std::uint32_t> realised;
    std::vector<std::string> told;
};

TEST_F(Random, TheModelFollowsItsRulesThroughAnyOperations) {
    const char* wanted = std::getenv("TALLYVOX_TEST_SEED");
    const std::uint64_t seed =
        wanted != nullptr ? std::strtoull(wanted, nullptr, 10) : std::random_device{}();
    SCOPED_TRACE("again with TALLYVOX_TEST_SEED=" + std::to_string(seed));
    random.seed(seed);
    voices.fillUpTo(128);

    constexpr int lives = 40;
    constexpr int steps = 2500;
    int plays = 0;
    for (int life = 0; life < lives; ++life) {
        rules.emplace(std::vector<Rules::Device>{});
        std::vector<Rules::Device> devices;
        for (std::uint32_t id = 1; id <= 12; ++id) {
            if (pick(0, 2) == 0)
                devices.insert(devices.begin() + pick(0, std::ssize(devices)), anyDevice(id));
        }
        rules.emplace(devices);
        realise();
        make();
        observe(*model, [this](std::string line) { told.push_back(std::move(line)); });
        const char* last = "construction";
        for (int i = 0; i < steps; ++i) {
            ASSERT_NO_FATAL_FAILURE(compare())
                << "operation " << i << " of life " << life << ", after " << last;
            const bool wasPlaying = rules->playing.has_value();
            last = step();
            plays += !wasPlaying && rules->playing ? 1 : 0;
        }
        ASSERT_NO_FATAL_FAILURE(compare());
        model.reset();
        EXPECT_EQ(hardware.registered(), 0U);
    }
    EXPECT_GT(plays, 100); // the test would prove little otherwise
    RecordProperty("plays", plays);
}

}
}
