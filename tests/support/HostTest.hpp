// Test fixture: the library's host classes are registered, and every test
// must end with as many live host arrays and objects as it started with.
#pragma once

#include <ovrin/testing.hpp>
#include <reference/glue/Classes.hpp>

#include <gtest/gtest.h>

#include <cstddef>

class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        reference::glue::registerClasses();
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
