#include <fmt/format.h>

#include <memory>
#include <refpage/interchange/PageSchema.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <string>

#include "Commands.hpp"

namespace refpage {

Command addSchemaCommand(CLI::App& app, GlobalOptions const& /*global*/) {
    auto output = std::make_shared<std::string>();
    CLI::App* cli = app.add_subcommand(
        "schema",
        "Print the JSON Schema (draft 2020-12) of a page, made from the tables pages are loaded with, for "
        "editors to complete and check pages as they are written (docs/interchange.md)");
    cli->add_option("-o,--output", *output,
                    "Write to this file (- for standard output); it is replaced only once the whole schema is written");
    return {cli, [output] {
                std::string const text = pageSchemaText();
                if (output->empty() || *output == "-") {
                    fmt::print("{}", text);
                    return static_cast<int>(exitOk);
                }
                std::string error;
                if (replaceFile(*output, text, error)) return static_cast<int>(exitOk);
                fmt::print(stderr, "error: {}\n", error);
                return static_cast<int>(exitFailed);
            }};
}

}  // namespace refpage
