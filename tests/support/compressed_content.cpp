#include "support/compressed_content.h"

#include <boost/iostreams/device/back_inserter.hpp>
#include <boost/iostreams/filter/gzip.hpp>
#include <boost/iostreams/filter/zlib.hpp>
#include <boost/iostreams/filtering_stream.hpp>

#include <random>

namespace lanecfg_test {

namespace {

template <typename Compressor>
std::string compressedBy(const Compressor& compressor, const std::string& content) {
    std::string result;
    {
        boost::iostreams::filtering_ostream stream;
        stream.push(compressor);
        stream.push(boost::iostreams::back_inserter(result));
        stream << content;
    }
    return result;
}

}  // namespace

std::string gzipped(const std::string& content) {
    return compressedBy(boost::iostreams::gzip_compressor(), content);
}

std::string zlibCompressed(const std::string& content, int level, int windowBits) {
    return compressedBy(boost::iostreams::zlib_compressor(boost::iostreams::zlib_params(
                            level, boost::iostreams::zlib::deflated, windowBits)),
                        content);
}

std::string incompressible(std::size_t size, unsigned seed) {
    std::mt19937 generator(seed);
    std::uniform_int_distribution<int> byte(0, 255);
    std::string result(size, '\0');
    for (char& character : result) {
        character = static_cast<char>(byte(generator));
    }
    return result;
}

}  // namespace lanecfg_test
