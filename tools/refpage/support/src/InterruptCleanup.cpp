#include <pthread.h>
#include <signal.h>

#include <refpage/support/InterruptCleanup.hpp>
#include <refpage/support/TemporaryPaths.hpp>
#include <system_error>
#include <thread>

namespace refpage {

namespace {

[[noreturn]] void endBySignal(int signal) {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
    sigset_t only;
    ::sigemptyset(&only);
    ::sigaddset(&only, signal);
    ::raise(signal);  // pending until unblocked below; this thread is the only one to take it
    ::pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    ::_exit(128 + signal);  // not reached: the default action of these signals ends the process
}

}  // namespace

void installInterruptCleanup() {
    sigset_t handled;
    ::sigemptyset(&handled);
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction current {};
        if (::sigaction(signal, nullptr, &current) == 0 && current.sa_handler != SIG_IGN) ::sigaddset(&handled, signal);
    }
    sigset_t previous;
    ::pthread_sigmask(SIG_BLOCK, &handled, &previous);
    try {
        std::thread([handled] {
            int signal = 0;
            while (::sigwait(&handled, &signal) != 0) {
            }
            removeTemporaryPaths();
            endBySignal(signal);
        }).detach();
    } catch (std::system_error const&) {
        ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    }
}

}  // namespace refpage
