#include "Output.hpp"

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <system_error>

namespace refpage {

bool finishOutput(int earlierFailure) {
    // Everything is written through stdio; std::cout is checked in case a library wrote there.
    int reason = earlierFailure;
    bool ok = std::fflush(stdout) == 0 && earlierFailure == 0;
    if (!ok && reason == 0) reason = errno;
    std::cout.flush();
    ok = ok && !std::cout.fail() && std::ferror(stdout) == 0;
    if (std::fclose(stdout) != 0 && ok) {
        ok = false;
        reason = errno;
    }
    if (ok) {
        std::cerr.flush();
        return std::fflush(stderr) == 0 && std::ferror(stderr) == 0 && !std::cerr.fail();
    }
    std::fprintf(stderr, "refpage: cannot write the output: %s\n",
                 reason != 0 ? std::generic_category().message(reason).c_str() : "write error");
    std::fflush(stderr);
    return false;
}

}  // namespace refpage
