#include <lanecfg/host/strmio_iostreams.h>

#include <boost/iostreams/device/file_descriptor.hpp>
#include <boost/iostreams/filter/gzip.hpp>
#include <boost/iostreams/filter/zlib.hpp>
#include <boost/iostreams/filtering_streambuf.hpp>
#include <boost/iostreams/stream_buffer.hpp>

#include <streambuf>

namespace strmio::iostreams {

namespace {

constexpr std::streamsize bufferSize = 65536;

bool isGzip(int first, int second) {
    return first == 0x1f && second == 0x8b;
}

/// A zlib header is method 8 in the low four bits, a window size of at most 7 in the high four,
/// and both bytes together a multiple of 31.
///
/// JSON text is never mistaken for it: what an object, an array, white space or a byte order mark
/// begins with ('{' 7b, '[' 5b, blank 20, tab 09, line feed 0a, carriage return 0d, ef, fe, ff) has
/// no 8 in its low four bits.
bool isZlib(int first, int second) {
    constexpr int deflate = 8;
    constexpr int largestWindow = 7;
    return second >= 0 && (first & 0x0f) == deflate && (first >> 4) <= largestWindow &&
           (first * 256 + second) % 31 == 0;
}

}  // namespace

/// The open file and, for a compressed one, the decompressor before it.
class xp_autodetect::Content {
  public:
    explicit Content(const std::string& path)
        : file_(boost::iostreams::file_descriptor_source(path,
                                                         std::ios_base::in | std::ios_base::binary),
                bufferSize) {
        // Looked at in the buffer, so that pipes can be read too.
        const int first = file_.sbumpc();
        if (first == std::streambuf::traits_type::eof()) {
            return;
        }
        const int second = file_.sgetc();
        file_.sungetc();
        if (isGzip(first, second)) {
            decompressBy(boost::iostreams::gzip_decompressor());
        } else if (isZlib(first, second)) {
            decompressBy(boost::iostreams::zlib_decompressor());
        }
    }

    std::streamsize read(char* target, std::streamsize size) {
        const std::streamsize count = plain_->sgetn(target, size);
        return count == 0 && size > 0 ? -1 : count;
    }

  private:
    template <typename Decompressor>
    void decompressBy(const Decompressor& decompressor) {
        decompressed_.push(decompressor, bufferSize);
        decompressed_.push(file_);
        plain_ = &decompressed_;
    }

    boost::iostreams::stream_buffer<boost::iostreams::file_descriptor_source> file_;
    boost::iostreams::filtering_streambuf<boost::iostreams::input> decompressed_;
    std::streambuf* plain_ = &file_;
};

xp_autodetect::xp_autodetect(const std::string& path) : content_(std::make_shared<Content>(path)) {}

std::streamsize xp_autodetect::read(char* target, std::streamsize size) {
    return content_->read(target, size);
}

}  // namespace strmio::iostreams
