#include "platform/linux/jack/JackLayer.h"
#include "tests/jack/listing.h"
#include "tests/support/JackServer.h"
#include "tests/support/rounds.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

/// How often `program`, which tells of the server, says `text`.
std::ptrdiff_t count(const std::string& text, std::vector<std::string> program) {
    const auto said = run({.line = std::move(program)}).out;
    std::ptrdiff_t found = 0;
    for (auto at = said.find(text); at != std::string::npos; at = said.find(text, at + 1))
        ++found;
    return found;
}

/// Labels of channels; all servers of a user keep theirs in one place.
std::ptrdiff_t labels() { return count("Channel", {"jack_property", "-l"}); }

TEST(JackRoundsTest, StartingAndStoppingLeavesNothingBehind) {
    if (!JackServer::available())
        GTEST_SKIP() << "jackd is not installed";
    const JackServer server({.playback = 64});
    const auto layer = makeJackLayer(JackServers::own);
    const auto id = await(*layer, "system").id;
    const auto before = labels();
    expectLevelRounds(rounds(5), [&](const Hardware::IOCallback& callback, auto& stream) {
        return layer->open(id, callback, stream);
    });
    EXPECT_EQ(count("tallyvox:", {"jack_lsp"}), 0);
    EXPECT_TRUE(eventually([&] { return labels() <= before; }));
}

}
}
