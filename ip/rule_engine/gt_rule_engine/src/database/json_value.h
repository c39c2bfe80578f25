#pragma once

#include <boost/property_tree/exceptions.hpp>
#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {

/// A JSON value as the property tree's reader builds it, without the tree's index of keys: that
/// alone is half the work of reading a register database. The names that the reader asks for are
/// those of its own tree.
class json_value {
  public:
    using key_type = std::string;
    using data_type = std::string;
    using value_type = std::pair<std::string, json_value>;

    /// Text of a value that is no array and no object.
    std::string& data() { return data_; }
    const std::string& data() const { return data_; }

    /// Members of an object, elements of an array under empty keys, in the order of the text.
    std::vector<value_type>::const_iterator begin() const { return members_.begin(); }
    std::vector<value_type>::const_iterator end() const { return members_.end(); }
    std::size_t size() const { return members_.size(); }

    void push_back(value_type member) { members_.push_back(std::move(member)); }
    value_type& back() { return members_.back(); }
    void swap(json_value& other) noexcept {
        data_.swap(other.data_);
        members_.swap(other.members_);
    }

    /// The first member of that key; throws boost::property_tree::ptree_bad_path without one.
    const json_value& get_child(const std::string& key) const {
        const auto found = std::find_if(
            begin(), end(), [&key](const value_type& member) { return member.first == key; });
        if (found == end()) {
            throw boost::property_tree::ptree_bad_path("No such node",
                                                       boost::property_tree::ptree::path_type(key));
        }
        return found->second;
    }

    /// The text as the translator's type; throws boost::property_tree::ptree_bad_data when it does
    /// not convert.
    template <class T, class Translator>
    T get_value(const Translator& translator) const {
        if (const boost::optional<T> converted = translator.get_value(data_)) {
            return *converted;
        }
        throw boost::property_tree::ptree_bad_data("conversion of data failed", data_);
    }

  private:
    std::string data_;
    std::vector<value_type> members_;
};

}  // namespace sable_lanecfg
