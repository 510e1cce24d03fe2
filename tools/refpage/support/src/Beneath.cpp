#include <refpage/support/Beneath.hpp>

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <refpage/support/FileDescriptor.hpp>
#include <string>
#include <vector>

namespace refpage::beneath {

namespace {

std::atomic<bool> segmentWalkForced{false};

/// Whether openat2 with RESOLVE_BENEATH works here; asked once.
bool kernelResolvesBeneath() {
    static bool const works = [] {
        open_how how{};
        how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
        how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
        long const fd = ::syscall(SYS_openat2, AT_FDCWD, ".", &how, sizeof how);
        if (fd < 0) return false;
        ::close(static_cast<int>(fd));
        return true;
    }();
    return works;
}

/// The same as open(), one segment at a time with openat and O_NOFOLLOW.
int openBySegments(int root, std::string const& path, int flags, mode_t mode) {
    if (!path.empty() && path.front() == '/') {
        errno = EXDEV;
        return -1;
    }
    FileDescriptor folder;
    int at = root;
    std::size_t start = 0;
    for (std::size_t slash = path.find('/'); slash != std::string::npos; slash = path.find('/', start)) {
        std::string const segment = path.substr(start, slash - start);
        start = slash + 1;
        if (segment.empty() || segment == ".") continue;
        if (segment == "..") {
            errno = EXDEV;
            return -1;
        }
        int const next = ::openat(at, segment.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (next < 0) return -1;
        folder = FileDescriptor(next);
        at = next;
    }
    std::string last = path.substr(start);
    if (last == "..") {
        errno = EXDEV;
        return -1;
    }
    if (last.empty()) last = ".";
    return ::openat(at, last.c_str(), flags | O_NOFOLLOW | O_CLOEXEC, mode);
}

/// `path` split at its last '/': the folder ("" for none) and the name.
std::pair<std::string_view, std::string_view> splitLast(std::string_view path) {
    auto const slash = path.rfind('/');
    if (slash == std::string_view::npos) return {std::string_view(), path};
    return {path.substr(0, slash), path.substr(slash + 1)};
}

}  // namespace

void forceSegmentWalk(bool force) noexcept {
    segmentWalkForced = force;
}

int open(int root, std::string_view path, int flags, mode_t mode) {
    std::string const name(path);
    if (!segmentWalkForced && kernelResolvesBeneath()) {
        open_how how{};
        how.flags = static_cast<std::uint64_t>(flags | O_NOFOLLOW | O_CLOEXEC);
        how.mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? mode : 0;
        how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
        long fd = -1;
        for (int attempt = 0; attempt < 16; ++attempt) {  // EAGAIN: a rename elsewhere raced the lookup
            fd = ::syscall(SYS_openat2, root, name.empty() ? "." : name.c_str(), &how, sizeof how);
            if (fd >= 0 || errno != EAGAIN) break;
        }
        return static_cast<int>(fd);
    }
    return openBySegments(root, name, flags, mode);
}

int makeFolder(int root, std::string_view path, mode_t mode) {
    auto const [folder, name] = splitLast(path);
    FileDescriptor parent;
    if (!folder.empty()) {
        parent = FileDescriptor(open(root, folder, O_PATH | O_DIRECTORY));
        if (!parent) return errno;
    }
    std::string const leaf(name);
    if (leaf.empty() || leaf == "." || leaf == "..") return EINVAL;
    return ::mkdirat(parent ? parent.get() : root, leaf.c_str(), mode) == 0 ? 0 : errno;
}

int removeTree(int parent, std::string_view name) {
    std::string const top(name);
    struct stat status {};
    if (::fstatat(parent, top.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT ? 0 : errno;
    if (!S_ISDIR(status.st_mode)) return ::unlinkat(parent, top.c_str(), 0) == 0 || errno == ENOENT ? 0 : errno;

    constexpr int maxEmptyings = 8;
    struct Pending {
        std::string path;    ///< relative to `parent`
        bool emptied;        ///< its entries were removed or queued; next comes the folder itself
        int emptyings;       ///< times it was emptied
    };
    std::vector<Pending> stack{{top, false, 0}};
    while (!stack.empty()) {
        if (!stack.back().emptied) {
            stack.back().emptied = true;
            ++stack.back().emptyings;
            std::string const folder = stack.back().path;
            FileDescriptor fd(open(parent, folder, O_RDONLY | O_DIRECTORY));
            if (!fd) {
                if (errno == ENOENT) {
                    stack.pop_back();
                    continue;
                }
                return errno;
            }
            std::unique_ptr<DIR, int (*)(DIR*)> const listing(::fdopendir(fd.get()), &::closedir);
            if (!listing) return errno;
            fd.release();  // owned by the listing now
            std::vector<std::string> subfolders;
            int const at = ::dirfd(listing.get());
            while (dirent const* entry = ::readdir(listing.get())) {
                std::string_view const child = entry->d_name;
                if (child == "." || child == "..") continue;
                bool folderEntry = entry->d_type == DT_DIR;
                if (entry->d_type == DT_UNKNOWN) {
                    struct stat childStatus {};
                    folderEntry = ::fstatat(at, entry->d_name, &childStatus, AT_SYMLINK_NOFOLLOW) == 0 &&
                                  S_ISDIR(childStatus.st_mode);
                }
                if (!folderEntry && ::unlinkat(at, entry->d_name, 0) != 0 && errno != ENOENT) {
                    if (errno != EISDIR) return errno;
                    folderEntry = true;  // became a folder since it was listed
                }
                if (folderEntry) subfolders.push_back(folder + "/" + entry->d_name);
            }
            for (auto& subfolder : subfolders) stack.push_back({std::move(subfolder), false, 0});
            continue;
        }
        Pending const done = std::move(stack.back());
        stack.pop_back();
        auto const [folder, leaf] = splitLast(done.path);
        FileDescriptor holder;
        if (!folder.empty()) {
            holder = FileDescriptor(open(parent, folder, O_PATH | O_DIRECTORY));
            if (!holder) return errno == ENOENT ? 0 : errno;
        }
        std::string const leafName(leaf);
        if (::unlinkat(holder ? holder.get() : parent, leafName.c_str(), AT_REMOVEDIR) == 0 || errno == ENOENT)
            continue;
        if ((errno == ENOTEMPTY || errno == EEXIST) && done.emptyings < maxEmptyings) {
            stack.push_back({done.path, false, done.emptyings});
            continue;
        }
        return errno;
    }
    return 0;
}

}  // namespace refpage::beneath
