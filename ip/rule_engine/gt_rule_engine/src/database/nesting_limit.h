#pragma once

#include <boost/iostreams/concepts.hpp>
#include <boost/iostreams/operations.hpp>

#include <ios>
#include <stdexcept>

namespace sable_lanecfg {

/// Input filter that lets JSON text through unchanged and throws std::runtime_error when arrays
/// and objects nest too deep. The property tree's reader and destructor recurse once a level, so
/// without it a small hostile file could exhaust the stack.
///
/// Counting brackets outside of strings is exact up to the first syntax error, where the reader
/// stops anyway, and costs a few percent of the reading: no second pass, no copy of the text.
class nesting_limit : public boost::iostreams::multichar_input_filter {
  public:
    /// No file of ours nests deeper than eight levels.
    static constexpr int deepest = 256;

    template <class Source>
    std::streamsize read(Source& source, char* text, std::streamsize size) {
        const std::streamsize count = boost::iostreams::read(source, text, size);
        for (std::streamsize i = 0; i < count; ++i) {
            follow(text[i]);
        }
        return count;
    }

  private:
    enum class place { outsideString, inString, afterBackslash };

    void follow(char character) {
        switch (where_) {
            case place::outsideString:
                followOutsideString(character);
                break;
            case place::inString:
                if (character == '"') {
                    where_ = place::outsideString;
                } else if (character == '\\') {
                    where_ = place::afterBackslash;
                }
                break;
            case place::afterBackslash:
                where_ = place::inString;
                break;
        }
    }

    void followOutsideString(char character) {
        switch (character) {
            case '"':
                where_ = place::inString;
                break;
            case '[':
            case '{':
                if (++depth_ > deepest) {
                    throw std::runtime_error("JSON text nests too deep");
                }
                break;
            case ']':
            case '}':
                --depth_;
                break;
            default:
                break;
        }
    }

    place where_ = place::outsideString;
    int depth_ = 0;
};

}  // namespace sable_lanecfg
