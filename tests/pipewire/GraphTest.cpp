#include "platform/linux/pipewire/Graph.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

Graph::Node sink(std::uint64_t serial, const char* name) {
    return {.serial = serial, .mediaClass = "Audio/Sink", .name = name};
}

void addInputs(Graph& graph, std::uint32_t node, std::uint32_t firstId, std::uint32_t count) {
    for (std::uint32_t index = 0; index < count; ++index)
        graph.ports[firstId + index] = {.node = node, .index = index, .input = true, .audio = true};
}

TEST(GraphTest, SinksAreListedInTheOrderOfTheirCreation) {
    Graph graph;
    graph.nodes[7] = sink(90, "a");
    graph.nodes[3] = sink(100, "c");
    graph.nodes[9] = sink(80, "b");
    const auto devices = graph.devices();
    ASSERT_EQ(devices.size(), 3U);
    EXPECT_EQ(devices[0].record.name, "b");
    EXPECT_EQ(devices[1].record.name, "a");
    EXPECT_EQ(devices[2].record.name, "c");
    EXPECT_EQ(devices[1].record.id, 0x40000000U + 90);
    EXPECT_EQ(devices[1].node, 7U);
}

TEST(GraphTest, OnlyWhatPlaysSoundIsListed) {
    Graph graph;
    for (const char* other : {"Audio/Source", "Stream/Output/Audio", "Video/Source", ""}) {
        graph.nodes[1] = {.serial = 1, .mediaClass = other};
        EXPECT_TRUE(graph.devices().empty()) << other;
    }
    graph.nodes[1] = {.serial = 1, .mediaClass = "Audio/Duplex"};
    EXPECT_EQ(graph.devices().size(), 1U);
}

TEST(GraphTest, ChannelsAreTheAudioInputsInTheOrderOfTheirIndex) {
    Graph graph;
    graph.nodes[5] = sink(5, "five");
    graph.ports[30] = {.node = 5, .index = 0, .input = true, .audio = true};
    graph.ports[10] = {.node = 5, .index = 2, .input = true, .audio = true};
    graph.ports[20] = {.node = 5, .index = 1, .input = true, .audio = true};
    graph.ports[40] = {.node = 5, .index = 3, .input = true, .audio = false};
    graph.ports[50] = {.node = 5, .index = 4, .input = false, .audio = true};
    graph.ports[60] = {.node = 6, .index = 0, .input = true, .audio = true};
    const auto devices = graph.devices();
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0].ports, (std::vector<std::uint32_t>{30, 20, 10}));
    EXPECT_EQ(devices[0].record.buffers, (std::vector<std::uint32_t>{1, 1, 1}));
}

TEST(GraphTest, TheTenthPortComesAfterTheSecond) {
    Graph graph;
    graph.nodes[1] = sink(1, "wide");
    addInputs(graph, 1, 100, 128);
    const auto ports = graph.devices().front().ports;
    ASSERT_EQ(ports.size(), 128U);
    for (std::uint32_t index = 0; index < 128; ++index)
        EXPECT_EQ(ports[index], 100 + index);
}

TEST(GraphTest, AFixedRateOfTheFormatCountsFirst) {
    Graph graph;
    Graph::Node node = sink(1, "n");
    node.formatRates = {{44100}, false};
    node.audioRate = 96000;
    EXPECT_EQ(graph.rate(node), 44100);
}

TEST(GraphTest, ThenTheNodesOwnProperty) {
    Graph graph;
    Graph::Node node = sink(1, "n");
    node.formatRates = {{48000, 1, 384000}, true};
    node.audioRate = 96000;
    EXPECT_EQ(graph.rate(node), 96000);
}

TEST(GraphTest, ThenTheClockIfTheDeviceCanRunAtIt) {
    Graph graph;
    graph.clockRate = 44100;
    Graph::Node node = sink(1, "n");
    EXPECT_EQ(graph.rate(node), 44100);
    node.formatRates = {{48000, 44100, 48000}, false};
    EXPECT_EQ(graph.rate(node), 44100);
    node.formatRates = {{48000, 8000, 192000}, true};
    EXPECT_EQ(graph.rate(node), 44100);
    node.formatRates = {{96000, 48000, 192000}, true};
    EXPECT_EQ(graph.rate(node), 96000);
    node.formatRates = {{48000, 96000}, false};
    EXPECT_EQ(graph.rate(node), 48000);
}

TEST(GraphTest, AForcedClockCountsBeforeAll) {
    Graph graph;
    graph.forcedRate = 192000;
    Graph::Node node = sink(1, "n");
    node.formatRates = {{44100}, false};
    EXPECT_EQ(graph.rate(node), 192000);
}

}
}
