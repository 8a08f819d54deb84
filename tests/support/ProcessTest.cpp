#include "tests/support/Process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <system_error>

namespace tallyvox {
namespace {

using std::chrono::milliseconds;

TEST(ProcessTest, CollectsBothOutputsAndTheExitCode) {
    const Outcome outcome = run({.line = {"sh", "-c", "echo one; echo two >&2; exit 3"}});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.signal, 0);
    EXPECT_EQ(outcome.out, "one\n");
    EXPECT_EQ(outcome.err, "two\n");
}

TEST(ProcessTest, ReadsMoreThanAPipeHolds) {
    EXPECT_EQ(run({.line = {"sh", "-c", "yes | head -c 1000000"}}).out.size(), 1000000U);
}

TEST(ProcessTest, WaitsForATextAndSendsASignal) {
    Process process({.line = {"sh", "-c", "echo ready; exec sleep 1000"}});
    EXPECT_TRUE(process.shows("ready"));
    EXPECT_FALSE(process.shows("never", milliseconds(20)));
    EXPECT_TRUE(process.runs());
    process.send(SIGTERM);
    EXPECT_EQ(process.end().signal, SIGTERM);
}

TEST(ProcessTest, KillsWhatDoesNotEnd) {
    EXPECT_EQ(run({.line = {"sleep", "1000"}}, milliseconds(20)).signal, SIGKILL);
}

TEST(ProcessTest, DoesNotWaitForADescendantThatKeepsTheOutputsOpen) {
    Process process({.line = {"sh", "-c", "sleep 1000 & echo $!"}});
    const Outcome outcome = process.end();
    EXPECT_EQ(outcome.exitCode, 0);
    kill(std::stoi(outcome.out), SIGKILL);
}

TEST(ProcessTest, HandsOverTheEnvironmentAsTold) {
    EXPECT_EQ(
        run({.line = {"sh", "-c", "echo $A${HOME-none}"}, .set = {{"A", "b"}}, .unset = {"HOME"}})
            .out,
        "bnone\n");
}

TEST(ProcessTest, GivesATerminalOrAFileOrAClosedPipe) {
    EXPECT_EQ(
        run({.line = {"sh", "-c", "test -t 1 && test -t 2 && echo yes"}, .terminal = true}).out,
        "yes\r\n");
    EXPECT_NE(run({.line = {"sh", "-c", "echo x"}, .out = "/dev/full"}).exitCode, 0);
    EXPECT_EQ(run({.line = {"sh", "-c", "yes; kill -$(($? - 128)) $$"}, .outClosed = true}).signal,
              SIGPIPE);
}

TEST(ProcessTest, AMissingProgramIsAnError) {
    EXPECT_THROW(run({.line = {"/nowhere/at/all"}}), std::system_error);
}

}
}
