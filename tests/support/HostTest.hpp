// Test fixture for the library: its host classes are registered, and every
// test ends with the live host array and object counts it started with.
#pragma once

#include "support/LiveCounts.hpp"

#include <reference/glue/Classes.hpp>

class HostTest : public LiveCountTest {
protected:
    void SetUp() override {
        reference::glue::registerClasses();
        LiveCountTest::SetUp();
    }
};
