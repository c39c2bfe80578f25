#pragma once

#include <lanecfg/export.h>

#include <boost/any.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// A dynamic value in the manner of JSON: null, int, unsigned int, double, string, bool, a Sequence
/// of values or a Map from names to values. Copies are deep.
///
/// It never throws over a wrong type: a bad conversion or a bad operator sends an error to the
/// host's message manager and yields a default. A null `const char*` counts as the empty string.
class LANECFG_EXPORT rule_engine_any {
  public:
    rule_engine_any();
    rule_engine_any(int value);
    rule_engine_any(unsigned int value);
    rule_engine_any(double value);
    rule_engine_any(const std::string& value);
    rule_engine_any(const char* value);
    rule_engine_any(bool value);
    rule_engine_any(const rule_engine_any& other) = default;
    ~rule_engine_any() = default;

    /// Assignments give up the old value and its type. The new one may be a part of the old one.
    rule_engine_any& operator=(int value);
    rule_engine_any& operator=(unsigned int value);
    rule_engine_any& operator=(double value);
    rule_engine_any& operator=(const std::string& value);
    rule_engine_any& operator=(const char* value);
    rule_engine_any& operator=(bool value);
    rule_engine_any& operator=(const rule_engine_any& other);

    bool isNull() const;
    /// "nullptr", "uint", "int", "std::string", "bool", "Sequence", "Map" or "double".
    std::string type() const;
    /// The scalar; an int of 0 for null, a Sequence and a Map.
    const boost::any& get_data() const;
    /// Makes the value null.
    void clear();
    /// Elements of a Sequence, members of a Map, characters of a string, 0 for null, else 1.
    unsigned int size() const;

    /// The elements. On a value that is no Sequence a failed conversion is reported, and what is
    /// put into the list does not become part of the value.
    std::vector<rule_engine_any>& seq();
    const std::vector<rule_engine_any>& get_seq() const;
    /// The members, in the same way.
    std::map<std::string, rule_engine_any>& map();
    const std::map<std::string, rule_engine_any>& get_map() const;

    /// The element; the value itself when it is no Sequence or has no such element.
    const rule_engine_any& operator[](unsigned int index) const;
    /// The element, after the value was made a Sequence (from nothing, if it was none) with nulls
    /// up to there.
    rule_engine_any& operator[](unsigned int index);
    /// The member, made null if missing, after the value was made a Map (from nothing, if it was
    /// none).
    rule_engine_any& operator[](const std::string& key);
    /// True for a Map with that key.
    bool exists(const std::string& key) const;
    /// Removes the key from a Map.
    void erase(const std::string& key);

    /// Appends to the Sequence that the value is, or is made from nothing.
    rule_engine_any& operator<<(const rule_engine_any& element);
    /// Appends unless an equal element is there, and says whether it did. Null and unsigned
    /// elements equal nothing, so they are always appended.
    bool push_unique(const rule_engine_any& element);
    /// `push_unique` that gives the value.
    rule_engine_any& operator<<=(const rule_engine_any& element);

    /// Integers convert to each other by cast, strings are parsed as a whole, bool gives 0 or 1.
    /// Anything else, a double included, is reported and gives 0.
    int toInt() const;
    unsigned int toUInt() const;
    /// Integers by cast, strings parsed as a whole; anything else is reported and gives 0.
    double toDouble() const;
    /// Integers by being other than 0, strings by "true", "1", "false" and "0" in any case of
    /// letters, a Sequence of one element by that element; anything else is reported and gives
    /// false.
    bool toBool() const;
    /// Decimal text, up to 17 significant digits for a double; "1" or "0" for bool; `toJson(true)`
    /// for a Sequence and a Map; empty for null.
    std::string toStr() const;
    std::string toFullStr() const;
    /// A rendering for people: strings are quoted but not escaped and keys stand bare, so it is no
    /// valid JSON. `compact` renders without blanks and line breaks.
    std::string toJson(bool compact) const;
    /// `count` blanks, at most 128.
    static std::string ws(unsigned int count);

    /// One more or one less, for int and unsigned int (both wrap around) and double; nothing on
    /// other types. The postfix forms too give the value after the change.
    rule_engine_any& operator++();
    rule_engine_any& operator--();
    rule_engine_any operator++(int);
    rule_engine_any operator--(int);

    /// The sum, if the value has just the type of the number (integers wrap around), or the
    /// concatenation, if the value is a string; else the failure is reported and the result null.
    rule_engine_any operator+(int right) const;
    rule_engine_any operator+(unsigned int right) const;
    rule_engine_any operator+(double right) const;
    rule_engine_any operator+(const std::string& right) const;
    rule_engine_any operator+(const char* right) const;
    /// A string takes the other's text, a double its `toDouble`, an int its `toInt` and an
    /// unsigned int its `toUInt`; integers become a double beside a double. On other types the
    /// failure is reported and the result null.
    rule_engine_any operator+(const rule_engine_any& right) const;

    /// True when type and value are the same.
    bool operator==(int right) const;
    bool operator==(unsigned int right) const;
    bool operator==(double right) const;
    bool operator==(bool right) const;
    bool operator==(const std::string& right) const;
    bool operator==(const char* right) const;
    /// The same between values, elements and members compared one by one; but null and unsigned
    /// values equal nothing here, not even themselves.
    bool operator==(const rule_engine_any& right) const;

  private:
    enum class typeCode : std::uint32_t {
        null = 0,
        unsignedInteger = 1,
        integer = 2,
        string = 3,
        boolean = 4,
        sequence = 5,
        map = 6,
        floating = 7,
    };

    static const char* name(typeCode code);
    void swap(rule_engine_any& other) noexcept;
    void take(rule_engine_any value);
    void become(typeCode code);
    void append(rule_engine_any element);
    void step(int change);
    void reportConversion(typeCode target) const;
    template <class Integer>
    Integer toInteger(typeCode target) const;
    template <class Number>
    Number parsed(typeCode target) const;
    template <class Scalar>
    rule_engine_any sum(typeCode code, const Scalar& right) const;
    template <class Scalar>
    bool equals(typeCode code, const Scalar& right) const;
    std::string render(bool compact, unsigned int level) const;
    std::string renderMap(bool compact, unsigned int level) const;
    std::string renderSequence(bool compact, unsigned int level) const;

    boost::any data_;
    std::vector<rule_engine_any> sequence_;
    std::map<std::string, rule_engine_any> map_;
    typeCode code_ = typeCode::null;
};
