#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <refpage/support/AssetFolder.hpp>
#include <refpage/support/AtomicFile.hpp>

#include <refpage/support/Beneath.hpp>

namespace refpage {

AssetFolder::AssetFolder(std::filesystem::path folder)
    : folder_(std::move(folder)), root_(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}

FileDescriptor AssetFolder::open(std::string_view path, std::size_t& size, std::string& why) const {
    if (!root_) {
        why = "the assets folder cannot be opened";
        return {};
    }
    FileDescriptor file(beneath::open(root_.get(), path, O_RDONLY | O_NONBLOCK));
    if (!file) {
        why = errno == ENOENT ? "no such file" : systemReason(errno);
        return {};
    }
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        why = "not a regular file";
        return {};
    }
    if (static_cast<std::size_t>(status.st_size) > maxFileBytes) {
        why = "larger than 64 MiB";
        return {};
    }
    size = static_cast<std::size_t>(status.st_size);
    return file;
}

std::optional<std::string> AssetFolder::read(std::string_view path, std::string& why) const {
    std::size_t size = 0;
    FileDescriptor const file = open(path, size, why);
    if (!file) return std::nullopt;
    std::string bytes(size, '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        ssize_t const count = ::read(file.get(), bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            why = systemReason(errno);
            return std::nullopt;
        }
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return bytes;
}

bool AssetFolder::holds(std::string_view path, std::string& why) const {
    std::size_t size = 0;
    return static_cast<bool>(open(path, size, why));
}

}  // namespace refpage
