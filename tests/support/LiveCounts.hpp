// Test fixture: every test must end with as many live host arrays and host
// objects as it started with, and with no fault left armed.
#pragma once

#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <cstddef>

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
