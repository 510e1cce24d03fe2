// Running the built refpage tool through the shell. For the tests that know
// REFPAGE_BINARY (declared with TOOL in tests/CMakeLists.txt).
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <optional>
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

/// Starts the tool with `arguments`, its output thrown away, and sends it `signal` as soon as `ready()`
/// holds (or after two minutes); returns its wait status, or nothing when it ended before that.
template <class Ready>
std::optional<int> interruptTool(std::vector<std::string> arguments, int signal, Ready&& ready) {
    arguments.insert(arguments.begin(), REFPAGE_BINARY);
    std::vector<char*> argv;
    for (auto& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    pid_t const child = ::fork();
    if (child == 0) {
        int const null = ::open("/dev/null", O_WRONLY);
        ::dup2(null, 1);
        ::dup2(null, 2);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    if (child < 0) {
        ADD_FAILURE() << "fork failed";
        return std::nullopt;
    }
    auto const until = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    int status = 0;
    while (!ready() && std::chrono::steady_clock::now() < until)
        if (::waitpid(child, &status, WNOHANG) == child) return std::nullopt;
    ::kill(child, signal);
    ::waitpid(child, &status, 0);
    return status;
}

}  // namespace testvalues
