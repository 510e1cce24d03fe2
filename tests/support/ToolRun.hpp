// Running the built refpage tool through the shell. For the tests that know
// REFPAGE_BINARY (declared with TOOL in tests/CMakeLists.txt).
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "support/Files.hpp"
#include "support/Shell.hpp"

namespace testvalues {

/// Runs the tool with `arguments` (shell words, redirections allowed); `streams` says
/// where its output goes, by default stdout and stderr together into `output`.
inline ToolRun refpage(std::string const& arguments, std::string const& streams = "2>&1") {
    return runShell(std::string(REFPAGE_BINARY) + " " + arguments + " " + streams);
}

/// Runs the tool as `refpage` does and checks that it exits with `status` and that its output
/// holds each of `parts`; returns the run for further checks.
inline ToolRun expectRun(std::string const& arguments, int status, std::vector<std::string> const& parts = {},
                         std::string const& streams = "2>&1") {
    ToolRun run = refpage(arguments, streams);
    EXPECT_EQ(run.status, status) << "refpage " << arguments << "\n" << run.output;
    for (std::string const& part : parts)
        EXPECT_TRUE(contains(run.output, part)) << "refpage " << arguments << "\nlacks: " << part << "\n" << run.output;
    return run;
}

}  // namespace testvalues
