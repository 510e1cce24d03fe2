// Running the built refpage tool through the shell, and scratch folders for its
// inputs. For the tests that know REFPAGE_BINARY.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

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

inline bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
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

/// A test page file of tests/data.
inline std::string data(std::string const& name) {
    return std::string(REFPAGE_TEST_DATA) + "/" + name;
}

/// A fresh folder under the system's temporary folder, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "refpage-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) != nullptr) path_ = pattern;
    }
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    std::filesystem::path const& path() const noexcept { return path_; }
    std::filesystem::path operator/(std::string const& name) const { return path_ / name; }

    /// Writes `text` to `name` inside the folder, making its parent folders.
    std::filesystem::path write(std::string const& name, std::string_view text) const {
        std::filesystem::path const file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }

private:
    std::filesystem::path path_;
};

/// The smallest page that loads.
inline constexpr std::string_view minimalPage =
    R"({"Href": "demo/small.html", "RefEntities": [{"Name": "demo.small"}]})";

}  // namespace testvalues
