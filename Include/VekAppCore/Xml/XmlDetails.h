#pragma once
#include "VekAppCore/Text/TrString.h"
#include "VekAppCore/Text/Triplet.h"
#include "VekAppCore/Xml/AsciiStringView.h"
#include "VekAppCore/Xml/XmlException.h"
#include <concepts>
#include <source_location>
#include <string>
#include <string_view>
#include <tinyxml2.h>

#undef FindText // of windows.h, which would rename the function

class QColor;
class QPoint;
class QVariant;

/// How values stand in the elements of an XML document. Reentrant.
///
/// A type stands as text in attributes and elements when it has two functions, ReadText and WriteText. One
/// that takes several attributes of an element has a GetValue and a SetValue of its own. An application adds
/// a type by overloads of these in the namespace of the type.
///
/// Numbers are those of the C locale, whatever locale the process has. Reading answers whether the value was
/// read, and else leaves it as it was; what is mandatory is thrown instead, as an XmlException. An element
/// without text is no error unless its value is mandatory: it counts as read.
namespace vek::XmlDetails
{
/// As Convert::Integer.
template <typename T>
concept Integer = Convert::Integer<T>;

namespace Details
{
VEKAPPCORE_EXPORT bool ReadInteger(const char* text, int& value);
VEKAPPCORE_EXPORT bool ReadInteger(const char* text, unsigned& value);
VEKAPPCORE_EXPORT bool ReadInteger(const char* text, qint64& value);
VEKAPPCORE_EXPORT bool ReadInteger(const char* text, quint64& value);
VEKAPPCORE_EXPORT std::string WriteBool(bool value);
VEKAPPCORE_EXPORT void PutAttribute(tinyxml2::XMLElement& element, AsciiStringView name,
                                    const std::string& text, bool isNumber,
                                    const std::source_location& where);
VEKAPPCORE_EXPORT void PutText(tinyxml2::XMLElement& element, const std::string& text,
                               const std::source_location& where);

/// All of the text before the first child element; null where there is none.
/// @param joined  keeps it where it is in pieces.
VEKAPPCORE_EXPORT const char* FindText(const tinyxml2::XMLElement& element, std::string& joined);

/// Of those that tinyxml2 reads.
template <Integer T>
using Known = std::conditional_t<
    sizeof(T) == sizeof(qint64), std::conditional_t<std::signed_integral<T>, qint64, quint64>,
    std::conditional_t<sizeof(T) == sizeof(int) && std::unsigned_integral<T>, unsigned, int>>;
} // namespace Details

/// Reads a text, which is UTF-8. Numbers are read as tinyxml2 does: blanks before them and anything behind
/// them are ignored, and an integer that does not fit is what the C library makes of it.
/// @return false, with @p value unchanged, where it is no such value.
template <Integer T>
[[nodiscard]] bool ReadText(const char* text, T& value)
{
    Details::Known<T> read{};
    if (!Details::ReadInteger(text, read) || !std::in_range<T>(read))
        return false;
    value = static_cast<T>(read);
    return true;
}

/// @{
/// The same; a truth value is "true", "false" or a number, and a text is taken as it is.
[[nodiscard]] VEKAPPCORE_EXPORT bool ReadText(const char* text, float& value);
[[nodiscard]] VEKAPPCORE_EXPORT bool ReadText(const char* text, double& value);
[[nodiscard]] VEKAPPCORE_EXPORT bool ReadText(const char* text, bool& value);
[[nodiscard]] VEKAPPCORE_EXPORT bool ReadText(const char* text, std::string& value);
[[nodiscard]] VEKAPPCORE_EXPORT bool ReadText(const char* text, QString& value);
/// @}

/// As a text that is not translated.
[[nodiscard]] VEKAPPCORE_EXPORT bool ReadText(const char* text, TrString& value);
/// "x;y"
[[nodiscard]] VEKAPPCORE_EXPORT bool ReadText(const char* text, QPoint& value);
/// As Convert reads it: "12.5 mm".
template <Unit::AnyQuantity Q>
[[nodiscard]] bool ReadText(const char* text, Q& value)
{
    return Convert::FromString(QString::fromUtf8(text), value);
}

/// UTF-8.
template <Integer T>
[[nodiscard]] std::string WriteText(T value)
{
    return std::to_string(value);
}
/// With 8 digits at most, which not every float comes back from.
[[nodiscard]] VEKAPPCORE_EXPORT std::string WriteText(float value);
/// With 17 digits at most.
[[nodiscard]] VEKAPPCORE_EXPORT std::string WriteText(double value);
/// @{
/// UTF-8, and as ReadText reads it.
[[nodiscard]] std::string WriteText(std::same_as<bool> auto value) { return Details::WriteBool(value); }
[[nodiscard]] inline std::string WriteText(Bool value) { return WriteText(static_cast<bool>(value)); }
[[nodiscard]] inline std::string WriteText(std::string_view value) { return std::string(value); }
[[nodiscard]] inline std::string WriteText(const std::string& value) { return value; }
[[nodiscard]] inline std::string WriteText(const char* value) { return value; }
[[nodiscard]] VEKAPPCORE_EXPORT std::string WriteText(const QString& value);
/// @}

/// Without translation.
[[nodiscard]] VEKAPPCORE_EXPORT std::string WriteText(const TrString& value);
/// As ReadText reads it.
[[nodiscard]] VEKAPPCORE_EXPORT std::string WriteText(const QPoint& value);
/// As Convert writes it, with all digits that are needed.
template <Unit::AnyQuantity Q>
[[nodiscard]] std::string WriteText(const Q& value)
{
    return Convert::ToString(value).toStdString();
}

/// A type that stands as text when it is read.
template <typename T>
concept Readable = requires(const char* text, T& value)
{
    ReadText(text, value);
};
/// A type that stands as text when it is written.
template <typename T>
concept Writable = requires(const T& value)
{
    WriteText(value);
};

/// Whether an attribute was read without @p error.
/// @throws XmlException  it was not, and is mandatory.
VEKAPPCORE_EXPORT bool
HandleAttributeError(tinyxml2::XMLError error, const tinyxml2::XMLElement& element, AsciiStringView name,
                     bool mandatory, const std::source_location& where = std::source_location::current());
/// The same for the text of an element, or the attributes that its value is made of. A missing text counts as
/// read unless it is mandatory.
VEKAPPCORE_EXPORT bool HandleValueError(tinyxml2::XMLError error, const tinyxml2::XMLElement& element,
                                        bool mandatory,
                                        const std::source_location& where = std::source_location::current());
/// @{
/// What the functions of above throw of what is missing.
[[noreturn]] VEKAPPCORE_EXPORT void
ThrowNoAttributeFound(const tinyxml2::XMLElement& element, AsciiStringView name,
                      const std::source_location& where = std::source_location::current());
[[noreturn]] VEKAPPCORE_EXPORT void
ThrowNoValueFound(const tinyxml2::XMLElement& element,
                  const std::source_location& where = std::source_location::current());
/// @}

/// Throws "Line %1: <%2>: %3", with the line and the name of the element.
[[noreturn]] VEKAPPCORE_EXPORT void
Throw(const tinyxml2::XMLElement& element, const QString& message,
      const std::source_location& where = std::source_location::current());

/// @throws XmlException  it is mandatory and could not be read; it carries @p where.
template <Readable T>
bool GetAttribute(const tinyxml2::XMLElement& element, AsciiStringView name, T& value, bool mandatory,
                  const std::source_location& where = std::source_location::current())
{
    const char* const text = element.Attribute(name.GetText());
    if (text && ReadText(text, value))
        return true;
    return HandleAttributeError(text ? tinyxml2::XML_WRONG_ATTRIBUTE_TYPE : tinyxml2::XML_NO_ATTRIBUTE,
                                element, name, mandatory, where);
}
/// Adds the attribute or gives it another value.
/// @throws XmlException  the text is no UTF-8 or holds a null character, or the name is none of XML, or the
/// element has 1024 attributes.
template <Writable T>
void SetAttribute(tinyxml2::XMLElement& element, AsciiStringView name, const T& value,
                  const std::source_location& where = std::source_location::current())
{
    Details::PutAttribute(element, name, WriteText(value), std::is_arithmetic_v<T>, where);
}

/// @throws XmlException  it is mandatory and could not be read; it carries @p where.
template <Readable T>
bool GetValue(const tinyxml2::XMLElement& element, T& value, bool mandatory,
              const std::source_location& where = std::source_location::current())
{
    std::string joined;
    const char* const text = Details::FindText(element, joined);
    if (text && ReadText(text, value))
        return true;
    return HandleValueError(text ? tinyxml2::XML_CAN_NOT_CONVERT_TEXT : tinyxml2::XML_NO_TEXT_NODE, element,
                            mandatory, where);
}
/// Gives the element this text in the place of the one that it has. Control characters other than tabs and
/// line breaks come back to us, but other parsers refuse them.
/// @throws XmlException  the text is no UTF-8 or holds a null character.
template <Writable T>
void SetValue(tinyxml2::XMLElement& element, const T& value,
              const std::source_location& where = std::source_location::current())
{
    Details::PutText(element, WriteText(value), where);
}

/// @{
/// As QVariant::toString writes it, with the name of its type in the attribute "Type": an element has one of
/// them at most. What Qt cannot turn into text and back is not kept.
VEKAPPCORE_EXPORT bool GetAttribute(const tinyxml2::XMLElement& element, AsciiStringView name,
                                    QVariant& value, bool mandatory,
                                    const std::source_location& where = std::source_location::current());
VEKAPPCORE_EXPORT void SetAttribute(tinyxml2::XMLElement& element, AsciiStringView name,
                                    const QVariant& value,
                                    const std::source_location& where = std::source_location::current());
/// @}

/// @{
/// Of the attributes "r", "g" and "b", 0 to 255. It is opaque: alpha is not kept. An invalid one has none.
VEKAPPCORE_EXPORT bool GetValue(const tinyxml2::XMLElement& element, QColor& value, bool mandatory,
                                const std::source_location& where = std::source_location::current());
VEKAPPCORE_EXPORT void SetValue(tinyxml2::XMLElement& element, const QColor& value,
                                const std::source_location& where = std::source_location::current());
/// @}

/// @{
/// Of the attributes "x", "y" and "z", and "unit" where it has one.
VEKAPPCORE_EXPORT bool GetValue(const tinyxml2::XMLElement& element, Triplet& value, bool mandatory,
                                const std::source_location& where = std::source_location::current());
VEKAPPCORE_EXPORT void SetValue(tinyxml2::XMLElement& element, const Triplet& value,
                                const std::source_location& where = std::source_location::current());
/// @}

/// @{
/// The attributes that a value of type T takes of its element, for the validator; an application that adds
/// such a type specialises it.
template <typename T>
inline constexpr std::initializer_list<const char*> attributesOf = {};
template <>
inline constexpr std::initializer_list<const char*> attributesOf<QVariant> = {"Type"};
template <>
inline constexpr std::initializer_list<const char*> attributesOf<QColor> = {"r", "g", "b"};
template <>
inline constexpr std::initializer_list<const char*> attributesOf<Triplet> = {"x", "y", "z", "unit"};
/// @}

} // namespace vek::XmlDetails

/// What an application has added, in the namespaces of its types: the functions of above are not seen from
/// here, so that they do not win over it.
namespace vek::XmlAdditions
{
void GetAttribute() = delete;
void SetAttribute() = delete;
void GetValue() = delete;
void SetValue() = delete;

template <typename T>
concept WithGetAttribute = requires(const tinyxml2::XMLElement& element, AsciiStringView name, T& value)
{
    GetAttribute(element, name, value, true);
};
template <typename T>
concept WithSetAttribute = requires(tinyxml2::XMLElement& element, AsciiStringView name, const T& value)
{
    SetAttribute(element, name, value);
};
template <typename T>
concept WithGetValue = requires(const tinyxml2::XMLElement& element, T& value)
{
    GetValue(element, value, true);
};
template <typename T>
concept WithSetValue = requires(tinyxml2::XMLElement& element, const T& value)
{
    SetValue(element, value);
};
} // namespace vek::XmlAdditions

/// For the members of the classes, which hide the names of what they call.
namespace vek::XmlDetails::Details
{
template <typename T>
bool Get(const tinyxml2::XMLElement& element, AsciiStringView name, T& value, bool mandatory,
         const std::source_location& where)
{
    if constexpr (XmlAdditions::WithGetAttribute<T>)
        return GetAttribute(element, name, value, mandatory);
    else
        return XmlDetails::GetAttribute(element, name, value, mandatory, where);
}
template <typename T>
bool Get(const tinyxml2::XMLElement& element, T& value, bool mandatory, const std::source_location& where)
{
    if constexpr (XmlAdditions::WithGetValue<T>)
        return GetValue(element, value, mandatory);
    else
        return XmlDetails::GetValue(element, value, mandatory, where);
}
template <typename T>
void Set(tinyxml2::XMLElement& element, AsciiStringView name, const T& value,
         const std::source_location& where)
{
    if constexpr (XmlAdditions::WithSetAttribute<T>)
        SetAttribute(element, name, value);
    else
        XmlDetails::SetAttribute(element, name, value, where);
}
template <typename T>
void Set(tinyxml2::XMLElement& element, const T& value, const std::source_location& where)
{
    if constexpr (XmlAdditions::WithSetValue<T>)
        SetValue(element, value);
    else
        XmlDetails::SetValue(element, value, where);
}
} // namespace vek::XmlDetails::Details
