// The product's renderer and voice maker against the literal forms of their rules, over random
// inputs. TALLYVOX_ROUNDS sets how many rounds a test plays, TALLYVOX_SEED where they begin.

#include "engine/Renderer.h"
#include "engine/voices.h"
#include "tests/support/GuardedBuffers.h"
#include "tests/support/alike.h"
#include "tests/support/literal.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>

namespace tallyvox {
namespace {

std::int64_t setting(const char* name, std::int64_t otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::strtoll(text, nullptr, 10) : otherwise;
}

std::uint32_t seedOf(std::int64_t round) {
    return static_cast<std::uint32_t>(setting("TALLYVOX_SEED", 1) + round);
}

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr auto most = std::numeric_limits<std::int64_t>::max();

class Dice {
public:
    explicit Dice(std::uint32_t seed) : engine_(seed) {}

    /// From `low` to `high`, both included.
    std::int64_t number(std::int64_t low, std::int64_t high) {
        return std::uniform_int_distribution<std::int64_t>(low, high)(engine_);
    }
    std::uint32_t size(std::int64_t high) { return static_cast<std::uint32_t>(number(0, high)); }
    bool once(std::int64_t in) { return number(1, in) == 1; }
    float fraction() { return std::uniform_real_distribution<float>(-1, 1)(engine_); }

    float oddity() {
        constexpr float oddities[] = {0.0F,     -0.0F,     1e-40F,    -1e-42F,
                                      infinite, -infinite, notANumber};
        return oddities[number(0, std::size(oddities) - 1)];
    }

    std::vector<float> samples(std::int64_t count, bool odd) {
        std::vector<float> result;
        for (std::int64_t i = 0; i < count; ++i)
            result.push_back(odd && once(5) ? oddity() : fraction());
        return result;
    }

private:
    std::mt19937_64 engine_;
};

/// What both renderers are built from and given.
struct Case {
    std::vector<GuardedBuffers::Shape> shapes;
    std::vector<std::vector<float>> voices;
    std::vector<bool> enabled;
    float gain = 1;
    std::int64_t gapFrames = 0;
    bool sequential = false;
    std::int64_t position = 0;
    std::int64_t calls = 1;
};

std::vector<GuardedBuffers::Shape> randomShapes(Dice& dice) {
    std::vector<GuardedBuffers::Shape> shapes(dice.size(6));
    const std::uint32_t frames = dice.size(dice.once(4) ? 700 : 70);
    const bool wide = dice.once(3);
    for (auto& shape : shapes) {
        shape.channels = dice.once(10) ? 0 : dice.once(2) ? 1 : dice.size(wide ? 140 : 10);
        shape.frames = dice.once(6) ? dice.size(90) : frames;
        shape.extraBytes = dice.once(4) ? dice.size(4 * std::int64_t{shape.channels}) : 0;
        if (shape.extraBytes == 4 * shape.channels)
            shape.extraBytes = 0;
        shape.null = dice.once(10);
    }
    return shapes;
}

/// `deadly` cases may break the rules that stop the process.
Case randomCase(Dice& dice, bool deadly) {
    Case result;
    result.shapes = randomShapes(dice);
    std::int64_t channels = 0;
    for (const auto& shape : result.shapes)
        channels += shape.channels;
    const std::int64_t voices = dice.once(3) ? dice.number(0, channels + 5) : channels;
    const std::int64_t longest = dice.once(5) ? 3 : 400;
    const bool odd = dice.once(4);
    for (std::int64_t i = 0; i < voices; ++i)
        result.voices.push_back(dice.samples(dice.once(8) ? 0 : dice.number(1, longest), odd));
    const std::int64_t flags =
        deadly ? dice.number(0, voices) : voices + (dice.once(3) ? dice.number(0, 5) : 0);
    const std::int64_t rarity = dice.number(1, 4);
    for (std::int64_t i = 0; i < flags; ++i)
        result.enabled.push_back(rarity == 4 ? dice.once(9) : !dice.once(rarity + 1));
    constexpr float gains[] = {1.0F,     0.5F,      0.1F,       -0.7F,  0.0F, -0.0F,
                               infinite, -infinite, notANumber, 1e-39F, 3e38F};
    result.gain = dice.once(2) ? dice.fraction() : gains[dice.number(0, std::size(gains) - 1)];
    result.gapFrames = dice.once(3) ? 0 : dice.number(-longest, 2 * longest);
    result.sequential = dice.once(2);
    result.position = dice.once(2) ? 0 : dice.number(0, 100'000);
    if (deadly && dice.once(2))
        result.position = dice.once(2) ? dice.number(-2000, 0) : dice.number(most - 800, most);
    if (deadly && dice.once(10))
        result.gapFrames = most / dice.number(1, 4);
    result.calls = dice.number(1, 6);
    return result;
}

template<typename AnyRenderer>
AnyRenderer build(const Case& given) {
    AnyRenderer renderer(given.voices, given.enabled, given.gain, given.gapFrames,
                         given.sequential);
    renderer.setPosition(given.position);
    return renderer;
}

template<typename AnyRenderer>
void play(const Case& given) {
    auto renderer = build<AnyRenderer>(given);
    GuardedBuffers buffers(given.shapes);
    for (std::int64_t call = 0; call < given.calls; ++call)
        renderer.render(buffers.list());
}

/// Whether `work` ends its process by SIGABRT.
bool stops(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        const rlimit none{};
        setrlimit(RLIMIT_CORE, &none);
        work();
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}

void expectAlike(const Case& given) {
    auto literal = build<LiteralRenderer>(given);
    auto renderer = build<Renderer>(given);
    ASSERT_EQ(renderer.cycle(), literal.cycle());
    GuardedBuffers expected(given.shapes);
    GuardedBuffers actual(given.shapes);
    for (std::int64_t call = 0; call < given.calls; ++call) {
        literal.render(expected.list());
        renderer.render(actual.list());
        ASSERT_TRUE(actual.intact());
        ASSERT_EQ(renderer.position(), literal.position());
        for (std::size_t i = 0; i < given.shapes.size(); ++i)
            ASSERT_TRUE(alike(actual.buffer(i), expected.buffer(i)));
    }
}

TEST(Differential, TheRendererEqualsItsRulesToTheBit) {
    for (std::int64_t round = 0; round < setting("TALLYVOX_ROUNDS", 1500); ++round) {
        Dice dice(seedOf(round));
        expectAlike(randomCase(dice, false));
        if (HasFatalFailure())
            FAIL() << "TALLYVOX_SEED=" << seedOf(round);
    }
}

TEST(Differential, TheRendererStopsTheProcessExactlyWhereItsRulesDo) {
    std::int64_t stopped = 0;
    const std::int64_t rounds = setting("TALLYVOX_ROUNDS", 1500) / 10;
    for (std::int64_t round = 0; round < rounds; ++round) {
        Dice dice(seedOf(round));
        const Case given = randomCase(dice, true);
        const bool expected = stops([&] { play<LiteralRenderer>(given); });
        ASSERT_EQ(stops([&] { play<Renderer>(given); }), expected)
            << "TALLYVOX_SEED=" << seedOf(round);
        stopped += expected ? 1 : 0;
        if (!expected)
            expectAlike(given);
        if (HasFatalFailure())
            FAIL() << "TALLYVOX_SEED=" << seedOf(round);
    }
    EXPECT_GT(stopped, rounds / 10);
    EXPECT_LT(stopped, rounds - rounds / 10);
}

double randomRate(Dice& dice) {
    constexpr double usual[] = {8000,  11025, 16000, 22050,  32000,  44100,          47952.5,
                                48000, 88200, 96000, 176400, 192000, 44100.0 * 1.001};
    if (dice.once(3))
        return std::abs(static_cast<double>(dice.fraction())) * 100'000 + 0.001;
    return usual[dice.number(0, std::size(usual) - 1)];
}

TEST(Differential, VoicesEqualTheirRulesToTheBit) {
    for (std::int64_t round = 0; round < setting("TALLYVOX_ROUNDS", 1500); ++round) {
        Dice dice(seedOf(round));
        const double fileRate = randomRate(dice);
        const double rate = dice.once(6) ? fileRate : randomRate(dice);
        const auto room = static_cast<std::int64_t>(
            std::min(1000.0, 20'000 * fileRate / std::max(rate, fileRate)));
        const std::int64_t count = dice.number(0, std::max(room, std::int64_t{1}));
        auto samples = dice.samples(count, dice.once(3));
        if (dice.once(5))
            for (float& sample : samples)
                sample *= 0.001F;
        if (rate * static_cast<double>(count) / fileRate > 1e6)
            continue;
        ASSERT_TRUE(
            alike(makeVoice(samples, fileRate, rate), literalVoice(samples, fileRate, rate)))
            << "TALLYVOX_SEED=" << seedOf(round);
    }
}

TEST(Differential, LongVoicesEqualTheirRulesToTheBitAtEveryUsualRate) {
    Dice dice(seedOf(0));
    const auto samples = dice.samples(70'001, false);
    for (const double fileRate : {11025, 22050, 44100, 48000, 96000})
        for (const double rate : {8000, 44100, 47952, 48000, 88200, 96000, 192000})
            ASSERT_TRUE(
                alike(makeVoice(samples, fileRate, rate), literalVoice(samples, fileRate, rate)))
                << fileRate << " to " << rate;
}

}
}
