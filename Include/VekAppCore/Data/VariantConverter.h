#pragma once
#include "VekAppCore/Export.h"
#include <QFlags>
#include <QMap>
#include <QMetaEnum>
#include <QString>
#include <QVariant>
#include <concepts>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_map>
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

namespace VekQVariantDetails
{
/// @p value, where it would not be readable in a text file, as text, when that brings it back.
[[nodiscard]] VEKAPPCORE_EXPORT QVariant ToReadable(const QVariant& value);
/// Of a list of one its item, where that is not read as another list: text files keep no list of one.
[[nodiscard]] VEKAPPCORE_EXPORT QVariant ToReadable(const QVariantList& items);

/// @p value as a value of @p type, when it is one, a number that fits, or a text of one; else invalid.
[[nodiscard]] VEKAPPCORE_EXPORT QVariant ToType(const QVariant& value, QMetaType type);

/// The items of any kind of list; one that is no list, as text files give of a list of one, is its only item.
[[nodiscard]] VEKAPPCORE_EXPORT QVariantList ToItems(const QVariant& value);

/// The entries of any kind of map, or of a list of keys and values in turn.
[[nodiscard]] VEKAPPCORE_EXPORT std::optional<QVariantMap> ToEntries(const QVariant& value);

template <typename T>
concept NamedEnum = std::is_enum_v<T> && bool(QtPrivate::IsQEnumHelper<T>::Value);
} // namespace VekQVariantDetails

/// How the typed access of the stores turns a T into a QVariant and back. An application specialises it for a
/// type that Qt's meta-type system does not know, or that it wants to keep in another form.
template <typename T>
struct VariantConverter
{
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

template <>
struct VariantConverter<QVariant>
{
    [[nodiscard]] static QVariant ToVariant(const QVariant& value, EVariantStoreFormat) { return value; }
    [[nodiscard]] static std::optional<QVariant> FromVariant(const QVariant& variant) { return variant; }
};

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

/// Enumerations and flags that Qt knows by Q_ENUM, Q_FLAG and their like: readable by name.
template <VekQVariantDetails::NamedEnum T>
struct VariantConverter<T>
{
    [[nodiscard]] static QVariant ToVariant(T value, EVariantStoreFormat format)
    {
        const int number = static_cast<int>(value);
        const char* const key = QMetaEnum::fromType<T>().valueToKey(number);
        if (format == EVariantStoreFormat::Typed)
            return QVariant::fromValue(value);
        return key ? QVariant(QString::fromLatin1(key)) : QVariant(number);
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
    using Number = std::underlying_type_t<T>;

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
        if (!number.isValid() || !std::in_range<Number>(number.toLongLong()))
            return std::nullopt;
        return static_cast<T>(number.toLongLong());
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

/// Kept as a QVariantList; a list with an item that is no T is none.
template <typename T>
struct VariantConverter<std::vector<T>>
{
    [[nodiscard]] static QVariant ToVariant(const std::vector<T>& values, EVariantStoreFormat format)
    {
        QVariantList items;
        items.reserve(static_cast<qsizetype>(values.size()));
        for (const auto& value : values)
            items.push_back(VariantConverter<T>::ToVariant(value, format));
        return format == EVariantStoreFormat::Typed ? QVariant(items) : VekQVariantDetails::ToReadable(items);
    }
    [[nodiscard]] static std::optional<std::vector<T>> FromVariant(const QVariant& variant)
    {
        std::vector<T> values;
        for (const QVariant& item : VekQVariantDetails::ToItems(variant))
        {
            auto value = VariantConverter<T>::FromVariant(item);
            if (!value)
                return std::nullopt;
            values.push_back(std::move(*value));
        }
        return values;
    }
};

/// As std::vector where it is to be readable.
template <typename T>
    requires(!std::same_as<T, QString> && !std::same_as<T, QVariant>)
struct VariantConverter<QList<T>>
{
    using Items = VariantConverter<std::vector<T>>;

    [[nodiscard]] static QVariant ToVariant(const QList<T>& values, EVariantStoreFormat format)
    {
        return format == EVariantStoreFormat::Typed
                   ? QVariant::fromValue(values)
                   : Items::ToVariant(std::vector<T>(values.begin(), values.end()), format);
    }
    [[nodiscard]] static std::optional<QList<T>> FromVariant(const QVariant& variant)
    {
        if (variant.metaType() == QMetaType::fromType<QList<T>>())
            return variant.value<QList<T>>();
        const auto values = Items::FromVariant(variant);
        return values ? std::optional<QList<T>>(std::in_place, values->begin(), values->end()) : std::nullopt;
    }
};

namespace VekQVariantDetails
{
/// Maps from text: kept as a QVariantMap, readable as a list of keys and values in turn.
template <typename Map>
struct MapConverter
{
    using Value = typename Map::mapped_type;

    [[nodiscard]] static QVariant ToVariant(const Map& map, EVariantStoreFormat format)
    {
        QVariantMap entries;
        QVariantList inTurn;
        for (auto entry = map.begin(); entry != map.end(); ++entry)
        {
            const auto& [key, value] = [&entry] {
                if constexpr (requires { entry.key(); })
                    return std::pair<const QString&, const Value&>(entry.key(), entry.value());
                else
                    return std::pair<const QString&, const Value&>(entry->first, entry->second);
            }();
            const QVariant kept = VariantConverter<Value>::ToVariant(value, format);
            if (format == EVariantStoreFormat::Typed)
                entries.insert(key, kept);
            else
                inTurn << key << kept;
        }
        return format == EVariantStoreFormat::Typed ? QVariant(entries) : QVariant(inTurn);
    }
    [[nodiscard]] static std::optional<Map> FromVariant(const QVariant& variant)
    {
        const std::optional<QVariantMap> entries = ToEntries(variant);
        if (!entries)
            return std::nullopt;
        Map map;
        for (auto entry = entries->begin(); entry != entries->end(); ++entry)
        {
            auto value = VariantConverter<Value>::FromVariant(entry.value());
            if (!value)
                return std::nullopt;
            map[entry.key()] = std::move(*value);
        }
        return map;
    }
};
} // namespace VekQVariantDetails

template <typename T>
struct VariantConverter<std::map<QString, T>> : VekQVariantDetails::MapConverter<std::map<QString, T>>
{};
template <typename T>
struct VariantConverter<std::unordered_map<QString, T>>
    : VekQVariantDetails::MapConverter<std::unordered_map<QString, T>>
{};
template <typename T>
    requires(!std::same_as<T, QVariant>)
struct VariantConverter<QMap<QString, T>> : VekQVariantDetails::MapConverter<QMap<QString, T>>
{};
} // namespace vek::App
