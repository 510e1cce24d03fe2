// Test fixtures: every test ends with as many live host arrays and host objects
// as it started with, and with no fault left armed.
#pragma once

#include <reference/glue/Classes.hpp>

#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <cstddef>

/// For tests of the host and of the library's parts on their own.
class LiveCountTest : public ::testing::Test {
protected:
    void SetUp() override {
        arraysAtStart_ = ovrin::testing::liveArrays();
        objectsAtStart_ = ovrin::testing::liveObjects();
    }
    void TearDown() override {
        ovrin::testing::failHostCall(0);
        EXPECT_EQ(ovrin::testing::liveArrays(), arraysAtStart_) << "host arrays leaked";
        EXPECT_EQ(ovrin::testing::liveObjects(), objectsAtStart_) << "host objects leaked";
    }

private:
    std::size_t arraysAtStart_ = 0;
    std::size_t objectsAtStart_ = 0;
};

/// For tests of the library: its host classes are registered first.
class HostTest : public LiveCountTest {
protected:
    void SetUp() override {
        reference::glue::registerClasses();
        LiveCountTest::SetUp();
    }
};
