// The tool's commands: each adds its subcommand and options to the command line
// and runs once the command line is parsed.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace refpage {

/// Exit statuses of the tool.
enum ExitStatus : int {
    exitOk = 0,      ///< everything loaded and passed
    exitFailed = 1,  ///< a page was bad or a check failed
    exitUsage = 2,   ///< the command line was wrong
};

struct Command {
    CLI::App* cli = nullptr;   ///< the subcommand, owned by the parent App
    std::function<int()> run;  ///< runs the command with the parsed options, returns the exit status
};

Command addShowCommand(CLI::App& app);
Command addJsonCommand(CLI::App& app);
Command addCheckCommand(CLI::App& app);
Command addFindCommand(CLI::App& app);
Command addSiteCommand(CLI::App& app);
Command addDocsetCommand(CLI::App& app);

}  // namespace refpage
