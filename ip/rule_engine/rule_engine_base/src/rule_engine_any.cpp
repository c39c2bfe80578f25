#include <lanecfg/host/ToolMsgMgr.h>
#include <lanecfg/rule_engine_any.h>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/lexical_cast.hpp>
#include <boost/lexical_cast/try_lexical_convert.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

constexpr const char* messageSource = "ip/rule_engine/rule_engine_base/rule_engine_any";
/// Lines under which users know the messages; they stay when this file changes.
constexpr int conversionLine = 358;
constexpr int operatorLine = 367;

constexpr unsigned int longestIndentation = 128;
constexpr unsigned int indentation = 3;

void report(int line, const char* format, const std::vector<std::string>& arguments) {
    ToolMsgMgr::sendMessage(ToolMsgMgrInstance::createInstance::eval(
        static_cast<int>(arguments.size()), messageSource, line, "ip", ToolMsgSeverity::error,
        format, arguments));
}

void reportOperator(const char* operation, const std::string& left, const std::string& right) {
    report(operatorLine, "Bad operator %s from %s to %s",
           {operation, "rule_engine_any(" + left + ")", right});
}

std::string textOf(const char* text) {
    return text == nullptr ? std::string() : text;
}

template <class Scalar>
const Scalar& held(const boost::any& data) {
    return boost::any_cast<const Scalar&>(data);
}

/// Through unsigned, since a sum beyond the range of int is to wrap around.
int added(int left, int right) {
    return static_cast<int>(static_cast<unsigned int>(left) + static_cast<unsigned int>(right));
}

unsigned int added(unsigned int left, unsigned int right) {
    return left + right;
}

double added(double left, double right) {
    return left + right;
}

std::string added(const std::string& left, const std::string& right) {
    return left + right;
}

}  // namespace

rule_engine_any::rule_engine_any() : data_(0) {}

rule_engine_any::rule_engine_any(int value) : data_(value), code_(typeCode::integer) {}

rule_engine_any::rule_engine_any(unsigned int value)
    : data_(value), code_(typeCode::unsignedInteger) {}

rule_engine_any::rule_engine_any(double value) : data_(value), code_(typeCode::floating) {}

rule_engine_any::rule_engine_any(const std::string& value)
    : data_(value), code_(typeCode::string) {}

rule_engine_any::rule_engine_any(const char* value) : rule_engine_any(textOf(value)) {}

rule_engine_any::rule_engine_any(bool value) : data_(value), code_(typeCode::boolean) {}

rule_engine_any& rule_engine_any::operator=(int value) {
    take(value);
    return *this;
}

rule_engine_any& rule_engine_any::operator=(unsigned int value) {
    take(value);
    return *this;
}

rule_engine_any& rule_engine_any::operator=(double value) {
    take(value);
    return *this;
}

rule_engine_any& rule_engine_any::operator=(const std::string& value) {
    take(value);
    return *this;
}

rule_engine_any& rule_engine_any::operator=(const char* value) {
    take(value);
    return *this;
}

rule_engine_any& rule_engine_any::operator=(bool value) {
    take(value);
    return *this;
}

rule_engine_any& rule_engine_any::operator=(const rule_engine_any& other) {
    take(other);
    return *this;
}

void rule_engine_any::swap(rule_engine_any& other) noexcept {
    data_.swap(other.data_);
    sequence_.swap(other.sequence_);
    map_.swap(other.map_);
    std::swap(code_, other.code_);
}

/// The new value is complete before the old one goes, which may hold it.
void rule_engine_any::take(rule_engine_any value) {
    swap(value);
}

bool rule_engine_any::isNull() const {
    return code_ == typeCode::null;
}

std::string rule_engine_any::type() const {
    return name(code_);
}

const char* rule_engine_any::name(typeCode code) {
    switch (code) {
        case typeCode::null:
            return "nullptr";
        case typeCode::unsignedInteger:
            return "uint";
        case typeCode::integer:
            return "int";
        case typeCode::string:
            return "std::string";
        case typeCode::boolean:
            return "bool";
        case typeCode::sequence:
            return "Sequence";
        case typeCode::map:
            return "Map";
        case typeCode::floating:
            return "double";
    }
    return "UNKNOWN";
}

const boost::any& rule_engine_any::get_data() const {
    return data_;
}

void rule_engine_any::clear() {
    take(rule_engine_any());
}

/// Makes the value an empty Sequence or Map, unless it is one.
void rule_engine_any::become(typeCode code) {
    if (code_ != code) {
        clear();
        code_ = code;
    }
}

unsigned int rule_engine_any::size() const {
    switch (code_) {
        case typeCode::null:
            return 0;
        case typeCode::sequence:
            return static_cast<unsigned int>(sequence_.size());
        case typeCode::map:
            return static_cast<unsigned int>(map_.size());
        case typeCode::string:
            return static_cast<unsigned int>(held<std::string>(data_).size());
        default:
            return 1;
    }
}

std::vector<rule_engine_any>& rule_engine_any::seq() {
    if (code_ != typeCode::sequence) {
        reportConversion(typeCode::sequence);
    }
    return sequence_;
}

const std::vector<rule_engine_any>& rule_engine_any::get_seq() const {
    if (code_ != typeCode::sequence) {
        reportConversion(typeCode::sequence);
    }
    return sequence_;
}

std::map<std::string, rule_engine_any>& rule_engine_any::map() {
    if (code_ != typeCode::map) {
        reportConversion(typeCode::map);
    }
    return map_;
}

const std::map<std::string, rule_engine_any>& rule_engine_any::get_map() const {
    if (code_ != typeCode::map) {
        reportConversion(typeCode::map);
    }
    return map_;
}

const rule_engine_any& rule_engine_any::operator[](unsigned int index) const {
    return code_ == typeCode::sequence && index < sequence_.size() ? sequence_[index] : *this;
}

rule_engine_any& rule_engine_any::operator[](unsigned int index) {
    become(typeCode::sequence);
    if (index >= sequence_.size()) {
        sequence_.resize(std::size_t{index} + 1);
    }
    return sequence_[index];
}

rule_engine_any& rule_engine_any::operator[](const std::string& key) {
    become(typeCode::map);
    return map_[key];
}

bool rule_engine_any::exists(const std::string& key) const {
    return code_ == typeCode::map && map_.count(key) != 0;
}

void rule_engine_any::erase(const std::string& key) {
    if (code_ == typeCode::map) {
        map_.erase(key);
    }
}

/// By value, since the element may be a part of this value.
void rule_engine_any::append(rule_engine_any element) {
    become(typeCode::sequence);
    sequence_.emplace_back();
    sequence_.back().swap(element);
}

rule_engine_any& rule_engine_any::operator<<(const rule_engine_any& element) {
    append(element);
    return *this;
}

bool rule_engine_any::push_unique(const rule_engine_any& element) {
    if (code_ == typeCode::sequence &&
        std::find(sequence_.begin(), sequence_.end(), element) != sequence_.end()) {
        return false;
    }
    append(element);
    return true;
}

rule_engine_any& rule_engine_any::operator<<=(const rule_engine_any& element) {
    push_unique(element);
    return *this;
}

void rule_engine_any::reportConversion(typeCode target) const {
    report(conversionLine, "Bad conversion from %s to %s", {type(), name(target)});
}

template <class Number>
Number rule_engine_any::parsed(typeCode target) const {
    Number number = 0;
    if (!boost::conversion::try_lexical_convert(held<std::string>(data_), number)) {
        reportConversion(target);
        return 0;
    }
    return number;
}

template <class Integer>
Integer rule_engine_any::toInteger(typeCode target) const {
    switch (code_) {
        case typeCode::unsignedInteger:
            return static_cast<Integer>(held<unsigned int>(data_));
        case typeCode::integer:
            return static_cast<Integer>(held<int>(data_));
        case typeCode::string:
            return parsed<Integer>(target);
        case typeCode::boolean:
            return held<bool>(data_) ? 1 : 0;
        default:
            reportConversion(target);
            return 0;
    }
}

int rule_engine_any::toInt() const {
    return toInteger<int>(typeCode::integer);
}

unsigned int rule_engine_any::toUInt() const {
    return toInteger<unsigned int>(typeCode::unsignedInteger);
}

double rule_engine_any::toDouble() const {
    switch (code_) {
        case typeCode::unsignedInteger:
            return held<unsigned int>(data_);
        case typeCode::integer:
            return held<int>(data_);
        case typeCode::string:
            return parsed<double>(typeCode::floating);
        case typeCode::floating:
            return held<double>(data_);
        default:
            reportConversion(typeCode::floating);
            return 0.0;
    }
}

bool rule_engine_any::toBool() const {
    if (code_ == typeCode::boolean) {
        return held<bool>(data_);
    }
    if (code_ == typeCode::integer || code_ == typeCode::unsignedInteger) {
        return toInt() != 0;
    }
    if (code_ == typeCode::sequence && sequence_.size() == 1) {
        return sequence_.front().toBool();
    }
    if (code_ == typeCode::string) {
        const std::string text = boost::algorithm::to_lower_copy(held<std::string>(data_));
        if (text == "true" || text == "1") {
            return true;
        }
        if (text == "false" || text == "0") {
            return false;
        }
    }
    reportConversion(typeCode::boolean);
    return false;
}

std::string rule_engine_any::toStr() const {
    switch (code_) {
        case typeCode::unsignedInteger:
            return std::to_string(held<unsigned int>(data_));
        case typeCode::integer:
            return std::to_string(held<int>(data_));
        case typeCode::string:
            return held<std::string>(data_);
        case typeCode::boolean:
            return held<bool>(data_) ? "1" : "0";
        case typeCode::floating:
            return boost::lexical_cast<std::string>(held<double>(data_));
        case typeCode::sequence:
        case typeCode::map:
            return toJson(true);
        case typeCode::null:
            break;
    }
    return {};
}

std::string rule_engine_any::toFullStr() const {
    return toStr();
}

std::string rule_engine_any::toJson(bool compact) const {
    return render(compact, 0);
}

std::string rule_engine_any::render(bool compact, unsigned int level) const {
    switch (code_) {
        case typeCode::null:
            return name(code_);
        case typeCode::unsignedInteger:
        case typeCode::integer:
            return toStr();
        case typeCode::string:
            return '"' + held<std::string>(data_) + '"';
        case typeCode::boolean:
            return held<bool>(data_) ? "true" : "false";
        case typeCode::floating:
            return toFullStr();
        case typeCode::map:
            return renderMap(compact, level);
        case typeCode::sequence:
            return renderSequence(compact, level);
    }
    return "UNKNOWN";
}

std::string rule_engine_any::renderMap(bool compact, unsigned int level) const {
    const unsigned int memberLevel = level + indentation;
    const std::string memberStart = compact ? std::string() : ws(memberLevel);
    const std::string lineEnd = compact ? "" : "\n";
    std::string result = "{" + lineEnd;
    std::size_t left = map_.size();
    for (const auto& [key, member] : map_) {
        result += memberStart;
        result += key;
        result += compact ? ":" : ": ";
        result += member.render(compact, memberLevel);
        result += --left == 0 ? "" : ",";
        result += lineEnd;
    }
    return result + (compact ? std::string() : ws(level)) + "}";
}

/// Elements stand in one line, at the level of their Sequence.
std::string rule_engine_any::renderSequence(bool compact, unsigned int level) const {
    std::string result = "[";
    const char* separator = "";
    for (const rule_engine_any& element : sequence_) {
        result += separator;
        result += element.render(compact, level);
        separator = compact ? "," : ", ";
    }
    return result + "]";
}

std::string rule_engine_any::ws(unsigned int count) {
    return std::string(std::min(count, longestIndentation), ' ');
}

void rule_engine_any::step(int change) {
    switch (code_) {
        case typeCode::integer:
            data_ = added(held<int>(data_), change);
            break;
        case typeCode::unsignedInteger:
            data_ = added(held<unsigned int>(data_), static_cast<unsigned int>(change));
            break;
        case typeCode::floating:
            data_ = added(held<double>(data_), static_cast<double>(change));
            break;
        default:
            break;
    }
}

rule_engine_any& rule_engine_any::operator++() {
    step(1);
    return *this;
}

rule_engine_any& rule_engine_any::operator--() {
    step(-1);
    return *this;
}

// The postfix forms give the value after the change too: callers count on it.
rule_engine_any rule_engine_any::operator++(int) {
    return ++*this;
}

rule_engine_any rule_engine_any::operator--(int) {
    return --*this;
}

template <class Scalar>
rule_engine_any rule_engine_any::sum(typeCode code, const Scalar& right) const {
    if (code_ != code) {
        reportOperator("operator+", type(), name(code));
        return {};
    }
    return added(held<Scalar>(data_), right);
}

rule_engine_any rule_engine_any::operator+(int right) const {
    return sum(typeCode::integer, right);
}

rule_engine_any rule_engine_any::operator+(unsigned int right) const {
    return sum(typeCode::unsignedInteger, right);
}

rule_engine_any rule_engine_any::operator+(double right) const {
    return sum(typeCode::floating, right);
}

rule_engine_any rule_engine_any::operator+(const std::string& right) const {
    return sum(typeCode::string, right);
}

rule_engine_any rule_engine_any::operator+(const char* right) const {
    return *this + textOf(right);
}

rule_engine_any rule_engine_any::operator+(const rule_engine_any& right) const {
    const bool rightIsDouble = right.code_ == typeCode::floating;
    switch (code_) {
        case typeCode::string:
            return *this + right.toStr();
        case typeCode::floating:
            return *this + right.toDouble();
        case typeCode::integer:
            return rightIsDouble ? rule_engine_any(toDouble() + right.toDouble())
                                 : *this + right.toInt();
        case typeCode::unsignedInteger:
            return rightIsDouble ? rule_engine_any(toDouble() + right.toDouble())
                                 : *this + right.toUInt();
        default:
            reportOperator("operator+", type(), "rule_engine_any(" + right.type() + ")");
            return {};
    }
}

template <class Scalar>
bool rule_engine_any::equals(typeCode code, const Scalar& right) const {
    return code_ == code && held<Scalar>(data_) == right;
}

bool rule_engine_any::operator==(int right) const {
    return equals(typeCode::integer, right);
}

bool rule_engine_any::operator==(unsigned int right) const {
    return equals(typeCode::unsignedInteger, right);
}

bool rule_engine_any::operator==(double right) const {
    return equals(typeCode::floating, right);
}

bool rule_engine_any::operator==(bool right) const {
    return equals(typeCode::boolean, right);
}

bool rule_engine_any::operator==(const std::string& right) const {
    return equals(typeCode::string, right);
}

bool rule_engine_any::operator==(const char* right) const {
    return *this == textOf(right);
}

bool rule_engine_any::operator==(const rule_engine_any& right) const {
    if (code_ != right.code_) {
        return false;
    }
    switch (code_) {
        case typeCode::integer:
            return *this == right.toInt();
        case typeCode::string:
            return *this == right.toStr();
        case typeCode::boolean:
            return *this == right.toBool();
        case typeCode::floating:
            return *this == right.toDouble();
        case typeCode::sequence:
            return sequence_ == right.sequence_;
        case typeCode::map:
            return map_ == right.map_;
        case typeCode::null:
        case typeCode::unsignedInteger:
            break;  // these equal nothing when both sides are values, and hosts know it so
    }
    return false;
}
