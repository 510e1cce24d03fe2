// Where pages come from: every file named and every entry of a folder walk is a
// text or a failure naming the path and the system's reason.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <refpage/format/Inputs.hpp>
#include <string>
#include <vector>

#include "support/Files.hpp"

namespace {

namespace fs = std::filesystem;
using testvalues::ScratchFolder;

std::vector<std::string> relativeSources(std::vector<refpage::PageEntry> const& entries, fs::path const& root) {
    std::vector<std::string> names;
    for (auto const& entry : entries) names.push_back(fs::path(entry.source()).lexically_relative(root).string());
    return names;
}

TEST(PageSource, FolderWalkIsSortedKeepsJsonEntriesAndDoesNotFollowSymlinkedFolders) {
    ScratchFolder const folder;
    for (char const* name : {"b.json", "a/z.json", "a/b/c.json", "a.json", "notes.txt", "c.json/inner.json"})
        folder.write(name, "{}");
    fs::create_directory_symlink(folder / "a", folder / "linked.json");
    fs::create_directory_symlink(folder / "a", folder / "linked");
    fs::create_symlink(folder / "b.json", folder / "alias.json");
    std::vector<refpage::PageEntry> const entries = refpage::findPageEntries({folder.path().string()});
    EXPECT_EQ(relativeSources(entries, folder.path()),
              (std::vector<std::string>{"a/b/c.json", "a/z.json", "a.json", "alias.json", "b.json",
                                        "c.json/inner.json"}));
    for (auto const& entry : entries) EXPECT_FALSE(entry.error) << entry.source();
}

TEST(PageSource, ReadingRefusesWhatIsNotARegularFileAndGivesTheSystemsReason) {
    ScratchFolder const folder;
    fs::create_symlink("loop.json", folder / "loop.json");

    std::string text;
    refpage::PageError error;
    EXPECT_FALSE(refpage::readTextFile(folder / "loop.json", text, error));
    EXPECT_EQ(error.message, std::strerror(ELOOP));
    EXPECT_FALSE(refpage::readTextFile("/dev/null", text, error));
    EXPECT_EQ(error.message, "not a regular file (character device)");

    fs::path const socketPath = folder / "socket.json";
    int const fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
    EXPECT_FALSE(refpage::readTextFile(socketPath, text, error));
    EXPECT_EQ(error.message, "not a regular file (socket)");
    close(fd);
}

}  // namespace
