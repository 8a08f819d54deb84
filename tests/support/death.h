#pragma once

#include <gtest/gtest.h>

#include <csignal>

/// `statement` stops the process by SIGABRT and says nothing on standard error.
#define EXPECT_SILENT_STOP(statement)                                                              \
    EXPECT_EXIT(statement, ::testing::KilledBySignal(SIGABRT), "^$")
