// Interrupts end the process cleanly: SIGINT, SIGTERM and SIGHUP remove every
// registered temporary path (TemporaryPaths.hpp), then end the process with the
// signal's usual status (killed by that signal), as if it had not been caught.
#pragma once

namespace refpage {

/// Blocks SIGINT, SIGTERM and SIGHUP in the calling thread, and so in every thread it
/// starts later, and starts one thread that waits for them with sigwait; on one it removes
/// the registered temporary paths, then re-raises the signal at its default action.
/// Call first in main, before any other thread exists: a thread started earlier would
/// still take the signals itself. A signal ignored when the process started (nohup, a
/// background job of a non-interactive shell) stays ignored. Without a thread to wait (it
/// could not be started) the signals are unblocked again and act as before. Call once.
void installInterruptCleanup();

}  // namespace refpage
