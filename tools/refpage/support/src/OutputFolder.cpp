#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <random>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/OutputFolder.hpp>

#include <refpage/support/Beneath.hpp>
#include <refpage/support/FileKind.hpp>
#include "Umask.hpp"

namespace refpage {

namespace {

constexpr std::string_view markerText =
    "This folder was written by refpage. The next run of refpage that writes here replaces it whole.\n";

FileError fileError(std::filesystem::path const& path, std::string_view what, int code) {
    return FileError(fmt::format("{}: {}: {}", refpage::quoted(path.string()), what, systemReason(code)));
}

/// True when the folder open as `folder` holds the marker as a regular file.
bool holdsMarker(int folder) noexcept {
    struct stat status {};
    std::string const name(outputMarkerName);
    return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode);
}

/// True when the folder open as `folder` has no entries; false also when it cannot be listed.
bool isEmptyFolder(int folder) noexcept {
    int const copy = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) return false;
    std::unique_ptr<DIR, int (*)(DIR*)> const listing(::fdopendir(copy), &::closedir);
    if (!listing) {
        ::close(copy);
        return false;
    }
    while (dirent const* entry = ::readdir(listing.get())) {
        std::string_view const name = entry->d_name;
        if (name != "." && name != "..") return false;
    }
    return true;
}

/// What stands at the target: nothing, or a folder that may be replaced (with its mode).
struct TargetState {
    bool exists = false;
    mode_t mode = 0;
};

/// Throws FileError unless `name` in `parent` is absent or a folder, not a symlink, that is
/// empty or holds the marker. `shown` is the target as messages name it.
TargetState inspectTarget(int parent, std::string const& name, std::filesystem::path const& shown) {
    struct stat status {};
    if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == ENOENT) return {};
        throw fileError(shown, "cannot look at it", errno);
    }
    if (!S_ISDIR(status.st_mode))
        throw FileError(fmt::format("{}: is {}, not a folder that may be replaced; nothing written",
                                    refpage::quoted(shown.string()), articledFileKind(status.st_mode)));
    FileDescriptor const folder(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder) throw fileError(shown, "cannot read the folder", errno);
    if (!holdsMarker(folder.get()) && !isEmptyFolder(folder.get()))
        throw FileError(fmt::format(
            "{}: is a folder that refpage did not write (it holds no {}) and it is not empty; refusing to replace "
            "it: name a new or empty folder",
            refpage::quoted(shown.string()), outputMarkerName));
    return {true, static_cast<mode_t>(status.st_mode & 07777)};
}

/// ".<name>.refpage-XXXXXX" with six random letters and digits; the name cut to 100 bytes.
std::string stagingNameFor(std::string_view name) {
    static constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    thread_local std::mt19937_64 random{std::random_device{}()};
    std::string staging = fmt::format(".{}.refpage-", name.substr(0, 100));
    for (int i = 0; i < 6; ++i) staging += letters[random() % letters.size()];
    return staging;
}

/// Opens the folder `path` for the *at calls: for reading where allowed (so it can be
/// synced), else as a bare path.
FileDescriptor openFolder(std::filesystem::path const& path) {
    FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder && errno == EACCES) folder = FileDescriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return folder;
}

}  // namespace

bool isSafeOutputPath(std::string_view path) noexcept {
    if (path.empty() || path.size() > maxOutputPathBytes || path.front() == '/') return false;
    if (path.find('\0') != std::string_view::npos) return false;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t const end = std::min(path.find('/', start), path.size());
        std::string_view const segment = path.substr(start, end - start);
        if (segment.empty() || segment == "." || segment == ".." || segment.size() > maxOutputSegmentBytes)
            return false;
        start = end + 1;
    }
    return true;
}

bool holdsOutputMarker(std::filesystem::path const& folder) noexcept {
    FileDescriptor const open(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return open && holdsMarker(open.get());
}

OutputFolder::OutputFolder(std::filesystem::path target) {
    std::string text = target.string();
    while (text.size() > 1 && text.back() == '/') text.pop_back();
    target_ = text;
    targetName_ = target_.filename().string();
    parentPath_ = target_.has_parent_path() ? target_.parent_path() : std::filesystem::path(".");
    if (targetName_.empty() || targetName_ == "." || targetName_ == "..")
        throw FileError(fmt::format("{}: name the output folder itself, not \".\", \"..\" or \"/\"",
                                    refpage::quoted(target.string())));
    parent_ = openFolder(parentPath_);
    if (!parent_ && errno == ENOENT) {  // "-o new/site": the folders it goes in are made, as mkdir -p does
        std::error_code made;
        std::filesystem::create_directories(parentPath_, made);
        parent_ = openFolder(parentPath_);
    }
    if (!parent_) throw fileError(target_, "cannot open the folder it goes in", errno);
    inspectTarget(parent_.get(), targetName_, target_);

    int error = 0;
    registration_ = TemporaryPath::create(TemporaryKind::tree, [&]() -> std::filesystem::path {
        for (int attempt = 0; attempt < 100; ++attempt) {
            std::string name = stagingNameFor(targetName_);
            if (::mkdirat(parent_.get(), name.c_str(), 0700) == 0) {
                stagingName_ = std::move(name);
                return parentPath_ / stagingName_;
            }
            error = errno;
            if (error != EEXIST) break;
        }
        return {};
    });
    if (stagingName_.empty()) throw fileError(target_, "cannot make a new folder beside it", error);
    root_ = FileDescriptor(
        ::openat(parent_.get(), stagingName_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!root_) {
        error = errno;
        beneath::removeTree(parent_.get(), stagingName_);
        stagingName_.clear();
        throw fileError(target_, "cannot open the new folder beside it", error);
    }
    if (!writeFile(outputMarkerName, markerText)) throw FileError(failure());
}

OutputFolder::~OutputFolder() {
    root_.reset();
    if (!committed_ && !stagingName_.empty()) beneath::removeTree(parent_.get(), stagingName_);
}

void OutputFolder::fail(std::string_view path, std::string_view what, int code) noexcept {
    try {
        std::lock_guard const lock(failureMutex_);
        if (!failure_.empty()) return;
        std::string const shown = (target_ / std::filesystem::path(path)).string();
        failure_ = code == 0 ? fmt::format("{}: {}", refpage::quoted(shown), what)
                             : fmt::format("{}: {}: {}", refpage::quoted(shown), what, systemReason(code));
    } catch (...) {
        // Out of memory for the message: failed() still says so.
    }
    failed_.store(true, std::memory_order_release);
}

std::string OutputFolder::failure() const {
    std::lock_guard const lock(failureMutex_);
    return failure_;
}

bool OutputFolder::ensureFolders(std::string_view folder) noexcept {
    try {
        {
            std::shared_lock const lock(foldersMutex_);
            if (folders_.contains(std::string(folder))) return true;
        }
        std::unique_lock const lock(foldersMutex_);
        for (std::size_t end = 0; end != std::string_view::npos;) {
            end = folder.find('/', end + 1);
            std::string prefix(folder.substr(0, end));
            if (folders_.contains(prefix)) continue;
            if (int const code = beneath::makeFolder(root_.get(), prefix, 0777); code != 0 && code != EEXIST) {
                fail(prefix, "cannot make the folder", code);
                return false;
            }
            folders_.insert(std::move(prefix));
        }
        return true;
    } catch (...) {
        fail(folder, "cannot make the folder", ENOMEM);
        return false;
    }
}

bool OutputFolder::makeFolder(std::string_view path) noexcept {
    if (failed() || registration_.interrupted()) return false;
    if (!isSafeOutputPath(path)) {
        fail(path, "not a safe relative path inside the folder; nothing written", 0);
        return false;
    }
    return ensureFolders(path);
}

std::optional<std::filesystem::path> OutputFolder::pathFor(std::string_view path) noexcept {
    if (failed() || registration_.interrupted()) return std::nullopt;
    if (!isSafeOutputPath(path)) {
        fail(path, "not a safe relative path inside the folder; nothing written", 0);
        return std::nullopt;
    }
    if (auto const slash = path.rfind('/'); slash != std::string_view::npos && !ensureFolders(path.substr(0, slash)))
        return std::nullopt;
    try {
        return staging() / std::filesystem::path(std::u8string(path.begin(), path.end()));
    } catch (...) {
        fail(path, "cannot write", ENOMEM);
        return std::nullopt;
    }
}

bool OutputFolder::writeFile(std::string_view path, std::string_view content) noexcept {
    if (failed() || registration_.interrupted()) return false;
    if (!isSafeOutputPath(path)) {
        fail(path, "not a safe relative path inside the folder; nothing written", 0);
        return false;
    }
    if (auto const slash = path.rfind('/'); slash != std::string_view::npos && !ensureFolders(path.substr(0, slash)))
        return false;
    FileDescriptor file(beneath::open(root_.get(), path, O_WRONLY | O_CREAT | O_EXCL, 0666));
    if (!file) {
        fail(path, errno == EEXIST ? "written twice, or something is in its way" : "cannot write", errno);
        return false;
    }
    while (!content.empty()) {
        ssize_t const count = ::write(file.get(), content.data(), content.size());
        if (count < 0) {
            if (errno == EINTR) continue;
            fail(path, "cannot write", errno);
            return false;
        }
        content.remove_prefix(static_cast<std::size_t>(count));
    }
    if (::close(file.release()) != 0) {
        fail(path, "cannot write", errno);
        return false;
    }
    return true;
}

std::string OutputFolder::commit() {
    if (failed()) throw FileError(failure());
    TargetState const state = inspectTarget(parent_.get(), targetName_, target_);
    mode_t const mode = state.exists ? state.mode : static_cast<mode_t>(0777 & ~currentUmask());
    if (::fchmod(root_.get(), mode) != 0) throw fileError(target_, "cannot give the new folder its mode", errno);
    if (::syncfs(root_.get()) != 0) throw fileError(target_, "cannot write", errno);

    int error = 0;
    std::string old;  // the name in the parent that holds the old tree after the swap
    bool const ran = registration_.whileNotInterrupted([&] {
        int const parent = parent_.get();
        char const* const staging = stagingName_.c_str();
        char const* const name = targetName_.c_str();
        if (!state.exists) {
            if (::renameat2(parent, staging, parent, name, RENAME_NOREPLACE) == 0) return;
            error = errno;
            if (error == EINVAL) error = ::renameat(parent, staging, parent, name) == 0 ? 0 : errno;
            return;
        }
        if (::renameat2(parent, staging, parent, name, RENAME_EXCHANGE) == 0) {
            old = stagingName_;
            return;
        }
        error = errno;
        if (error != EINVAL) return;
        // No exchange on this file system: the old tree steps aside, the new one takes its place.
        std::string aside = stagingNameFor(targetName_);
        if (::renameat(parent, name, parent, aside.c_str()) != 0) {
            error = errno;
            return;
        }
        if (::renameat(parent, staging, parent, name) != 0) {
            error = errno;
            ::renameat(parent, aside.c_str(), parent, name);
            return;
        }
        error = 0;
        old = std::move(aside);
    });
    if (!ran) throw FileError(fmt::format("{}: interrupted; left as it was", refpage::quoted(target_.string())));
    if (error != 0) throw fileError(target_, "cannot put the new folder in its place", error);
    committed_ = true;
    root_.reset();
    ::fsync(parent_.get());  // the rename itself; a bare-path descriptor cannot be synced, and that is all
    if (old.empty()) {
        registration_.forget();
        return {};
    }
    int const removed = beneath::removeTree(parent_.get(), old);
    registration_.forget();
    if (removed == 0) return {};
    return fmt::format("{}: the old output could not be removed: {}", refpage::quoted((parentPath_ / old).string()),
                       systemReason(removed));
}

}  // namespace refpage
