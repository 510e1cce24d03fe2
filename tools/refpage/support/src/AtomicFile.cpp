#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Escape.hpp>
#include <system_error>

#include <refpage/support/FileKind.hpp>
#include "Umask.hpp"

namespace refpage {

namespace {

/// The mode a new file gets from the umask.
mode_t newFileMode() {
    return static_cast<mode_t>(0666 & ~currentUmask());
}

}  // namespace

void requireReplaceableFile(std::filesystem::path const& destination) {
    struct stat existing {};
    if (::lstat(destination.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode))
        throw FileError(fmt::format("{}: is {}, not a file that may be replaced; nothing written",
                                    refpage::quoted(destination.string()), articledFileKind(existing.st_mode)));
}

namespace {

FileError failure(std::filesystem::path const& path, std::string_view what, int code) {
    return FileError(fmt::format("{}: {}: {}", refpage::quoted(path.string()), what, systemReason(code)));
}

}  // namespace

std::string systemReason(int code) {
    return std::generic_category().message(code);
}

AtomicFile::AtomicFile(std::filesystem::path destination) : destination_(std::move(destination)) {
    requireReplaceableFile(destination_);
    int error = 0;
    registration_ = TemporaryPath::create(TemporaryKind::file, [&]() -> std::filesystem::path {
        std::string pattern = destination_.string() + ".tmp-XXXXXX";
        fd_ = ::mkostemp(pattern.data(), O_CLOEXEC);
        error = errno;
        if (fd_ >= 0) temporary_ = pattern;
        return temporary_;
    });
    if (fd_ < 0) throw failure(destination_, "cannot create a file beside it", error);
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
    requireReplaceableFile(destination_);
    struct stat existing {};
    mode_t const mode = ::stat(destination_.c_str(), &existing) == 0 ? existing.st_mode & 07777 : newFileMode();
    if (::fchmod(fd_, mode) != 0 || ::fsync(fd_) != 0) throw failure(destination_, "cannot write", errno);
    int const fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) throw failure(destination_, "cannot write", errno);
    int error = 0;
    bool const ran = registration_.whileNotInterrupted([&] {
        error = ::rename(temporary_.c_str(), destination_.c_str()) == 0 ? 0 : errno;
    });
    if (!ran) throw FileError(fmt::format("{}: interrupted; left as it was", refpage::quoted(destination_.string())));
    if (error != 0) throw failure(destination_, "cannot replace it", error);
    temporary_.clear();
    registration_.forget();
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
