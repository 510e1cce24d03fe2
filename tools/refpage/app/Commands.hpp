// The tool's commands: each adds its subcommand and options to the command line
// and runs once the command line is parsed.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace refpage {

/// Exit statuses of the tool.
enum ExitStatus : int {
    exitOk = 0,      ///< everything loaded and passed
    exitFailed = 1,  ///< a page was bad, a check failed, nothing was found, or output could not be written
    exitUsage = 2,   ///< the command line was wrong
};

/// Options accepted before or after the command; filled by the parse, read by the commands.
struct GlobalOptions {
    bool strict = false;   ///< warnings count as errors
    bool quiet = false;    ///< only errors and results: no warnings, progress or summary
    unsigned jobs = 1;     ///< pages worked on at once; at least 1
};

struct Command {
    CLI::App* cli = nullptr;   ///< the subcommand, owned by the parent App
    std::function<int()> run;  ///< runs the command with the parsed options, returns the exit status
};

/// Each keeps a reference to `global`, which must outlive the returned command.
Command addShowCommand(CLI::App& app, GlobalOptions const& global);
Command addJsonCommand(CLI::App& app, GlobalOptions const& global);
Command addCheckCommand(CLI::App& app, GlobalOptions const& global);
Command addFindCommand(CLI::App& app, GlobalOptions const& global);
Command addIndexCommand(CLI::App& app, GlobalOptions const& global);
Command addSiteCommand(CLI::App& app, GlobalOptions const& global);
Command addDocsetCommand(CLI::App& app, GlobalOptions const& global);
Command addInventoryCommand(CLI::App& app, GlobalOptions const& global);
Command addSchemaCommand(CLI::App& app, GlobalOptions const& global);

}  // namespace refpage
