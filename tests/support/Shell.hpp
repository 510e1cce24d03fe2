// Shell commands for tests: run one and collect what it prints, with its exit status.
#pragma once

#include <stdlib.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

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

/// `text` as one word of the shell, whatever it holds.
inline std::string shellQuoted(std::string const& text) {
    std::string quoted = "'";
    for (char const c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

}  // namespace testvalues
