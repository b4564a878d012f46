#pragma once
#include "VekAppCore/Data/IVariantMap.h"
#include "VekBase/Memory.h"
#include <QSharedData>
#include <algorithm>
#include <bit>
#include <cstring>
#include <map>
#include <vector>

namespace vek::App
{
namespace VekQVariantDetails
{
/// The order of QString, open to views.
struct KeyLess
{
    using is_transparent = void;
    bool operator()(QStringView a, QStringView b) const noexcept
    {
        // Keys are short and begin alike: four units at a time, where they fit.
        const char16_t* aUnits = a.utf16();
        const char16_t* bUnits = b.utf16();
        const char16_t* const end = aUnits + (std::min)(a.size(), b.size());
        for (; end - aUnits >= 4; aUnits += 4, bUnits += 4)
        {
            std::uint64_t aFour;
            std::uint64_t bFour;
            std::memcpy(&aFour, aUnits, sizeof aFour);
            std::memcpy(&bFour, bUnits, sizeof bFour);
            if (const std::uint64_t difference = aFour ^ bFour)
            {
                const int bit = std::endian::native == std::endian::little ? std::countr_zero(difference)
                                                                           : std::countl_zero(difference);
                return aUnits[bit / 16] < bUnits[bit / 16];
            }
        }
        for (; aUnits != end; ++aUnits, ++bUnits)
            if (*aUnits != *bUnits)
                return *aUnits < *bUnits;
        return a.size() < b.size();
    }
};
} // namespace VekQVariantDetails

/// Named values in memory, and what a node holds to have named children. Keys are full paths with slashes
/// between their parts. Copies share the entries until one of them is changed. Reentrant.
///
/// @code
/// App::VekQVariantMap map;
/// map.SetValue("size/x", 120.5);
/// const std::optional<double> x = map.GetValue<double>("size/x");
/// const double y = map.GetValue("size/y", 0.0);
/// @endcode
class VEKAPPCORE_EXPORT VekQVariantMap : public IVariantMap
{
public:
    /// @{
    /// Keys and values, in the order of keys.
    using Entries = std::map<QString, VekQVariant, VekQVariantDetails::KeyLess,
                             Allocator<std::pair<const QString, VekQVariant>>>;
    using iterator = Entries::iterator;
    using const_iterator = Entries::const_iterator;
    /// @}

    VekQVariantMap() noexcept;
    VekQVariantMap(const VekQVariantMap&) noexcept;
    VekQVariantMap(VekQVariantMap&&) noexcept;
    VekQVariantMap& operator=(const VekQVariantMap&) noexcept;
    VekQVariantMap& operator=(VekQVariantMap&&) noexcept;
    ~VekQVariantMap() override;

    [[nodiscard]] bool Contains(const QString& key) const override;
    using IVariantMap::Contains;

    /// Full keys, in order; all of them, whatever groups are open, for an empty prefix. Another prefix is
    /// relative to the open groups.
    [[nodiscard]] QList<QString> AllKeys(const QString& prefix) const override;
    bool RemoveValue(const QString& key) override;
    /// Groups stay open.
    void ClearValues() override;
    /// @param name  kept as it is, slashes included.
    void BeginGroup(const QString& name) override;
    /// Does nothing without an open group.
    void EndGroup() override;
    [[nodiscard]] EVariantStoreFormat PreferedStoreFormat() const override;
    /// A copy, which shares the value of a shared one.
    [[nodiscard]] VekQVariant GetValueAsVariant(const QString& key) const override;
    void SetValueAsVariant(const QString& key, VekQVariant value) override;

    /// The entry of exactly this key, whatever groups are open; made, with an invalid value, when there is
    /// none.
    VekQVariant& operator[](const QString& key);
    const VekQVariant& operator[](const QString& key) const { return At(key); }

    /// @{
    /// The entry of exactly this key, whatever groups are open.
    /// @throws Exception::KeyNotFoundException  there is none.
    VekQVariant& At(const QString& key, const std::source_location& where = std::source_location::current());
    const VekQVariant& At(const QString& key,
                          const std::source_location& where = std::source_location::current()) const;
    /// @}

    /// @{
    /// As At, but null when there is none.
    [[nodiscard]] VekQVariant* Find(QStringView key);
    [[nodiscard]] const VekQVariant* Find(QStringView key) const;
    /// @}

    /// Of all groups.
    [[nodiscard]] std::size_t Size() const noexcept;

    /// @{
    /// Pairs of key and value, in the order of keys.
    iterator begin();
    iterator end();
    const_iterator begin() const noexcept;
    const_iterator end() const noexcept;
    /// @}

    /// @{
    /// The text under the key "{type}", whatever groups are open; empty without one.
    [[nodiscard]] QString GetType() const;
    void SetType(const QString& type);
    /// @}

    /// Of what SetValue keeps from now on.
    void SetPreferedStoreFormat(EVariantStoreFormat format);

    /// The open ones, outermost first.
    [[nodiscard]] const QList<QString>& GetGroups() const noexcept;

    /// Equal entries and equal open groups.
    friend VEKAPPCORE_EXPORT bool operator==(const VekQVariantMap& a, const VekQVariantMap& b);

    friend VEKAPPCORE_EXPORT QDataStream& operator<<(QDataStream& stream, const VekQVariantMap& map);
    /// Adds to the entries; a stream of another version is left as it is. Groups are read as well, and keys
    /// are put into them: what was written within a group comes back within it twice.
    /// @throws Exception::WrongVersionException  one of the values has another version.
    friend VEKAPPCORE_EXPORT QDataStream& operator>>(QDataStream& stream, VekQVariantMap& map);

private:
    struct EntryData : QSharedData, AllocatedObject
    {
        Entries entries;
    };
    /// What few maps have. Apart, so that a QVariant holds a map without an allocation of its own.
    struct StateData : QSharedData, AllocatedObject
    {
        QList<QString> groups; ///< Outermost first.
        EVariantStoreFormat format = EVariantStoreFormat::Typed;
    };

    [[nodiscard]] QString _FormatWithPrefix(const QString& key) const;
    [[nodiscard]] Entries& _Entries();
    [[nodiscard]] const Entries& _Entries() const noexcept;
    [[nodiscard]] StateData& _State();

    QSharedDataPointer<EntryData> m_entries; ///< Null while nothing was entered.
    QSharedDataPointer<StateData> m_state;   ///< Null without groups and with the default format.
};

/// What a node holds to have indexed children.
class VEKAPPCORE_EXPORT VekQVariantList : public std::vector<VekQVariant>
{
public:
    using vector::vector;
    VekQVariantList() = default;
    VekQVariantList(const VekQVariantList&) = default;
    VekQVariantList(VekQVariantList&&) noexcept = default;
    /// Of any list, also of one below this one.
    VekQVariantList& operator=(VekQVariantList other) noexcept
    {
        swap(other);
        return *this;
    }
    ~VekQVariantList() = default;

    friend VEKAPPCORE_EXPORT QDataStream& operator<<(QDataStream& stream, const VekQVariantList& list);
    /// Adds to the elements; a stream of another version is left as it is.
    /// @throws Exception::WrongVersionException  one of the elements has another version.
    friend VEKAPPCORE_EXPORT QDataStream& operator>>(QDataStream& stream, VekQVariantList& list);
};

/// Keys and values in braces, values in brackets; containers in them show their size.
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const VekQVariantMap& map);
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const VekQVariantList& list);
} // namespace vek::App

// The array types of saved files, which name them so. The second argument is written out: a defaulted one
// would be left out of the name.
namespace eastl
{
class allocator;

template <typename T, typename Allocator>
class vector : public std::vector<T>
{
public:
    using std::vector<T>::vector;
};

using VekQVariantMaps = vector<vek::App::VekQVariantMap, eastl::allocator>;
using VekQVariantLists = vector<vek::App::VekQVariantList, eastl::allocator>;

/// The elements of before are dropped.
VEKAPPCORE_EXPORT QDataStream& operator<<(QDataStream& stream, const VekQVariantMaps& maps);
VEKAPPCORE_EXPORT QDataStream& operator>>(QDataStream& stream, VekQVariantMaps& maps);
VEKAPPCORE_EXPORT QDataStream& operator<<(QDataStream& stream, const VekQVariantLists& lists);
VEKAPPCORE_EXPORT QDataStream& operator>>(QDataStream& stream, VekQVariantLists& lists);
} // namespace eastl

namespace vek::App
{
/// @{
/// Arrays as saved files have them.
using VekQVariantMaps = eastl::VekQVariantMaps;
using VekQVariantLists = eastl::VekQVariantLists;
/// @}
} // namespace vek::App

Q_DECLARE_TYPEINFO(vek::App::VekQVariantMap, Q_RELOCATABLE_TYPE);
