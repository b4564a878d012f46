#pragma once
#include "VekAppCore/Data/VariantConverter.h"
#include "VekAppCore/Data/VekQVariant.h"
#include "VekBase/ScopeBase.h"
#include <optional>
#include <string_view>

namespace vek::App
{
/// A store of named values, in memory or in the settings. Names are paths with slashes between their parts;
/// BeginGroup makes later names relative to a group.
class VEKAPPCORE_EXPORT IVariantMap : protected VekQVariantDetails::VariantAccessor
{
public:
    virtual ~IVariantMap();

    /// There is a value under this key.
    [[nodiscard]] virtual bool Contains(const QString& key) const = 0;

    /// The keys that begin with @p prefix, as text: "ab" finds "abc" and "ab/x" alike. Every store says what
    /// an empty prefix gives, and whether the keys are full or relative to the group.
    [[nodiscard]] virtual QList<QString> AllKeys(const QString& prefix) const = 0;

    /// @return false when there was nothing to remove.
    virtual bool RemoveValue(const QString& key) = 0;
    /// Removes all values, whatever groups are open.
    virtual void ClearValues() = 0;
    /// @{
    /// Names are relative to @p name, within the groups that are open, until EndGroup; see ScopeGroup.
    virtual void BeginGroup(const QString& name) = 0;
    virtual void EndGroup() = 0;
    /// @}

    /// Typed, unless a store says otherwise.
    [[nodiscard]] virtual EVariantStoreFormat PreferedStoreFormat() const;

    /// An invalid value when there is none.
    [[nodiscard]] virtual VekQVariant GetValueAsVariant(const QString& key) const = 0;
    /// Keeps @p value as it is; see SetValue.
    virtual void SetValueAsVariant(const QString& key, VekQVariant value) = 0;

    /// Takes over every value of @p other; what only this one has stays.
    void Append(const IVariantMap& other);

    /// The key "group/key" has a value.
    [[nodiscard]] bool Contains(const QString& group, const QString& key) const;

    /// Removes what AllKeys gives, by RemoveValue: within a group that prefixes full keys once more, and
    /// finds none of them.
    void RemoveValues(const QString& prefix);

    /// The group is open until the scope ends, which this store outlives.
    [[nodiscard]] ScopeBase ScopeGroup(const QString& name);

    /// Empty when there is no value or it is no T: a text is read as Convert does, a number must fit. T is
    /// every type that VariantConverter knows.
    template <typename T>
    [[nodiscard]] std::optional<T> GetValue(const QString& key) const
    {
        if (!Contains(key))
            return std::nullopt;
        const VekQVariant node = GetValueAsVariant(key);
        if constexpr (std::is_same_v<T, VekQVariant>)
            return node;
        else
            return VariantConverter<T>::FromVariant(VariantAccessor::GetValue(node));
    }
    /// The same, or @p defaultValue.
    template <typename T>
    [[nodiscard]] T GetValue(const QString& key, T defaultValue) const
    {
        auto value = GetValue<T>(key);
        return value ? std::move(*value) : std::move(defaultValue);
    }
    /// @param defaultValue  UTF-8.
    [[nodiscard]] QString GetValue(const QString& key, const char* defaultValue) const
    {
        return GetValue(key, QString::fromUtf8(defaultValue));
    }
    /// Keeps @p value in the form that this store prefers; a literal or a view of text as a QString, which
    /// is read from UTF-8 where it is one of bytes.
    template <typename T>
    void SetValue(const QString& key, const T& value)
    {
        if constexpr (std::is_same_v<T, VekQVariant>)
            SetValueAsVariant(key, value);
        else if constexpr (std::is_convertible_v<const T&, std::string_view> && !std::is_class_v<T>)
            SetValueAsVariant(key, FromQVariant(QString::fromUtf8(value)));
        else if constexpr (std::is_same_v<T, std::string_view>)
            SetValueAsVariant(key, FromQVariant(QString::fromUtf8(value.data(), qsizetype(value.size()))));
        else if constexpr (std::is_same_v<T, QStringView> || std::is_same_v<T, QLatin1String>)
            SetValueAsVariant(key, FromQVariant(QString(value.toString())));
        else
        {
            static_assert(!std::is_pointer_v<T>, "An address means nothing in a store");
            SetValueAsVariant(key,
                              FromQVariant(VariantConverter<T>::ToVariant(value, PreferedStoreFormat())));
        }
    }

protected:
    IVariantMap() = default;
    IVariantMap(const IVariantMap&) = default;
    IVariantMap& operator=(const IVariantMap&) = default;
};
} // namespace vek::App
