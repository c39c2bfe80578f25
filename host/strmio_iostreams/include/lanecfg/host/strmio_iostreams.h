#pragma once

#include <boost/iostreams/categories.hpp>
#include <boost/iostreams/filtering_stream.hpp>

#include <ios>
#include <memory>
#include <string>

/// The host's input streams. A delivered file is read so:
///
///     strmio::iostreams::filtering_stream<boost::iostreams::input> stream;
///     stream.push(strmio::iostreams::xp_autodetect(path));
///     boost::property_tree::read_json(stream, tree);
namespace strmio::iostreams {

/// Source that opens a file in binary mode, recognises by its first bytes how it is stored, and
/// gives the plain content. Known forms are plain, gzip and zlib. The file need not be seekable.
/// Copies share one open file and one position in it.
class xp_autodetect {
  public:
    using char_type = char;
    using category = boost::iostreams::source_tag;

    /// Throws a std::exception when the file can't be opened or its first bytes can't be read, as
    /// with a missing file or a directory.
    explicit xp_autodetect(const std::string& path);

    /// Reads at most `size` characters of the plain content and gives their number, or -1 at its
    /// end. Throws a std::exception when the file can't be read, or when compressed content is
    /// damaged or ends early.
    std::streamsize read(char* target, std::streamsize size);

  private:
    class Content;
    std::shared_ptr<Content> content_;
};

/// Boost's filtering stream, with one difference: once its chain is complete, an exception out of
/// a filter or source reaches the reader instead of ending the content silently.
template <typename Mode>
class filtering_stream : public boost::iostreams::filtering_stream<Mode> {
  public:
    template <typename FilterOrDevice>
    void push(const FilterOrDevice& filterOrDevice) {
        boost::iostreams::filtering_stream<Mode>::push(filterOrDevice);
        // Before this the stream has no buffer and counts as bad.
        if (this->is_complete()) {
            this->exceptions(std::ios_base::badbit);
        }
    }
};

}  // namespace strmio::iostreams
