// pagegen: writes a deterministic doc set of generated pages to a folder.
#include <pagegen/PageGen.hpp>

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    CLI::App app{"Writes a doc set of generated reference pages, the same bytes for the same seed and options."};
    pagegen::DocSetOptions options;
    std::string folder;
    app.add_option("--seed", options.seed, "Seed of the set")->capture_default_str();
    app.add_option("--pages", options.pages, "Pages in the set")->capture_default_str();
    app.add_option("--package", options.package, "First component of every entity name")->capture_default_str();
    auto const share = CLI::Range(0.0, 1.0);
    app.add_option("--broken-links", options.brokenLinks, "Share of links that name no page of the set")
        ->check(share)
        ->capture_default_str();
    app.add_option("--duplicate-names", options.duplicateNames, "Share of pages repeating an earlier entity name")
        ->check(share)
        ->capture_default_str();
    app.add_option("--duplicate-hrefs", options.duplicateHrefs, "Share of pages repeating an earlier Href")
        ->check(share)
        ->capture_default_str();
    app.add_option("--deprecated", options.deprecated, "Share of deprecated pages")->check(share)->capture_default_str();
    app.add_option("--non-ascii", options.nonAscii, "Share of texts with a non-ASCII word")
        ->check(share)
        ->capture_default_str();
    app.add_option("-o,--output", folder, "Folder to write the pages to (created if missing)")->required();
    CLI11_PARSE(app, argc, argv);

    try {
        std::vector<pagegen::GeneratedPage> const pages = pagegen::generateDocSet(options);
        pagegen::writeDocSet(folder, pages);
        std::cout << pages.size() << " pages written to " << folder << "\n";
    } catch (std::exception const& error) {
        std::cerr << "pagegen: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
