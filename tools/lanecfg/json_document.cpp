#include "json_document.h"

#include "database.h"
#include "errors.h"

#include <lanecfg/host/strmio_iostreams.h>

#include <boost/algorithm/string/erase.hpp>
#include <boost/algorithm/string/join.hpp>

#include <cstddef>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

/// The deepest nesting that the library reads as well.
constexpr std::size_t deepestNesting = 256;
/// Far more than the largest request needs (four channels of 256 rates in both directions hold a
/// quarter of it), and few enough for the memory of any machine.
constexpr std::size_t mostValues = 1'000'000;
/// A syntax error quotes what was read, which can be all of a large file.
constexpr std::size_t longestQuote = 200;

/// Builds the document from the parser's events. The elements of lists that are not wanted whole
/// are passed over with everything in them, but count for both limits, at which it throws.
class DocumentBuilder : public nlohmann::json_sax<nlohmann::json> {
  public:
    explicit DocumentBuilder(Lists lists) : lists_(lists) {}

    bool null() override { return add(nlohmann::json()); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override { return add(value); }
    bool number_float(number_float_t value, const string_t& /*text*/) override {
        return add(value);
    }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t& /*value*/) override { return true; }

    bool start_object(std::size_t /*elements*/) override { return open(nlohmann::json::object()); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t /*elements*/) override { return open(nlohmann::json::array()); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override {
        if (isKept()) {
            path_.back() = name;
            if (open_.back()->contains(name)) {
                document_.repeatedKeys.push_back(boost::algorithm::join(path_, "."));
            }
        }
        return true;
    }

    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override {
        std::string text = error.what();
        text.erase(0, text.find(' ') + 1);  // the parser's own identifier
        if (text.size() > longestQuote) {
            text = text.substr(0, longestQuote) + "...";
        }
        throw std::invalid_argument(text);
    }

    JsonDocument take() { return std::move(document_); }

  private:
    /// Whether values at this place become part of the document.
    bool isKept() const {
        return passedOver_ == 0 &&
               (open_.empty() || lists_ == Lists::whole || !open_.back()->is_array());
    }

    void count() {
        if (++values_ > mostValues) {
            throw std::length_error("it holds more than " + std::to_string(mostValues) +
                                    " values, far more than any request or database needs");
        }
    }

    bool add(nlohmann::json value) {
        count();
        if (isKept()) {
            place(std::move(value));
        } else {
            markElements();
        }
        return true;
    }

    /// Leaves in the list that is passed over that it has elements.
    void markElements() {
        if (open_.back()->empty()) {
            open_.back()->push_back(nullptr);
        }
    }

    nlohmann::json& place(nlohmann::json value) {
        if (open_.empty()) {
            return document_.root = std::move(value);
        }
        nlohmann::json& parent = *open_.back();
        if (parent.is_array()) {
            parent.push_back(std::move(value));
            return parent.back();
        }
        return parent[path_.back()] = std::move(value);
    }

    bool open(nlohmann::json container) {
        count();
        if (open_.size() + passedOver_ == deepestNesting) {
            throw std::length_error("it is nested deeper than " + std::to_string(deepestNesting) +
                                    " levels");
        }
        if (isKept()) {
            open_.push_back(&place(std::move(container)));
            path_.emplace_back();
        } else {
            markElements();
            ++passedOver_;
        }
        return true;
    }

    bool close() {
        if (passedOver_ > 0) {
            --passedOver_;
        } else {
            open_.pop_back();
            path_.pop_back();
        }
        return true;
    }

    Lists lists_;
    JsonDocument document_;
    std::vector<nlohmann::json*> open_;  ///< containers being read, outermost first
    std::vector<std::string> path_;      ///< key in each of them
    std::size_t passedOver_ = 0;         ///< open containers that are not kept
    std::size_t values_ = 0;
};

/// Without what the standard library adds to the text of every fault of a stream.
std::string reasonOf(const std::exception& error) {
    return boost::algorithm::erase_last_copy(std::string(error.what()), ": iostream error");
}

}  // namespace

JsonDocument readJsonDocument(const std::string& file, Lists lists) {
    requireRegularFileIfAny(file);
    try {
        strmio::iostreams::filtering_stream<boost::iostreams::input> stream;
        stream.push(strmio::iostreams::xp_autodetect(file));
        DocumentBuilder builder(lists);
        nlohmann::json::sax_parse(stream, &builder);
        return builder.take();
    } catch (const std::exception& error) {
        std::error_code ignored;
        const bool isThere = std::filesystem::exists(file, ignored);
        throw RequestError("Error in parsing the file " + file + ". Reason: " + reasonOf(error) +
                           "." + (isThere ? "" : " Check the path."));
    }
}

}  // namespace sable_lanecfg::tool
