#include "Umask.hpp"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>

namespace refpage {

namespace {

/// The "Umask:" line of /proc/self/status (Linux 4.7 and later); -1 when absent.
long umaskFromProc() noexcept {
    std::FILE* const status = std::fopen("/proc/self/status", "re");
    if (status == nullptr) return -1;
    long mask = -1;
    char line[256];
    while (std::fgets(line, sizeof line, status) != nullptr)
        if (std::strncmp(line, "Umask:", 6) == 0) {
            unsigned value = 0;
            if (std::sscanf(line + 6, "%o", &value) == 1) mask = static_cast<long>(value & 0777);
            break;
        }
    std::fclose(status);
    return mask;
}

}  // namespace

mode_t currentUmask() noexcept {
    if (long const mask = umaskFromProc(); mask >= 0) return static_cast<mode_t>(mask);
    static mode_t const once = [] {
        mode_t const mask = ::umask(0);
        ::umask(mask);
        return mask;
    }();
    return once;
}

}  // namespace refpage
