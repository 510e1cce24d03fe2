#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <refpage/support/AtomicFile.hpp>
#include <system_error>

namespace refpage {

namespace {

std::string reason(int code) {
    return std::generic_category().message(code);
}

bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        ssize_t const count = ::write(fd, text.data(), text.size());
        if (count < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

bool replaceFile(std::filesystem::path const& file, std::string_view text, std::string& error) {
    std::string temporary = file.string() + ".XXXXXX";
    int const fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) {
        error = fmt::format("cannot create a file beside {}: {}", file.string(), reason(errno));
        return false;
    }
    // A file replaced keeps its permissions; a new one gets those any new file would get.
    struct stat existing {};
    mode_t mode = 0;
    if (::stat(file.c_str(), &existing) == 0) {
        mode = existing.st_mode & 07777;
    } else {
        mode_t const mask = ::umask(0);
        ::umask(mask);
        mode = 0666 & ~mask;
    }
    bool ok = ::fchmod(fd, mode) == 0 && writeAll(fd, text) && ::fsync(fd) == 0;
    int code = ok ? 0 : errno;
    if (::close(fd) != 0 && ok) {
        ok = false;
        code = errno;
    }
    if (ok && ::rename(temporary.c_str(), file.c_str()) != 0) {
        ok = false;
        code = errno;
    }
    if (!ok) {
        ::unlink(temporary.c_str());
        error = fmt::format("cannot write {}: {}", file.string(), reason(code));
    }
    return ok;
}

}  // namespace refpage
