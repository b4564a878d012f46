#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/LogText.h"
#include <QList>
#include <QLocale>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <concepts>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

class QVariant;

/// Values as text, and back: what ToString writes, FromString reads again with the same options, bit for bit
/// where the notation keeps all digits. Signs and digits are ASCII in every locale. FromString ignores blanks
/// around the text and returns false, with the value unchanged, for a text that is no such value or does not
/// fit. Reentrant.
namespace vek::Convert
{
/// How a floating-point number is written.
enum class ENotation
{
    Shortest,   ///< As few digits as bring the value back; with an exponent where it is very large or small.
    Fixed,      ///< As many decimals as asked for.
    Scientific, ///< One digit, as many decimals as asked for, and an exponent, with "e" in every locale.
};

[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(ENotation notation);
using vek::PrintTo;

/// How numbers are written, and read again.
struct NumberOptions
{
    QLocale locale = QLocale::c();            ///< Gives the separators.
    ENotation notation = ENotation::Shortest; ///< Of floating-point numbers.
    int decimals = 6;                         ///< Of Fixed and Scientific, 0 to 100.
    /// Between groups of three digits. Some locales have none after a single digit: 1234, 12 345, 1234 567.
    bool hasGroupSeparators = false;
};

/// How lists of numbers and of anything else are written, and read again.
struct ListUnitNumberOptions : NumberOptions
{
    /// Between the items; in a text that is read, with or without its blanks. Without any, it is "; ".
    QString separator = QStringLiteral("; ");
};

/// Every integer type but the characters.
template <typename T>
concept Integer =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

namespace Details
{
VEKAPPCORE_EXPORT QString ToText(bool value);
VEKAPPCORE_EXPORT QString ToText(qint64 value);
VEKAPPCORE_EXPORT QString ToText(quint64 value);
VEKAPPCORE_EXPORT QString ToText(qint64 value, const NumberOptions& options);
VEKAPPCORE_EXPORT QString ToText(quint64 value, const NumberOptions& options);
VEKAPPCORE_EXPORT std::optional<qint64> ToSigned(QStringView text, const NumberOptions* options);
VEKAPPCORE_EXPORT std::optional<quint64> ToUnsigned(QStringView text, const NumberOptions* options);
VEKAPPCORE_EXPORT QString ToText(const QVariant& value, const ListUnitNumberOptions& options);
VEKAPPCORE_EXPORT QString Join(const QStringList& items, const ListUnitNumberOptions& options);
VEKAPPCORE_EXPORT std::optional<QStringList> Split(QStringView text, const ListUnitNumberOptions& options);

template <Integer T>
using Widest = std::conditional_t<std::signed_integral<T>, qint64, quint64>;

template <Integer T>
bool ReadInteger(QStringView text, T& value, const NumberOptions* options)
{
    const auto read = [&] {
        if constexpr (std::signed_integral<T>)
            return ToSigned(text, options);
        else
            return ToUnsigned(text, options);
    }();
    if (!read || !std::in_range<T>(*read))
        return false;
    value = static_cast<T>(*read);
    return true;
}
} // namespace Details

/// "true" or "false".
[[nodiscard]] QString ToString(std::same_as<bool> auto value) { return Details::ToText(value); }
/// Reads 1 and 0 as well, and any case.
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, bool& value);

/// In the C locale.
template <Integer T>
[[nodiscard]] QString ToString(T value)
{
    return Details::ToText(static_cast<Details::Widest<T>>(value));
}
/// Of the options, locale and group separators.
template <Integer T>
[[nodiscard]] QString ToString(T value, const NumberOptions& options)
{
    return Details::ToText(static_cast<Details::Widest<T>>(value), options);
}
/// What ToString writes of the same arguments.
template <Integer T>
[[nodiscard]] bool FromString(QStringView text, T& value)
{
    return Details::ReadInteger(text, value, nullptr);
}
/// What ToString writes of the same arguments.
template <Integer T>
[[nodiscard]] bool FromString(QStringView text, T& value, const NumberOptions& options)
{
    return Details::ReadInteger(text, value, &options);
}

/// @{
/// In the C locale, in the shortest notation; "inf", "-inf" and "nan" for what is no finite number.
[[nodiscard]] VEKAPPCORE_EXPORT QString ToString(double value);
[[nodiscard]] VEKAPPCORE_EXPORT QString ToString(float value);
[[nodiscard]] VEKAPPCORE_EXPORT QString ToString(double value, const NumberOptions& options);
[[nodiscard]] VEKAPPCORE_EXPORT QString ToString(float value, const NumberOptions& options);
/// @}

/// @{
/// Any notation. Group separators are read where they stand between groups of three digits.
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, double& value);
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, float& value);
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, double& value,
                                                const NumberOptions& options);
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, float& value, const NumberOptions& options);
/// @}

/// How many digits stand behind the decimal separator of a number, 0 without one.
[[nodiscard]] VEKAPPCORE_EXPORT int GetNumberOfDecimals(QStringView text, const NumberOptions& options = {});

/// @{
/// The text itself.
[[nodiscard]] inline QString ToString(const QString& value, const NumberOptions& = {}) { return value; }
[[nodiscard]] inline bool FromString(QStringView text, QString& value, const NumberOptions& = {})
{
    value = text.toString();
    return true;
}
/// @}

namespace Details
{
/// A list of anything, but no text.
template <typename T>
concept Sequence = requires(T& container)
{
    container.push_back(*container.begin());
}
&&!std::convertible_to<T, QStringView>;
} // namespace Details

/// @{
/// The items with separators between them; one that would be misread alone, such as a text with a separator
/// in it, stands in quotes. A list with an item that is not read is not read.
template <Details::Sequence Container>
[[nodiscard]] QString ToString(const Container& values, const ListUnitNumberOptions& options = {})
{
    QStringList items;
    items.reserve(static_cast<qsizetype>(values.size()));
    for (const auto& value : values)
        if constexpr (requires { ToString(value, options); })
            items.push_back(ToString(value, options));
        else
            items.push_back(ToString(value));
    return Details::Join(items, options);
}
template <Details::Sequence Container>
[[nodiscard]] bool FromString(QStringView text, Container& values, const ListUnitNumberOptions& options = {})
{
    const std::optional<QStringList> items = Details::Split(text, options);
    if (!items)
        return false;
    Container read;
    for (const QString& item : *items)
    {
        typename Container::value_type value{};
        if constexpr (requires { FromString(item, value, options); })
        {
            if (!FromString(item, value, options))
                return false;
        }
        else if (!FromString(item, value))
            return false;
        read.push_back(std::move(value));
    }
    values = std::move(read);
    return true;
}
/// @}

/// Values of all kinds: what Qt can turn into text, lists, points, sizes and rectangles as lists of numbers,
/// byte arrays percent-encoded, enumerations by name, and maps as "key: value" items. A container within a
/// container shows as its size, "[3]" or "{3}". What has no text of its own is written as QDebug does.
[[nodiscard]] QString ToString(const std::same_as<QVariant> auto& value,
                               const ListUnitNumberOptions& options = {})
{
    return Details::ToText(value, options);
}

/// The value of type @p type that has this text.
/// @return false for maps and lists of variants too, whose texts do not tell the types of what is in them,
/// and for what is only written as QDebug does.
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, QMetaType type, QVariant& value,
                                                const ListUnitNumberOptions& options = {});
} // namespace vek::Convert
