#pragma once

#include <boost/optional.hpp>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/stream_translator.hpp>

#include <ios>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace sable_lanecfg {

/// Converts texts of a property tree, or of a json_value, exactly as the tree itself does, but with
/// one stream for all of them: a new one for each value costs more than parsing the whole file.
class tree_values {
  public:
    /// The text of a node as a T; throws boost::property_tree::ptree_bad_data when it is none.
    template <class T, class Tree>
    T value(const Tree& node) {
        if constexpr (std::is_same_v<T, std::string>) {
            return node.data();
        } else {
            return node.template get_value<T>(translator<T>{stream_});
        }
    }

    /// Replaces `list` by the elements of a JSON array. One that does not convert is `value`'s
    /// exception; those before it stay in the list.
    template <class T, class Tree>
    void list(const Tree& array, std::vector<T>& list) {
        list.clear();
        list.reserve(array.size());
        for (const auto& [key, element] : array) {
            list.push_back(value<T>(element));
        }
    }

  private:
    template <class T>
    struct translator {
        using internal_type = std::string;
        using external_type = T;

        boost::optional<T> get_value(const std::string& text) const {
            stream.clear();
            stream.unsetf(std::ios_base::boolalpha);  // reading a flag may have set it
            stream.str(text);
            T value{};
            boost::property_tree::customize_stream<char, std::char_traits<char>, T>::extract(stream,
                                                                                             value);
            if (stream.fail() || stream.get() != std::char_traits<char>::eof()) {
                return {};
            }
            return value;
        }

        std::istringstream& stream;
    };

    std::istringstream stream_;
};

}  // namespace sable_lanecfg
