#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/LogText.h"
#include <QFlags>
#include <QMap>
#include <QMetaEnum>
#include <QString>
#include <QVariant>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace vek::App
{
/// How a store wants its values.
enum class EVariantStoreFormat : std::int32_t
{
    Typed = 0,    ///< As they are.
    Readable = 1, ///< What stays readable and stable in a text file.
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(EVariantStoreFormat format);
using vek::PrintTo;

namespace VekQVariantDetails
{
/// @p value, where it would not be readable in a text file, as text, when that brings it back.
[[nodiscard]] VEKAPPCORE_EXPORT QVariant ToReadable(const QVariant& value);
/// Of a list of one its item, where that is not read as another list: text files keep no list of one.
[[nodiscard]] VEKAPPCORE_EXPORT QVariant ToReadable(const QVariantList& items);

/// A list within another one as text, where all of its items have one; text files do not tell the two apart.
[[nodiscard]] VEKAPPCORE_EXPORT QVariant ToReadableItem(const QVariantList& items);
[[nodiscard]] VEKAPPCORE_EXPORT std::optional<QStringList> SplitItem(const QString& text);

/// @p value as a value of @p type, when it is one, a number that fits, or a text of one; else invalid.
[[nodiscard]] VEKAPPCORE_EXPORT QVariant ToType(const QVariant& value, QMetaType type);

/// The items of any kind of list; one that is no list, as text files give of a list of one, is its only item.
[[nodiscard]] VEKAPPCORE_EXPORT QVariantList ToItems(const QVariant& value);

/// The entries of any kind of map with texts as keys, or of a list of keys and values in turn, each key once.
[[nodiscard]] VEKAPPCORE_EXPORT std::optional<QVariantMap> ToEntries(const QVariant& value);

template <typename T>
concept NamedEnum = std::is_enum_v<T> && bool(QtPrivate::IsQEnumHelper<T>::Value);

/// A map from text, of the standard library or Qt, but those that Qt's meta-type system knows as values.
template <typename Map>
concept TextMap = requires
{
    typename Map::mapped_type;
}
&&(std::same_as<typename Map::key_type, QString> ||
   std::same_as<typename Map::key_type, std::string>)&&!std::same_as<Map, QVariantMap> &&
    !std::same_as<Map, QVariantHash>;
} // namespace VekQVariantDetails

/// How the typed access of the stores turns a T into a QVariant and back. An application specialises it for a
/// type that Qt's meta-type system does not know, or that it wants to keep in another form.
template <typename T>
struct VariantConverter
{
    /// @p value as the stores keep it.
    [[nodiscard]] static QVariant ToVariant(const T& value, EVariantStoreFormat format)
    {
        QVariant variant = QVariant::fromValue(value);
        return format == EVariantStoreFormat::Typed ? variant : VekQVariantDetails::ToReadable(variant);
    }

    /// Reads what ToVariant makes in any format; empty for anything else.
    [[nodiscard]] static std::optional<T> FromVariant(const QVariant& variant)
    {
        const QVariant typed = VekQVariantDetails::ToType(variant, QMetaType::fromType<T>());
        if (!typed.isValid())
            return std::nullopt;
        return typed.value<T>();
    }
};

/// Kept as it is in any format.
template <>
struct VariantConverter<QVariant>
{
    [[nodiscard]] static QVariant ToVariant(const QVariant& value, EVariantStoreFormat) { return value; }
    [[nodiscard]] static std::optional<QVariant> FromVariant(const QVariant& variant) { return variant; }
};

/// Kept as a QString; UTF-8.
template <>
struct VariantConverter<std::string>
{
    [[nodiscard]] static QVariant ToVariant(const std::string& value, EVariantStoreFormat)
    {
        return QString::fromStdString(value);
    }
    [[nodiscard]] static std::optional<std::string> FromVariant(const QVariant& variant)
    {
        const auto text = VariantConverter<QString>::FromVariant(variant);
        return text ? std::optional(text->toStdString()) : std::nullopt;
    }
};

/// Enumerations that Qt knows by Q_ENUM and its like: readable by name. A value without a name is read only
/// where it was kept as it is.
template <VekQVariantDetails::NamedEnum T>
struct VariantConverter<T>
{
    [[nodiscard]] static QVariant ToVariant(T value, EVariantStoreFormat format)
    {
        const auto number = static_cast<std::underlying_type_t<T>>(value);
        const char* const key = std::in_range<int>(number)
                                    ? QMetaEnum::fromType<T>().valueToKey(static_cast<int>(number))
                                    : nullptr;
        return format == EVariantStoreFormat::Typed || !key ? QVariant::fromValue(value)
                                                            : QVariant(QString::fromLatin1(key));
    }
    [[nodiscard]] static std::optional<T> FromVariant(const QVariant& variant)
    {
        if (variant.metaType() == QMetaType::fromType<T>())
            return variant.value<T>();
        const QMetaEnum names = QMetaEnum::fromType<T>();
        bool isKnown = false;
        int number = names.keyToValue(variant.toString().toLatin1().constData(), &isKnown);
        if (!isKnown)
        {
            const QVariant read = VekQVariantDetails::ToType(variant, QMetaType::fromType<int>());
            number = read.toInt();
            if (!read.isValid() || !names.valueToKey(number))
                return std::nullopt;
        }
        return static_cast<T>(number);
    }
};

/// Other enumerations: readable as their number.
template <typename T>
    requires(std::is_enum_v<T> && !VekQVariantDetails::NamedEnum<T>)
struct VariantConverter<T>
{
    [[nodiscard]] static QVariant ToVariant(T value, EVariantStoreFormat format)
    {
        return format == EVariantStoreFormat::Typed ? QVariant::fromValue(value)
                                                    : QVariant::fromValue(static_cast<qint64>(value));
    }
    [[nodiscard]] static std::optional<T> FromVariant(const QVariant& variant)
    {
        if (variant.metaType() == QMetaType::fromType<T>())
            return variant.value<T>();
        const QVariant number = VekQVariantDetails::ToType(variant, QMetaType::fromType<qint64>());
        const auto value = static_cast<T>(number.toLongLong());
        // No other number comes out when this one fits.
        if (!number.isValid() || static_cast<qint64>(value) != number.toLongLong())
            return std::nullopt;
        return value;
    }
};

/// No value is kept as an invalid one.
template <typename T>
struct VariantConverter<std::optional<T>>
{
    [[nodiscard]] static QVariant ToVariant(const std::optional<T>& value, EVariantStoreFormat format)
    {
        return value ? VariantConverter<T>::ToVariant(*value, format) : QVariant();
    }
    [[nodiscard]] static std::optional<std::optional<T>> FromVariant(const QVariant& variant)
    {
        if (!variant.isValid())
            return std::optional<T>();
        if (auto value = VariantConverter<T>::FromVariant(variant))
            return std::optional<std::optional<T>>(std::in_place, std::move(value));
        return std::nullopt;
    }
};

namespace VekQVariantDetails
{
template <typename T>
concept List = requires(const T& list)
{
    VariantConverter<T>::ToItems(list, EVariantStoreFormat::Typed);
};

/// The same for an item of a list.
template <typename T>
[[nodiscard]] QVariant ToItem(const T& value, EVariantStoreFormat format)
{
    if constexpr (List<T>)
        if (format == EVariantStoreFormat::Readable)
            return ToReadableItem(VariantConverter<T>::ToItems(value, format));
    return VariantConverter<T>::ToVariant(value, format);
}
template <typename T>
[[nodiscard]] std::optional<T> FromItem(const QVariant& item)
{
    if constexpr (List<T>)
        if (item.typeId() == QMetaType::QString)
        {
            const auto items = SplitItem(item.toString());
            return items ? VariantConverter<T>::FromVariant(*items) : std::nullopt;
        }
    return VariantConverter<T>::FromVariant(item);
}
} // namespace VekQVariantDetails

/// Kept as a QVariantList; a list with an item that is no T is none.
template <typename T>
struct VariantConverter<std::vector<T>>
{
    [[nodiscard]] static QVariantList ToItems(const std::vector<T>& values, EVariantStoreFormat format)
    {
        QVariantList items;
        items.reserve(static_cast<qsizetype>(values.size()));
        for (const auto& value : values)
            items.push_back(VekQVariantDetails::ToItem<T>(value, format));
        return items;
    }
    [[nodiscard]] static QVariant ToVariant(const std::vector<T>& values, EVariantStoreFormat format)
    {
        const QVariantList items = ToItems(values, format);
        return format == EVariantStoreFormat::Typed ? QVariant(items) : VekQVariantDetails::ToReadable(items);
    }
    [[nodiscard]] static std::optional<std::vector<T>> FromVariant(const QVariant& variant)
    {
        std::vector<T> values;
        for (const QVariant& item : VekQVariantDetails::ToItems(variant))
        {
            auto value = VekQVariantDetails::FromItem<T>(item);
            if (!value)
                return std::nullopt;
            values.push_back(std::move(*value));
        }
        return values;
    }
};

/// As std::vector where it is to be readable.
template <typename T>
struct VariantConverter<QList<T>>
{
    using Vector = VariantConverter<std::vector<T>>;

    [[nodiscard]] static QVariantList ToItems(const QList<T>& values, EVariantStoreFormat format)
    {
        return Vector::ToItems(std::vector<T>(values.begin(), values.end()), format);
    }
    [[nodiscard]] static QVariant ToVariant(const QList<T>& values, EVariantStoreFormat format)
    {
        return format == EVariantStoreFormat::Typed ? QVariant::fromValue(values)
                                                    : VekQVariantDetails::ToReadable(ToItems(values, format));
    }
    [[nodiscard]] static std::optional<QList<T>> FromVariant(const QVariant& variant)
    {
        if (variant.metaType() == QMetaType::fromType<QList<T>>())
            return variant.value<QList<T>>();
        const auto values = Vector::FromVariant(variant);
        return values ? std::optional<QList<T>>(std::in_place, values->begin(), values->end()) : std::nullopt;
    }
};

/// Kept as a QVariantMap, readable as a list of keys and values in turn.
template <VekQVariantDetails::TextMap Map>
struct VariantConverter<Map>
{
    using Key = typename Map::key_type;
    using Value = typename Map::mapped_type;

    [[nodiscard]] static QVariantList ToItems(const Map& map, EVariantStoreFormat format)
    {
        QVariantList items;
        for (auto entry = map.begin(); entry != map.end(); ++entry)
            if constexpr (requires { entry.key(); })
                items << VariantConverter<Key>::ToVariant(entry.key(), format)
                      << VekQVariantDetails::ToItem<Value>(entry.value(), format);
            else
                items << VariantConverter<Key>::ToVariant(entry->first, format)
                      << VekQVariantDetails::ToItem<Value>(entry->second, format);
        return items;
    }
    [[nodiscard]] static QVariant ToVariant(const Map& map, EVariantStoreFormat format)
    {
        const QVariantList inTurn = ToItems(map, format);
        if (format == EVariantStoreFormat::Readable)
            return inTurn;
        QVariantMap entries;
        for (qsizetype i = 0; i < inTurn.size(); i += 2)
            entries.insert(inTurn[i].toString(), inTurn[i + 1]);
        return entries;
    }
    [[nodiscard]] static std::optional<Map> FromVariant(const QVariant& variant)
    {
        const std::optional<QVariantMap> entries = VekQVariantDetails::ToEntries(variant);
        if (!entries)
            return std::nullopt;
        Map map;
        for (auto entry = entries->begin(); entry != entries->end(); ++entry)
        {
            auto value = VekQVariantDetails::FromItem<Value>(entry.value());
            if (!value)
                return std::nullopt;
            map[*VariantConverter<Key>::FromVariant(entry.key())] = std::move(*value);
        }
        return map;
    }
};
} // namespace vek::App
