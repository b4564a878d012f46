#include "VekAppCore/Xml/XmlDetails.h"
#include "Xml/PathDocument.h"
#include "Xml/XmlText.h"
#include <QColor>
#include <QPoint>
#include <QVariant>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace vek::XmlDetails
{
namespace
{
using tinyxml2::XMLElement;
using tinyxml2::XMLError;
using tinyxml2::XMLNode;
using tinyxml2::XMLUtil;

constexpr const char* typeAttribute = "Type";
constexpr const char* unitAttribute = "unit";

template <typename T>
std::string WriteFloating(T value, int digits)
{
    std::array<char, 32> text;
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits);
    return {text.data(), result.ptr};
}

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// Whether a number that does not fit its type is too large for it, not too small.
bool IsTooLarge(std::string_view number, bool isHexadecimal)
{
    const std::size_t mark = std::min(number.find_first_of(isHexadecimal ? "pP" : "eE"), number.size());
    std::string_view exponentText = number.substr(std::min(mark + 1, number.size()));
    if (exponentText.starts_with('+'))
        exponentText.remove_prefix(1);
    const bool isNegative = exponentText.starts_with('-');
    std::int64_t exponent = 0;
    const auto result =
        std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (result.ec == std::errc::result_out_of_range)
        return !isNegative;
    const std::string_view digits = number.substr(0, mark);
    const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
    const auto first = static_cast<std::int64_t>(digits.find_first_not_of("0."));
    return (point - first) * (isHexadecimal ? 4 : 1) + exponent > 0;
}

/// As sscanf reads it in the C locale, whatever locale the process has: blanks before the number and anything
/// behind it are ignored.
template <typename T>
bool ReadFloating(const char* text, T& value)
{
    while (IsBlank(*text))
        ++text;
    const bool isNegative = *text == '-';
    if (isNegative || *text == '+')
        ++text;
    std::string_view number(text);
    const bool isHexadecimal = number.starts_with("0x") || number.starts_with("0X");
    if (isHexadecimal)
        number.remove_prefix(2);
    // std::from_chars would take a second sign, and what is no number of digits behind "0x".
    constexpr std::string_view hexadecimal = "0123456789abcdefABCDEF.";
    if (number.starts_with('-') ||
        (isHexadecimal && (number.empty() || !hexadecimal.contains(number.front()))))
        return false;
    T read = 0;
    const auto [end, error] =
        std::from_chars(number.data(), number.data() + number.size(), read,
                        isHexadecimal ? std::chars_format::hex : std::chars_format::general);
    if (error == std::errc::invalid_argument)
        return false;
    if (std::isinf(read) && (*end == 'i' || *end == 'I')) // "infinity" breaks off
        return false;
    const std::string_view taken(number.data(), end);
    if (error == std::errc::result_out_of_range)
        read = IsTooLarge(taken, isHexadecimal) ? std::numeric_limits<T>::infinity() : T(0);
    value = isNegative ? -read : read;
    return true;
}

/// What could be written, but not read again.
void RefuseUnreadable(const XMLElement& element, const std::string& text, const std::source_location& where)
{
    if (text.find('\0') != std::string::npos || !QByteArrayView(text).isValidUtf8())
        Throw(element, QStringLiteral("a text with a null character or no UTF-8 cannot be written"), where);
}

/// Puts it there in the place of what is there, or takes that away.
void PutOptionalAttribute(XMLElement& element, const char* name, const QByteArray& text)
{
    if (text.isEmpty())
        element.DeleteAttribute(name);
    else
        element.SetAttribute(name, text.constData());
}
} // namespace

void ThrowAt(const XMLElement& element, const QString& rest, const std::source_location& where)
{
    const QString name = QString::fromUtf8(element.Name());
    const auto* const document = dynamic_cast<const PathDocument*>(element.GetDocument());
    throw XmlException(QStringLiteral("Line %1: <").arg(element.GetLineNum()) + name + u'>' + rest,
                       {element.GetLineNum(), name, document ? document->path : QString()}, where);
}

void RequireName(const XMLElement& element, const AsciiStringView& name, const std::source_location& where)
{
    const std::string_view text = name.GetText();
    const bool isName =
        !text.empty() && XMLUtil::IsNameStartChar(static_cast<unsigned char>(text[0])) &&
        std::ranges::all_of(text, [](char c) { return XMLUtil::IsNameChar(static_cast<unsigned char>(c)); });
    if (!isName)
        Throw(element, QStringLiteral("<%1> is no name of XML").arg(name.ToString()), where);
}

namespace Details
{
bool ReadInteger(const char* text, int& value) { return XMLUtil::ToInt(text, &value); }
bool ReadInteger(const char* text, unsigned& value) { return XMLUtil::ToUnsigned(text, &value); }
bool ReadInteger(const char* text, qint64& value)
{
    std::int64_t read = 0;
    const bool isRead = XMLUtil::ToInt64(text, &read);
    value = isRead ? read : value;
    return isRead;
}
bool ReadInteger(const char* text, quint64& value)
{
    std::uint64_t read = 0;
    const bool isRead = XMLUtil::ToUnsigned64(text, &read);
    value = isRead ? read : value;
    return isRead;
}

std::string WriteBool(bool value)
{
    std::array<char, 32> text;
    XMLUtil::ToStr(value, text.data(), static_cast<int>(text.size()));
    return text.data();
}

const char* FindText(const XMLElement& element, std::string& joined)
{
    const char* const text = element.GetText();
    if (!text)
        return nullptr;
    const XMLNode* node = element.FirstChild();
    while (!node->ToText())
        node = node->NextSibling();
    bool isJoined = false;
    for (node = node->NextSibling(); node && !node->ToElement(); node = node->NextSibling())
        if (node->ToText())
        {
            if (!std::exchange(isJoined, true))
                joined = text;
            joined += node->Value();
        }
    return isJoined ? joined.c_str() : text;
}

void PutAttribute(XMLElement& element, AsciiStringView name, const std::string& text, bool isNumber,
                  const std::source_location& where)
{
    if (!isNumber)
        RefuseUnreadable(element, text, where);
    int count = 0;
    const auto* attribute = element.FirstAttribute();
    for (; attribute && std::strcmp(attribute->Name(), name.GetText()) != 0; attribute = attribute->Next())
        ++count;
    if (!attribute)
    {
        RequireName(element, name, where);
        if (count >= mostAttributes)
            Throw(element, QStringLiteral("it has too many attributes to be read again"), where);
    }
    element.SetAttribute(name.GetText(), text.c_str());
}

void PutText(XMLElement& element, const std::string& text, const std::source_location& where)
{
    RefuseUnreadable(element, text, where);
    for (XMLNode* node = element.FirstChild(); node;)
    {
        XMLNode* const next = node->NextSibling();
        if (node->ToText())
            element.DeleteChild(node);
        node = next;
    }
    element.SetText(text.c_str());
    // Without characters, a text would not be found again unless it is marked as one.
    element.FirstChild()->ToText()->SetCData(text.empty());
}
} // namespace Details

bool ReadText(const char* text, float& value) { return ReadFloating(text, value); }
bool ReadText(const char* text, double& value) { return ReadFloating(text, value); }
bool ReadText(const char* text, bool& value) { return XMLUtil::ToBool(text, &value); }
bool ReadText(const char* text, std::string& value)
{
    value = text;
    return true;
}
bool ReadText(const char* text, QString& value)
{
    value = QString::fromUtf8(text);
    return true;
}
bool ReadText(const char* text, TrString& value)
{
    value = TrString::NoTranslate(QString::fromUtf8(text));
    return true;
}
bool ReadText(const char* text, QPoint& value)
{
    const QString whole = QString::fromUtf8(text);
    const qsizetype separator = whole.indexOf(u';');
    int x = 0;
    int y = 0;
    if (separator < 0 || !Convert::FromString(QStringView(whole).first(separator), x) ||
        !Convert::FromString(QStringView(whole).sliced(separator + 1), y))
        return false;
    value = {x, y};
    return true;
}

std::string WriteText(float value) { return WriteFloating(value, 8); }
std::string WriteText(double value) { return WriteFloating(value, 17); }
std::string WriteText(const QString& value)
{
    return value.isValidUtf16() ? value.toStdString() : "\xff"; // which is refused
}
std::string WriteText(const TrString& value) { return WriteText(value.GetKey()); }
std::string WriteText(const QPoint& value)
{
    return std::to_string(value.x()) + ';' + std::to_string(value.y());
}

bool HandleAttributeError(XMLError error, const XMLElement& element, AsciiStringView name, bool mandatory,
                          const std::source_location& where)
{
    if (error == tinyxml2::XML_SUCCESS)
        return true;
    if (!mandatory)
        return false;
    if (error == tinyxml2::XML_NO_ATTRIBUTE)
        ThrowAt(element, QStringLiteral(" does not contain the attribute <%1>").arg(name.ToString()), where);
    if (error == tinyxml2::XML_WRONG_ATTRIBUTE_TYPE)
        ThrowAt(element, QStringLiteral(" wrong attribute cast <%1>").arg(name.ToString()), where);
    ThrowNoAttributeFound(element, name, where);
}

bool HandleValueError(XMLError error, const XMLElement& element, bool mandatory,
                      const std::source_location& where)
{
    if (error == tinyxml2::XML_SUCCESS)
        return true;
    if (!mandatory)
        return error == tinyxml2::XML_NO_TEXT_NODE;
    if (error == tinyxml2::XML_CAN_NOT_CONVERT_TEXT)
        ThrowAt(element, QStringLiteral(" bad cast"), where);
    if (error == tinyxml2::XML_NO_TEXT_NODE)
        ThrowAt(element, QStringLiteral(" doesn't contain value"), where);
    ThrowNoValueFound(element, where);
}

void ThrowNoAttributeFound(const XMLElement& element, AsciiStringView name, const std::source_location& where)
{
    ThrowAt(element, QStringLiteral(" unable to retrieve the attribute <%1>").arg(name.ToString()), where);
}

void ThrowNoValueFound(const XMLElement& element, const std::source_location& where)
{
    ThrowAt(element, QStringLiteral(" unable to retrieve the value"), where);
}

void Throw(const XMLElement& element, const QString& message, const std::source_location& where)
{
    ThrowAt(element, QStringLiteral(": ") + message, where);
}

bool GetAttribute(const XMLElement& element, AsciiStringView name, QVariant& value, bool mandatory,
                  const std::source_location& where)
{
    const char* const text = element.Attribute(name.GetText());
    if (!text)
        return HandleAttributeError(tinyxml2::XML_NO_ATTRIBUTE, element, name, mandatory, where);
    const char* const type = element.Attribute(typeAttribute);
    QVariant read = type ? QVariant(QString::fromUtf8(text)) : QVariant();
    const bool isRead = type ? read.convert(QMetaType::fromName(type)) : *text == '\0';
    if (!isRead)
        return HandleAttributeError(tinyxml2::XML_WRONG_ATTRIBUTE_TYPE, element, name, mandatory, where);
    value = std::move(read);
    return true;
}

void SetAttribute(XMLElement& element, AsciiStringView name, const QVariant& value,
                  const std::source_location& where)
{
    Details::PutAttribute(element, name, WriteText(value.toString()), false, where);
    PutOptionalAttribute(element, typeAttribute, value.typeName());
}

bool GetValue(const XMLElement& element, QColor& value, bool mandatory, const std::source_location& where)
{
    std::array<int, 3> levels{};
    for (std::size_t i = 0; i < levels.size(); ++i)
    {
        constexpr std::array names{"r", "g", "b"};
        const char* const text = element.Attribute(names[i]);
        if (!text || !ReadText(text, levels[i]) || levels[i] < 0 || levels[i] > 255)
            return HandleValueError(tinyxml2::XML_NO_ATTRIBUTE, element, mandatory, where);
    }
    value = QColor(levels[0], levels[1], levels[2]);
    return true;
}

void SetValue(XMLElement& element, const QColor& value, const std::source_location&)
{
    const auto put = [&element, &value](const char* name, int level) {
        PutOptionalAttribute(element, name, value.isValid() ? QByteArray::number(level) : QByteArray());
    };
    put("r", value.red());
    put("g", value.green());
    put("b", value.blue());
}

bool GetValue(const XMLElement& element, Triplet& value, bool mandatory, const std::source_location& where)
{
    Triplet read;
    const auto get = [&element](const char* name, double& number) {
        const char* const text = element.Attribute(name);
        return text && ReadText(text, number);
    };
    if (!get("x", read.x) || !get("y", read.y) || !get("z", read.z))
        return HandleValueError(tinyxml2::XML_NO_ATTRIBUTE, element, mandatory, where);
    if (const char* const unit = element.Attribute(unitAttribute))
    {
        if (!Convert::FromString(QString::fromUtf8(unit), read.unit.emplace()) || !Unit::IsReal(*read.unit))
            return HandleValueError(tinyxml2::XML_WRONG_ATTRIBUTE_TYPE, element, mandatory, where);
    }
    value = read;
    return true;
}

void SetValue(XMLElement& element, const Triplet& value, const std::source_location&)
{
    SetAttribute(element, "x", value.x);
    SetAttribute(element, "y", value.y);
    SetAttribute(element, "z", value.z);
    PutOptionalAttribute(element, unitAttribute,
                         value.unit ? Convert::ToString(*value.unit).toUtf8() : QByteArray());
}
} // namespace vek::XmlDetails
