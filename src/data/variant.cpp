#include "data/variant.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace rm {

namespace {

[[noreturn]] void Fail(const std::string& what, VarType to) {
    throw VariantConversionError(what + " cannot be converted to " + VarTypeName(to));
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f'; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool EqualsNoCase(const std::string& a, const char* b) {
    size_t n = std::strlen(b);
    if (a.size() != n) return false;
    for (size_t i = 0; i < n; ++i) {
        char c = a[i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != b[i]) return false;
    }
    return true;
}

// Parses a whole decimal number in the C locale: blanks around it, an optional sign, digits
// with at most one '.', an optional exponent. "nan", "inf" and "-inf" are taken too, since
// that is how a non-finite double is written out. Anything else, or a value beyond the
// range of a double, throws. Values too small for a double read as zero.
double ParseNumber(const std::string& text, VarType to) {
    size_t begin = 0, end = text.size();
    while (begin < end && IsBlank(text[begin])) ++begin;
    while (end > begin && IsBlank(text[end - 1])) --end;
    const std::string body = text.substr(begin, end - begin);
    const std::string quoted = "text \"" + text + "\"";
    if (body.empty()) Fail(quoted, to);

    bool negative = false;
    size_t pos = 0;
    if (body[pos] == '+' || body[pos] == '-') {
        negative = body[pos] == '-';
        ++pos;
    }
    const std::string unsignedPart = body.substr(pos);
    if (EqualsNoCase(unsignedPart, "inf") || EqualsNoCase(unsignedPart, "infinity")) {
        return negative ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
    }
    if (EqualsNoCase(unsignedPart, "nan")) return std::numeric_limits<double>::quiet_NaN();

    // Syntax check, and the decimal position of the leading significant digit, which tells
    // an overflow from an underflow when the value does not fit.
    size_t i = pos;
    int digits = 0;
    long leadExponent = 0;  // power of ten of the first non-zero digit, before the exponent part
    bool seenNonZero = false, seenPoint = false;
    long intDigitsAfterLead = 0;
    long fracZerosBeforeLead = 0;
    for (; i < body.size(); ++i) {
        char c = body[i];
        if (c == '.') {
            if (seenPoint) Fail(quoted, to);
            seenPoint = true;
            continue;
        }
        if (!IsDigit(c)) break;
        ++digits;
        if (!seenPoint) {
            if (seenNonZero || c != '0') {
                seenNonZero = true;
                ++intDigitsAfterLead;
            }
        } else if (!seenNonZero) {
            if (c == '0') {
                ++fracZerosBeforeLead;
            } else {
                seenNonZero = true;
            }
        }
    }
    if (digits == 0) Fail(quoted, to);
    long exponent = 0;
    if (i < body.size() && (body[i] == 'e' || body[i] == 'E')) {
        ++i;
        bool expNegative = false;
        if (i < body.size() && (body[i] == '+' || body[i] == '-')) {
            expNegative = body[i] == '-';
            ++i;
        }
        size_t expStart = i;
        while (i < body.size() && IsDigit(body[i])) {
            if (exponent < 100000) exponent = exponent * 10 + (body[i] - '0');
            ++i;
        }
        if (i == expStart) Fail(quoted, to);
        if (expNegative) exponent = -exponent;
    }
    if (i != body.size()) Fail(quoted, to);
    leadExponent = intDigitsAfterLead > 0 ? intDigitsAfterLead - 1 : -(fracZerosBeforeLead + 1);

    double value = 0.0;
    const char* first = body.data() + pos;
    const char* last = body.data() + body.size();
    auto result = std::from_chars(first, last, value, std::chars_format::general);
    if (result.ec == std::errc::result_out_of_range) {
        if (seenNonZero && leadExponent + exponent > 0) Fail(quoted + " (overflow)", to);
        value = 0.0;
    } else if (result.ec != std::errc() || result.ptr != last) {
        Fail(quoted, to);
    }
    return negative ? -value : value;
}

// Rounds half to even, independently of the floating-point rounding mode.
double RoundHalfEven(double v) {
    double lower = std::floor(v);
    double diff = v - lower;
    if (diff > 0.5) return lower + 1.0;
    if (diff < 0.5) return lower;
    return std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1.0;
}

int32_t ToInteger(double v, VarType to, double lo, double hi, const std::string& what) {
    if (std::isnan(v)) Fail(what, to);
    double r = RoundHalfEven(v);
    if (r < lo || r > hi) Fail(what + " (overflow)", to);
    return static_cast<int32_t>(r);
}

std::string DoubleToText(double v) {
    if (std::isnan(v)) return "nan";
    if (std::isinf(v)) return v < 0 ? "-inf" : "inf";
    char buffer[64];
    for (int precision : {15, 17}) {
        auto result = std::to_chars(buffer, buffer + sizeof buffer, v, std::chars_format::general, precision);
        std::string text(buffer, result.ptr);
        double back = 0.0;
        auto parsed = std::from_chars(text.data(), text.data() + text.size(), back, std::chars_format::general);
        if (precision == 17 || (parsed.ec == std::errc() && back == v)) return text;
    }
    return {};  // not reached: the 17-digit form is always returned
}

}  // namespace

const char* VarTypeName(VarType t) {
    switch (t) {
        case VarType::Empty: return "empty";
        case VarType::Null: return "null";
        case VarType::I16: return "i16";
        case VarType::I32: return "i32";
        case VarType::Double: return "double";
        case VarType::Text: return "text";
        case VarType::U8: return "u8";
    }
    return "unknown";
}

bool IsKnownVarType(uint16_t code) {
    switch (code) {
        case 0: case 1: case 2: case 3: case 5: case 8: case 17: return true;
        default: return false;
    }
}

Variant Variant::MakeNull() {
    Variant v;
    v.type_ = VarType::Null;
    return v;
}

std::string Variant::ToText() const {
    switch (type_) {
        case VarType::Empty:
        case VarType::Null: return {};
        case VarType::I16:
        case VarType::I32:
        case VarType::U8: return std::to_string(i_);
        case VarType::Double: return DoubleToText(d_);
        case VarType::Text: return s_;
    }
    return {};
}

Variant Variant::ChangeType(VarType to) const {
    if (to == type_) return *this;
    if (to == VarType::Empty) return Variant();
    if (to == VarType::Null) {
        if (type_ == VarType::Empty) return MakeNull();
        Fail(std::string("a ") + VarTypeName(type_) + " value", to);
    }
    if (type_ == VarType::Null) Fail("a null value", to);
    if (to == VarType::Text) {
        Variant out;
        out.type_ = VarType::Text;
        out.s_ = ToText();
        return out;
    }

    double number = 0.0;
    std::string what;
    switch (type_) {
        case VarType::Empty: number = 0.0; what = "an empty value"; break;
        case VarType::I16:
        case VarType::I32:
        case VarType::U8:
            number = i_;
            what = "the value " + std::to_string(i_);
            break;
        case VarType::Double: number = d_; what = "the value " + DoubleToText(d_); break;
        case VarType::Text: number = ParseNumber(s_, to); what = "text \"" + s_ + "\""; break;
        default: break;
    }

    Variant out;
    out.type_ = to;
    switch (to) {
        case VarType::I16: out.i_ = ToInteger(number, to, -32768.0, 32767.0, what); break;
        case VarType::I32: out.i_ = ToInteger(number, to, -2147483648.0, 2147483647.0, what); break;
        case VarType::U8: out.i_ = ToInteger(number, to, 0.0, 255.0, what); break;
        case VarType::Double: out.d_ = number; break;
        default: Fail(what, to);
    }
    return out;
}

Variant Variant::FromText(VarType type, const std::string& text) {
    return Variant(text).ChangeType(type);
}

template <>
int16_t Variant::As<int16_t>() const {
    return static_cast<int16_t>(ChangeType(VarType::I16).i_);
}
template <>
int32_t Variant::As<int32_t>() const {
    return ChangeType(VarType::I32).i_;
}
template <>
uint8_t Variant::As<uint8_t>() const {
    return static_cast<uint8_t>(ChangeType(VarType::U8).i_);
}
template <>
double Variant::As<double>() const {
    return ChangeType(VarType::Double).d_;
}
template <>
std::string Variant::As<std::string>() const {
    return type_ == VarType::Text ? s_ : ChangeType(VarType::Text).s_;
}

bool Variant::operator==(const Variant& other) const {
    if (type_ != other.type_) return false;
    switch (type_) {
        case VarType::Empty:
        case VarType::Null: return true;
        case VarType::I16:
        case VarType::I32:
        case VarType::U8: return i_ == other.i_;
        case VarType::Double: return d_ == other.d_ || (std::isnan(d_) && std::isnan(other.d_));
        case VarType::Text: return s_ == other.s_;
    }
    return false;
}

}  // namespace rm
