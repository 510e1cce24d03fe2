#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Escape.hpp>
#include <system_error>

namespace refpage {

namespace {

/// What a file that is not a regular file is, for messages.
char const* kindOf(mode_t mode) {
    if (S_ISDIR(mode)) return "a folder";
    if (S_ISLNK(mode)) return "a symbolic link";
    if (S_ISFIFO(mode)) return "a FIFO";
    if (S_ISSOCK(mode)) return "a socket";
    if (S_ISCHR(mode)) return "a character device";
    if (S_ISBLK(mode)) return "a block device";
    return "not a regular file";
}

/// The mode a new file gets from the umask. The umask can only be read by setting it, so
/// it is read once, before any thread could be making files.
mode_t newFileMode() {
    static mode_t const mode = [] {
        mode_t const mask = ::umask(0);
        ::umask(mask);
        return static_cast<mode_t>(0666 & ~mask);
    }();
    return mode;
}

FileError failure(std::filesystem::path const& path, std::string_view what, int code) {
    return FileError(fmt::format("{}: {}: {}", refpage::quoted(path.string()), what, systemReason(code)));
}

}  // namespace

std::string systemReason(int code) {
    return std::generic_category().message(code);
}

AtomicFile::AtomicFile(std::filesystem::path destination) : destination_(std::move(destination)) {
    newFileMode();
    struct stat existing {};
    if (::lstat(destination_.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode))
        throw FileError(fmt::format("{}: is {}, not a file that may be replaced; nothing written",
                                    refpage::quoted(destination_.string()), kindOf(existing.st_mode)));
    std::string pattern = destination_.string() + ".tmp-XXXXXX";
    fd_ = ::mkostemp(pattern.data(), O_CLOEXEC);
    if (fd_ < 0) throw failure(destination_, "cannot create a file beside it", errno);
    temporary_ = pattern;
}

AtomicFile::~AtomicFile() {
    if (fd_ >= 0) ::close(fd_);
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void AtomicFile::write(std::string_view text) {
    while (!text.empty()) {
        ssize_t const count = ::write(fd_, text.data(), text.size());
        if (count < 0) {
            if (errno == EINTR) continue;
            throw failure(destination_, "cannot write", errno);
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void AtomicFile::commit() {
    struct stat existing {};
    mode_t const mode = ::stat(destination_.c_str(), &existing) == 0 ? existing.st_mode & 07777 : newFileMode();
    if (::fchmod(fd_, mode) != 0 || ::fsync(fd_) != 0) throw failure(destination_, "cannot write", errno);
    int const fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) throw failure(destination_, "cannot write", errno);
    if (::rename(temporary_.c_str(), destination_.c_str()) != 0) throw failure(destination_, "cannot replace it", errno);
    temporary_.clear();
}

bool replaceFile(std::filesystem::path const& file, std::string_view text, std::string& error) {
    try {
        AtomicFile out(file);
        out.write(text);
        out.commit();
        return true;
    } catch (FileError const& e) {
        error = e.what();
        return false;
    }
}

}  // namespace refpage
