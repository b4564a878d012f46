#pragma once
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/Data/HPath.h"
#include "VekAppCore/Text/Convert.h"
#include <QVariant>
#include <functional>
#include <iosfwd>
#include <memory>
#include <source_location>
#include <variant>

class QDataStream;

namespace vek::App
{
class VekQVariant;

namespace VekQVariantDetails
{
/// The way of the stores to the QVariant in a node.
class VEKAPPCORE_EXPORT VariantAccessor
{
public:
    /// Selects FromQVariant.
    struct Tag
    {};

protected:
    [[nodiscard]] static VekQVariant FromQVariant(QVariant value);
    [[nodiscard]] static QVariant& GetValue(VekQVariant& node);
    [[nodiscard]] static const QVariant& GetValue(const VekQVariant& node);
};
} // namespace VekQVariantDetails

/// A node of a tree: a QVariant that may hold a VekQVariantMap (named children) or a VekQVariantList (indexed
/// children), and that may be shared.
///
/// A node owns its value, and copies of it are independent. After Share, copies of it refer to one value:
/// what is changed through one is seen through all. A moved-from node may only be destroyed or assigned to;
/// so may one that was left without a value by an exception in an assignment: reaching its value throws
/// std::bad_variant_access. Never put a shared node below itself: it would have no end. Reentrant; copies of
/// a shared node may be made and dropped on several threads, but the value that they share is not guarded.
class VEKAPPCORE_EXPORT VekQVariant
{
public:
    /// Owns an invalid value.
    VekQVariant() noexcept = default;
    VekQVariant(const VekQVariant&) = default;
    VekQVariant(VekQVariant&&) noexcept = default;
    /// Of any node, also of one below this one.
    VekQVariant& operator=(const VekQVariant& other) { return *this = VekQVariant(other); }
    VekQVariant& operator=(VekQVariant&& other)
    {
        VekQVariant taken(std::move(other)); // which may die with the value of before
        m_value = std::move(taken.m_value);
        return *this;
    }
    ~VekQVariant() = default;

    /// A node that owns @p value; others than the library use From.
    [[nodiscard]] static VekQVariant FromQVariant(QVariant value, VekQVariantDetails::VariantAccessor::Tag);
    /// A node that owns @p value, of any type of Qt's meta-type system.
    template <typename T>
    [[nodiscard]] static VekQVariant From(const T& value)
    {
        return FromQVariant(QVariant::fromValue(value), {});
    }

    /// The child of this name, made when there is none. A node that is no map becomes an empty one, and its
    /// value is lost.
    VekQVariant& operator[](const QString& key);
    /// @throws Exception::WrongTypeException  this is no map.
    /// @throws Exception::KeyNotFoundException  there is no such child.
    const VekQVariant& operator[](const QString& key) const;

    /// The child of this index; a shorter list is lengthened with invalid elements to hold it. A node that is
    /// no list becomes one, and its value is lost. References to elements end when a list is lengthened.
    /// @throws std::length_error  no list can be as long.
    VekQVariant& operator[](quint64 index);
    /// @throws Exception::WrongTypeException  this is no list.
    /// @throws std::out_of_range  it is too short.
    const VekQVariant& operator[](quint64 index) const;

    /// @{
    /// The node at the end of @p path; null when there is none. Goes through maps only: the elements of a
    /// list are not found.
    [[nodiscard]] VekQVariant* Find(const HPath& path);
    [[nodiscard]] const VekQVariant* Find(const HPath& path) const;
    /// @}

    /// @{
    /// The same, without taking the text apart first.
    [[nodiscard]] VekQVariant* Find(const QString& path);
    [[nodiscard]] const VekQVariant* Find(const QString& path) const;
    [[nodiscard]] VekQVariant* Find(const char* path) { return Find(HPath(path)); }
    [[nodiscard]] const VekQVariant* Find(const char* path) const { return Find(HPath(path)); }
    /// @}

    /// Replaces the held value, for all copies of a shared node.
    template <typename T>
    void SetValue(const T& value)
    {
        _Value() = QVariant::fromValue(value);
    }

    /// The held value.
    [[nodiscard]] QVariant ToQVariant() const { return _Value(); }

    /// @{
    /// The held value, to be read and changed in place.
    /// @throws Exception::WrongTypeException  it is no T.
    template <typename T>
    T& As(const std::source_location& where = std::source_location::current())
    {
        if (!Is<T>())
            _ThrowWrongType(where);
        return *static_cast<T*>(_Value().data());
    }
    template <typename T>
    const T& AsConst(const std::source_location& where = std::source_location::current()) const
    {
        if (!Is<T>())
            _ThrowWrongType(where);
        return *static_cast<const T*>(_Value().constData());
    }
    /// @}

    /// The held value is exactly a T.
    template <typename T>
    [[nodiscard]] bool Is() const
    {
        return _Value().metaType() == QMetaType::fromType<T>();
    }

    /// The held value is valid; that of a map or list is, also of an empty one.
    [[nodiscard]] bool HasValue() const { return _Value().isValid(); }

    /// Makes the value invalid, for all copies of a shared node.
    void Reset() { _Value().clear(); }

    /// Copies made from now on share the value.
    void Share();
    /// Takes a copy of the shared value as its own; the other copies keep sharing.
    void Unshare();
    /// Copies of it share the value.
    [[nodiscard]] bool IsShared() const noexcept { return m_value.index() == 1; }

    /// Swaps the values, not who shares them: the copies of a shared node see the new one.
    void Swap(VekQVariant& other);

    /// A copy that shares nothing with this node, nor does any node below it.
    [[nodiscard]] VekQVariant Clone() const;

    /// As Qt has it; empty for an invalid value.
    [[nodiscard]] QString TypeName() const;

    /// For display; see Convert::ToString.
    [[nodiscard]] QString ToString(const Convert::ListUnitNumberOptions& options = {}) const;

    /// @{
    /// Calls @p visitor for this node and all below it: a parent before its children, in the order of keys
    /// and indices. It may change the node that it is given.
    void Traverse(const std::function<void(const HPath& path, VekQVariant& node)>& visitor);
    void Traverse(const std::function<void(const HPath& path, const VekQVariant& node)>& visitor) const;
    /// @}

    /// Owned values are equal as Qt compares them; shared ones only when they are the same one, whatever they
    /// hold. An owned and a shared one differ.
    friend VEKAPPCORE_EXPORT bool operator==(const VekQVariant& a, const VekQVariant& b);

    /// A stream of another version is refused and the node stays as it is. The read value replaces the one of
    /// a shared node for all its copies.
    /// @throws Exception::WrongVersionException  as said; "Wrong version".
    friend VEKAPPCORE_EXPORT QDataStream& operator<<(QDataStream& stream, const VekQVariant& node);
    friend VEKAPPCORE_EXPORT QDataStream& operator>>(QDataStream& stream, VekQVariant& node);

private:
    friend class VekQVariantDetails::VariantAccessor;

    explicit VekQVariant(QVariant&& value) noexcept : m_value(std::in_place_index<0>, std::move(value)) {}

    [[nodiscard]] const QVariant& _Value() const
    {
        if (const QVariant* const owned = std::get_if<0>(&m_value)) [[likely]]
            return *owned;
        return *std::get<1>(m_value); // throws where there is neither
    }
    [[nodiscard]] QVariant& _Value() { return const_cast<QVariant&>(std::as_const(*this)._Value()); }
    [[noreturn]] static void _ThrowWrongType(const std::source_location& where);

    std::variant<QVariant, std::shared_ptr<QVariant>> m_value;
};

/// Equal whoever shares what: as if nothing were shared in either.
[[nodiscard]] VEKAPPCORE_EXPORT bool HasEqualContents(const VekQVariant& a, const VekQVariant& b);

/// Writes the tree to the log, one line a node.
VEKAPPCORE_EXPORT void DumpStructure(const VekQVariant& node);

/// Its type and value, and whether it is shared.
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const VekQVariant& node);
} // namespace vek::App
