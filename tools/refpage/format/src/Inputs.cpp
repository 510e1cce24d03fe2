#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <refpage/format/Inputs.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/FileDescriptor.hpp>
#include <refpage/support/FileKind.hpp>
#include <refpage/support/OutputFolder.hpp>
#include <system_error>
#include <utility>

namespace refpage {

namespace fs = std::filesystem;

std::string PageEntry::source() const {
    if (error) return error->source;
    return path.empty() ? std::string(stdinSource) : path;
}

namespace {

PageError failure(fs::path const& path, std::string message) {
    return PageError{path.string(), {}, std::move(message)};
}

std::optional<std::string> refusal(mode_t mode) {
    if (S_ISREG(mode)) return std::nullopt;
    if (S_ISDIR(mode)) return std::string("is a folder, expected a page file");
    return "not a regular file (" + std::string(fileKind(mode)) + ")";
}

/// Appends everything readable from `fd` to `text`; false with errno set on a read error.
bool readAll(int fd, std::string& text) {
    std::array<char, 65536> buffer{};
    for (;;) {
        ssize_t const count = ::read(fd, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0) {
            return true;
        } else if (errno != EINTR) {
            return false;
        }
    }
}

bool isPageName(fs::path const& path) {
    return path.extension() == ".json";
}

/// An entry of a folder as listed.
struct Child {
    fs::path path;
    bool folder = false;  ///< listed as a folder (not a symlink to one)

    bool operator<(Child const& other) const { return path < other.path; }
};

/// The entries of one folder, sorted by name; a failure entry when the folder cannot be listed.
struct FolderListing {
    std::vector<Child> children;
    std::optional<PageError> error;
};

FolderListing listFolder(fs::path const& folder) {
    FolderListing listing;
    std::error_code code;
    fs::directory_iterator it(folder, code);
    for (; !code && it != fs::directory_iterator(); it.increment(code)) {
        std::error_code ignored;  // the type comes from the listing itself where the system gives it
        listing.children.push_back(Child{it->path(), it->symlink_status(ignored).type() == fs::file_type::directory});
    }
    if (code) listing.error = failure(folder, code.message());
    std::sort(listing.children.begin(), listing.children.end());
    return listing;
}

/// One folder of the walk: its sorted children and the next one to visit.
struct WalkFrame {
    std::vector<Child> children;
    std::size_t next = 0;
};

void walkFolder(fs::path const& root, std::vector<PageEntry>& entries) {
    std::vector<WalkFrame> stack;
    auto enter = [&](fs::path const& folder) {
        FolderListing listing = listFolder(folder);
        if (listing.error) entries.push_back(PageEntry{folder.string(), std::move(listing.error)});
        stack.push_back(WalkFrame{std::move(listing.children), 0});
    };
    enter(root);
    while (!stack.empty()) {
        WalkFrame& frame = stack.back();
        if (frame.next == frame.children.size()) {
            stack.pop_back();
            continue;
        }
        Child const listed = frame.children[frame.next++];
        fs::path const& child = listed.path;
        struct stat own {};
        if (::lstat(child.c_str(), &own) != 0) {
            // Vanished since the listing: reported when it was a page or a folder of pages.
            if (listed.folder || isPageName(child))
                entries.push_back(PageEntry{child.string(), failure(child, systemReason(errno))});
            continue;
        }
        if (S_ISDIR(own.st_mode)) {
            if (!holdsOutputMarker(child)) enter(child);  // invalidates `frame`; the tool's own output is no page
            continue;
        }
        if (!isPageName(child)) continue;
        if (S_ISLNK(own.st_mode)) {
            struct stat target {};
            if (::stat(child.c_str(), &target) != 0) {
                entries.push_back(PageEntry{child.string(), failure(child, systemReason(errno))});
                continue;
            }
            if (S_ISDIR(target.st_mode)) continue;  // symlinked folders are not followed
        }
        entries.push_back(PageEntry{child.string(), std::nullopt});
    }
}

}  // namespace

std::vector<PageEntry> findPageEntries(std::vector<std::string> const& names) {
    std::vector<PageEntry> entries;
    for (auto const& name : names) {
        if (name == stdinPath) {
            entries.push_back(PageEntry{});
            continue;
        }
        fs::path const path(name);
        struct stat status {};
        if (::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
            walkFolder(path, entries);
        else
            entries.push_back(PageEntry{name, std::nullopt});
    }
    return entries;
}

bool readTextFile(fs::path const& file, std::string& text, PageError& error) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) {
        error = failure(file, systemReason(errno));
        return false;
    }
    if (auto reason = refusal(status.st_mode)) {
        error = failure(file, std::move(*reason));
        return false;
    }
    FileDescriptor const fd(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (fd.get() < 0) {
        error = failure(file, systemReason(errno));
        return false;
    }
    // The file may have been replaced between stat and open.
    if (::fstat(fd.get(), &status) != 0) {
        error = failure(file, systemReason(errno));
        return false;
    }
    if (auto reason = refusal(status.st_mode)) {
        error = failure(file, std::move(*reason));
        return false;
    }
    std::string contents;
    contents.reserve(static_cast<std::size_t>(status.st_size));
    if (!readAll(fd.get(), contents)) {
        error = failure(file, systemReason(errno));
        return false;
    }
    text = std::move(contents);
    return true;
}

bool readStandardInput(std::string& text, PageError& error) {
    std::string contents;
    if (!readAll(STDIN_FILENO, contents)) {
        error = PageError{std::string(stdinSource), {}, systemReason(errno)};
        return false;
    }
    text = std::move(contents);
    return true;
}

bool readPageEntry(PageEntry const& entry, std::string& text, PageError& error) {
    if (entry.error) {
        error = *entry.error;
        return false;
    }
    if (entry.isStdin()) return readStandardInput(text, error);
    return readTextFile(entry.path, text, error);
}

}  // namespace refpage
