// The process's umask, read without changing it. Internal to support.
#pragma once

#include <sys/types.h>

namespace refpage {

/// The umask as the kernel reports it (/proc/self/status); where that cannot be read, by
/// setting and restoring it once, the first time this is called. Current at each call
/// otherwise.
mode_t currentUmask() noexcept;

}  // namespace refpage
