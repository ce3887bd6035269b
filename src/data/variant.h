#pragma once
// The tagged value held by every item of a settings tree. The tag is the numeric type code
// that the tree file stores; values convert to and from text in the C locale.

#include <cstdint>
#include <stdexcept>
#include <string>

namespace rm {

enum class VarType : uint16_t {
    Empty = 0,
    Null = 1,
    I16 = 2,
    I32 = 3,
    Double = 5,
    Text = 8,
    U8 = 17,
};

// True for the codes above; any other code read from a file is refused.
bool IsKnownVarType(uint16_t code);

// A short name of the type: "empty", "null", "i16", "i32", "double", "text", "u8".
const char* VarTypeName(VarType type);

// Raised when a value cannot be converted to the requested type (bad text, overflow, null).
// It is the one error that crosses a subsystem: a settings value that cannot be read is fatal
// to the operation that asked for it.
class VariantConversionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Variant {
public:
    Variant() = default;  // empty
    Variant(int16_t v) : type_(VarType::I16), i_(v) {}
    Variant(int32_t v) : type_(VarType::I32), i_(v) {}
    Variant(double v) : type_(VarType::Double), d_(v) {}
    Variant(uint8_t v) : type_(VarType::U8), i_(v) {}
    Variant(const char* v) : type_(VarType::Text), s_(v) {}
    Variant(std::string v) : type_(VarType::Text), s_(std::move(v)) {}

    static Variant MakeNull();

    VarType type() const { return type_; }
    bool IsEmptyOrNull() const { return type_ == VarType::Empty || type_ == VarType::Null; }

    // A copy converted to `to`; throws VariantConversionError when that is impossible.
    // Numbers convert to narrower integers with rounding half to even and a range check;
    // text converts to numbers by parsing the whole text (surrounding blanks allowed).
    Variant ChangeType(VarType to) const;

    // The value as text, as the tree file stores it. Doubles use the shortest of 15 or 17
    // significant digits that reads back to the same value.
    std::string ToText() const;

    // Builds a value of type `type` from its stored text; throws VariantConversionError.
    static Variant FromText(VarType type, const std::string& text);

    // Typed access after conversion: As<int16_t>, As<int32_t>, As<double>, As<uint8_t>,
    // As<std::string>.
    template <class T>
    T As() const;

    bool operator==(const Variant& other) const;
    bool operator!=(const Variant& other) const { return !(*this == other); }

private:
    VarType type_ = VarType::Empty;
    int32_t i_ = 0;
    double d_ = 0.0;
    std::string s_;
};

template <> int16_t Variant::As<int16_t>() const;
template <> int32_t Variant::As<int32_t>() const;
template <> uint8_t Variant::As<uint8_t>() const;
template <> double Variant::As<double>() const;
template <> std::string Variant::As<std::string>() const;

// The tag that a C++ type maps to.
template <class T>
struct VarTypeOf;
template <> struct VarTypeOf<int16_t> { static constexpr VarType value = VarType::I16; };
template <> struct VarTypeOf<int32_t> { static constexpr VarType value = VarType::I32; };
template <> struct VarTypeOf<double> { static constexpr VarType value = VarType::Double; };
template <> struct VarTypeOf<uint8_t> { static constexpr VarType value = VarType::U8; };
template <> struct VarTypeOf<std::string> { static constexpr VarType value = VarType::Text; };

}  // namespace rm
