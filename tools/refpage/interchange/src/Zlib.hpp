// zlib streams (RFC 1950) through Debian's zlib, owned: every z_stream is ended by
// its owner's destructor.
#pragma once

#include <zlib.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace refpage::zlib {

/// What zlib refused; the message says what was being done and zlib's reason.
class ZlibError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `data` as one complete zlib stream at `level` (0-9); the same data and level give the
/// same bytes with the same zlib. Throws ZlibError (out of memory only).
std::string compress(std::string_view data, int level);

/// Inflates one zlib stream, handing its output on in pieces of at most `pieceSize` bytes.
class Inflater {
public:
    /// Called with each piece in order; returns false to stop at once.
    using Sink = std::function<bool(std::string_view piece)>;

    Inflater();
    Inflater(Inflater const&) = delete;
    Inflater& operator=(Inflater const&) = delete;
    ~Inflater();

    struct Outcome {
        enum class Kind {
            Complete,   ///< the stream ended; `consumed` bytes of the input were its
            Truncated,  ///< the input ended inside the stream
            Broken,     ///< not a zlib stream, or a corrupt one; `reason` says zlib's words
            Stopped,    ///< the sink returned false
        } kind;
        std::size_t consumed = 0;  ///< input bytes taken
        std::string reason;        ///< for Broken
    };

    /// Inflates the stream at the start of `input`. Never holds more than one piece of output.
    /// Throws ZlibError when zlib runs out of memory.
    Outcome inflate(std::string_view input, Sink const& sink, std::size_t pieceSize = 65536);

private:
    z_stream stream_{};
};

}  // namespace refpage::zlib
