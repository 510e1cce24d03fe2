#include "Zlib.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace refpage::zlib {

namespace {

/// zlib's own reason for a stream's last failure, or its code's text.
std::string reasonOf(z_stream const& stream, int code) {
    if (stream.msg != nullptr) return stream.msg;
    char const* const text = zError(code);
    return text != nullptr ? text : fmt::format("zlib error {}", code);
}

/// Ends a deflate stream once the stream was initialised.
struct DeflateEnd {
    void operator()(z_stream* stream) const noexcept { deflateEnd(stream); }
};

constexpr std::size_t largestPass = std::numeric_limits<uInt>::max();

}  // namespace

std::string compress(std::string_view data, int level) {
    z_stream stream{};
    if (int const code = deflateInit(&stream, level); code != Z_OK)
        throw ZlibError(fmt::format("cannot start compressing: {}", reasonOf(stream, code)));
    std::unique_ptr<z_stream, DeflateEnd> const owner(&stream);
    std::string out;
    out.resize(deflateBound(&stream, static_cast<uLong>(std::min<std::size_t>(data.size(), largestPass))) + 64);
    std::size_t in = 0;
    std::size_t written = 0;
    for (;;) {
        std::size_t const pass = std::min(data.size() - in, largestPass);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data() + in));
        stream.avail_in = static_cast<uInt>(pass);
        bool const last = in + pass == data.size();
        if (written == out.size()) out.resize(out.size() * 2);
        stream.next_out = reinterpret_cast<Bytef*>(out.data() + written);
        stream.avail_out = static_cast<uInt>(std::min(out.size() - written, largestPass));
        std::size_t const room = stream.avail_out;
        int const code = ::deflate(&stream, last ? Z_FINISH : Z_NO_FLUSH);
        if (code == Z_STREAM_ERROR) throw ZlibError(fmt::format("cannot compress: {}", reasonOf(stream, code)));
        in += pass - stream.avail_in;
        written += room - stream.avail_out;
        if (code == Z_STREAM_END) break;
    }
    out.resize(written);
    return out;
}

Inflater::Inflater() {
    if (int const code = inflateInit(&stream_); code != Z_OK)
        throw ZlibError(fmt::format("cannot start inflating: {}", reasonOf(stream_, code)));
}

Inflater::~Inflater() {
    inflateEnd(&stream_);
}

Inflater::Outcome Inflater::inflate(std::string_view input, Sink const& sink, std::size_t pieceSize) {
    std::vector<char> piece(std::clamp<std::size_t>(pieceSize, 1, largestPass));
    std::size_t in = 0;
    for (;;) {
        std::size_t const pass = std::min(input.size() - in, largestPass);
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data() + in));
        stream_.avail_in = static_cast<uInt>(pass);
        stream_.next_out = reinterpret_cast<Bytef*>(piece.data());
        stream_.avail_out = static_cast<uInt>(piece.size());
        int const code = ::inflate(&stream_, Z_NO_FLUSH);
        std::size_t const taken = pass - stream_.avail_in;
        in += taken;
        std::size_t const produced = piece.size() - stream_.avail_out;
        if (code == Z_MEM_ERROR) throw ZlibError("out of memory while inflating");
        if (code == Z_NEED_DICT) return {Outcome::Kind::Broken, in, "the stream asks for a preset dictionary"};
        if (code == Z_DATA_ERROR || code == Z_STREAM_ERROR) return {Outcome::Kind::Broken, in, reasonOf(stream_, code)};
        if (produced != 0 && !sink({piece.data(), produced})) return {Outcome::Kind::Stopped, in, {}};
        if (code == Z_STREAM_END) return {Outcome::Kind::Complete, in, {}};
        // Without progress (Z_BUF_ERROR), the input is used up inside the stream.
        if (taken == 0 && produced == 0) return {Outcome::Kind::Truncated, in, {}};
    }
}

}  // namespace refpage::zlib
