// Output that cannot fail silently: standard streams checked at exit.
#pragma once

namespace refpage {

/// Flushes and closes standard output and flushes standard error. On a failed write
/// (now, or earlier with the system error `earlierFailure`) says so on stderr, when it
/// can, and returns false: the run must exit 1.
bool finishOutput(int earlierFailure = 0);

}  // namespace refpage
