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

namespace testvalues {

struct ToolRun {
    int status = -1;     ///< exit status; -1 when the tool did not exit normally
    std::string output;  ///< what the shell command wrote on its stdout
};

/// Runs a shell command and collects its standard output.
inline ToolRun runShell(std::string const& command) {
    ToolRun run;
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    std::array<char, 4096> buffer{};
    std::size_t count = 0;
    while ((count = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) run.output.append(buffer.data(), count);
    int const status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

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
