// refpage: shows, converts, checks and searches documentation reference pages
// loaded through the host.
#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <sstream>
#include <refpage/support/Escape.hpp>
#include <refpage/support/InterruptCleanup.hpp>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "Commands.hpp"
#include "EnumerationKeys.hpp"
#include "Output.hpp"

namespace {

using namespace refpage;

std::string commandNames(std::vector<Command> const& commands) {
    std::string names;
    for (auto const& command : commands) names += (names.empty() ? "" : ", ") + command.cli->get_name();
    return names;
}

/// Parses the command line and runs the command; the exit status before output is checked.
int run(int argc, char** argv) {
    CLI::App app{"Shows, converts, checks and searches documentation reference pages, loaded through the host."};
    app.fallthrough();  // options of the whole tool are accepted after the command too
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", "refpage " REFPAGE_VERSION, "Print the version and exit");
    app.footer("Enumeration values in a page are a key or the member's number:\n" + enumerationKeys() +
               "\nExit status: 0 all is well; 1 a page failed, nothing was found, or output could not be written; "
               "2 the command line was wrong.");

    GlobalOptions global;
    global.jobs = std::max(1u, std::thread::hardware_concurrency());
    app.add_flag("--strict", global.strict, "Treat warnings as errors");
    app.add_flag("-q,--quiet", global.quiet, "Print only errors and results: no warnings, progress or summary");
    app.add_option("-j,--jobs", global.jobs, "Pages worked on at once (default: the number of cores)")
        ->check(CLI::Range(1u, 1024u));

    std::vector<Command> const commands{addShowCommand(app, global), addJsonCommand(app, global),
                                        addCheckCommand(app, global), addFindCommand(app, global),
                                        addIndexCommand(app, global), addSiteCommand(app, global),
                                        addDocsetCommand(app, global),
                                        addInventoryCommand(app, global),
                                        addSchemaCommand(app, global)};
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& e) {
        auto const& extras = app.remaining();
        bool const noCommand = app.get_subcommands().empty();
        if (noCommand && dynamic_cast<CLI::ExtrasError const*>(&e) != nullptr && !extras.empty() &&
            extras.front().rfind('-', 0) != 0) {
            fmt::print(stderr, "refpage: unknown command {}; the commands are {}\n", refpage::quoted(extras.front()),
                       commandNames(commands));
            return exitUsage;
        }
        // Help, version and parse errors go out through stdio, where a failed write is seen at exit.
        std::ostringstream out;
        std::ostringstream err;
        int const status = app.exit(e, out, err);
        fmt::print(stdout, "{}", out.str());
        fmt::print(stderr, "{}", err.str());
        return status == 0 ? exitOk : exitUsage;
    }
    for (auto const& command : commands)
        if (command.cli->parsed()) return command.run();
    fmt::print(stderr, "refpage: a command is required: {}\nRun with --help for more information.\n",
               commandNames(commands));
    return exitUsage;
}

}  // namespace

int main(int argc, char** argv) {
    refpage::installInterruptCleanup();  // first: every thread started later leaves the signals to it
    int status = refpage::exitFailed;
    int failedWrite = 0;  // the system error of a write to stdout that threw
    try {
        status = run(argc, argv);
    } catch (std::system_error const& e) {
        if (std::ferror(stdout) != 0)
            failedWrite = e.code().value() != 0 ? e.code().value() : EIO;
        else
            std::fprintf(stderr, "refpage: %s\n", e.what());
        status = refpage::exitFailed;
    } catch (std::exception const& e) {
        std::fprintf(stderr, "refpage: %s\n", e.what());
        status = refpage::exitFailed;
    }
    return refpage::finishOutput(failedWrite) ? status : refpage::exitFailed;
}
