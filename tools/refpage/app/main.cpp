// refpage: shows, converts, checks and searches documentation reference pages
// loaded through the host.
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <vector>

#include "Commands.hpp"

int main(int argc, char** argv) {
    using namespace refpage;
    CLI::App app{"Shows, converts, checks and searches documentation reference pages, loaded through the host."};
    app.require_subcommand(1, 1);
    std::vector<Command> const commands{addShowCommand(app), addJsonCommand(app), addCheckCommand(app),
                                        addFindCommand(app),
                                        addSiteCommand(app), addDocsetCommand(app)};
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& e) {
        int const status = app.exit(e);
        return status == 0 ? exitOk : exitUsage;
    }
    try {
        for (auto const& command : commands)
            if (command.cli->parsed()) return command.run();
    } catch (std::exception const& e) {
        fmt::print(stderr, "refpage: {}\n", e.what());
        return exitFailed;
    }
    return exitUsage;
}
