#include "VekAppCore/Data/VekQVariant.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QDebug>
#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace vek::App
{
namespace
{
// Qt finds a type by its name in a stream once it has been registered.
const bool isRegistered = [] {
    qRegisterMetaType<VekQVariant>();
    qRegisterMetaType<VekQVariantMap>();
    qRegisterMetaType<VekQVariantList>();
    qRegisterMetaType<VekQVariantMaps>();
    qRegisterMetaType<VekQVariantLists>();
    return true;
}();

template <typename T>
const T* Peek(const VekQVariant& node)
{
    return node.Is<T>() ? &node.AsConst<T>() : nullptr;
}

/// Null where the node is no map, or has no such child.
const VekQVariant* FindChild(const VekQVariant& node, QStringView name)
{
    const auto* const children = Peek<VekQVariantMap>(node);
    return children ? children->Find(name) : nullptr;
}
VekQVariant* FindChild(VekQVariant& node, QStringView name)
{
    return node.Is<VekQVariantMap>() ? node.As<VekQVariantMap>().Find(name) : nullptr;
}

template <typename Node>
Node* FindNode(Node* node, const QList<QString>& path)
{
    for (auto segment = path.begin(); node && segment != path.end(); ++segment)
        node = FindChild(*node, *segment);
    return node;
}

template <typename Node>
Node* FindNode(Node* node, QStringView path)
{
    while (node && !path.isEmpty())
    {
        const qsizetype end = path.indexOf(u'/');
        if (end != 0)
            node = FindChild(*node, path.first(end < 0 ? path.size() : end));
        path = end < 0 ? QStringView() : path.sliced(end + 1);
    }
    return node;
}

template <typename Node, typename Visitor>
void Visit(QList<QString>& path, Node& node, const Visitor& visitor)
{
    visitor(HPath(path), node);
    const auto visitChild = [&](const QString& name, auto& child) {
        path.push_back(name);
        Visit(path, child, visitor);
        path.pop_back();
    };
    if (node.template Is<VekQVariantMap>())
    {
        auto& children = [&node]() -> auto&
        {
            if constexpr (std::is_const_v<Node>)
                return node.template AsConst<VekQVariantMap>();
            else
                return node.template As<VekQVariantMap>();
        }
        ();
        for (auto& [key, child] : children)
            visitChild(key, child);
    }
    else if (node.template Is<VekQVariantList>())
    {
        auto& elements = [&node]() -> auto&
        {
            if constexpr (std::is_const_v<Node>)
                return node.template AsConst<VekQVariantList>();
            else
                return node.template As<VekQVariantList>();
        }
        ();
        for (std::size_t index = 0; index < elements.size(); ++index)
            visitChild(QString::number(index), elements[index]);
    }
}

bool IsAnyShared(const VekQVariant& node)
{
    if (node.IsShared())
        return true;
    if (const auto* const children = Peek<VekQVariantMap>(node))
        return std::ranges::any_of(*children, [](const auto& entry) { return IsAnyShared(entry.second); });
    if (const auto* const elements = Peek<VekQVariantList>(node))
        return std::ranges::any_of(*elements, IsAnyShared);
    return false;
}

void UnshareAll(VekQVariant& node)
{
    if (!IsAnyShared(node))
        return; // nor is anything copied
    node.Unshare();
    if (node.Is<VekQVariantMap>())
        for (auto& [key, child] : node.As<VekQVariantMap>())
            UnshareAll(child);
    else if (node.Is<VekQVariantList>())
        for (VekQVariant& element : node.As<VekQVariantList>())
            UnshareAll(element);
}
} // namespace

namespace VekQVariantDetails
{
VekQVariant VariantAccessor::FromQVariant(QVariant value)
{
    return VekQVariant::FromQVariant(std::move(value), {});
}
QVariant& VariantAccessor::GetValue(VekQVariant& node) { return node._Value(); }
const QVariant& VariantAccessor::GetValue(const VekQVariant& node) { return node._Value(); }
} // namespace VekQVariantDetails

VekQVariant VekQVariant::FromQVariant(QVariant value, VekQVariantDetails::VariantAccessor::Tag)
{
    return VekQVariant(std::move(value));
}

VekQVariant& VekQVariant::operator[](const QString& key)
{
    if (!Is<VekQVariantMap>())
        _Value() = QVariant::fromValue(VekQVariantMap());
    return As<VekQVariantMap>()[key];
}

const VekQVariant& VekQVariant::operator[](const QString& key) const
{
    return AsConst<VekQVariantMap>().At(key);
}

VekQVariant& VekQVariant::operator[](quint64 index)
{
    if (!Is<VekQVariantList>())
        _Value() = QVariant::fromValue(VekQVariantList());
    auto& elements = As<VekQVariantList>();
    if (index >= elements.size())
        elements.resize(index + 1);
    return elements[index];
}

const VekQVariant& VekQVariant::operator[](quint64 index) const
{
    const auto& elements = AsConst<VekQVariantList>();
    if (index >= elements.size())
        throw std::out_of_range("vector::at -- out of range");
    return elements[index];
}

VekQVariant* VekQVariant::Find(const HPath& path) { return FindNode(this, path.GetSegments()); }
const VekQVariant* VekQVariant::Find(const HPath& path) const { return FindNode(this, path.GetSegments()); }
VekQVariant* VekQVariant::Find(const QString& path) { return FindNode(this, QStringView(path)); }
const VekQVariant* VekQVariant::Find(const QString& path) const { return FindNode(this, QStringView(path)); }

void VekQVariant::Share()
{
    if (!IsShared())
        m_value = std::make_shared<QVariant>(std::move(_Value()));
}

void VekQVariant::Unshare()
{
    if (IsShared())
        m_value = QVariant(_Value());
}

void VekQVariant::Swap(VekQVariant& other) { _Value().swap(other._Value()); }

VekQVariant VekQVariant::Clone() const
{
    VekQVariant clone = FromQVariant(_Value(), {});
    UnshareAll(clone);
    return clone;
}

QString VekQVariant::TypeName() const { return QString::fromLatin1(_Value().typeName()); }

QString VekQVariant::ToString(const Convert::ListUnitNumberOptions& options) const
{
    return Convert::ToString(_Value(), options);
}

void VekQVariant::Traverse(const std::function<void(const HPath&, VekQVariant&)>& visitor)
{
    QList<QString> path;
    Visit(path, *this, visitor);
}

void VekQVariant::Traverse(const std::function<void(const HPath&, const VekQVariant&)>& visitor) const
{
    QList<QString> path;
    Visit(path, *this, visitor);
}

void VekQVariant::_ThrowWrongType(const std::source_location& where)
{
    throw Exception::WrongTypeException(QStringLiteral("Wrong type"), where);
}

bool operator==(const VekQVariant& a, const VekQVariant& b) { return a.m_value == b.m_value; }

bool HasEqualContents(const VekQVariant& a, const VekQVariant& b)
{
    const auto* const children = Peek<VekQVariantMap>(a);
    const auto* const otherChildren = Peek<VekQVariantMap>(b);
    if (children && otherChildren)
        return std::ranges::equal(*children, *otherChildren, [](const auto& one, const auto& other) {
            return one.first == other.first && HasEqualContents(one.second, other.second);
        });
    const auto* const elements = Peek<VekQVariantList>(a);
    const auto* const otherElements = Peek<VekQVariantList>(b);
    if (elements && otherElements)
        return std::ranges::equal(*elements, *otherElements, HasEqualContents);
    return a.ToQVariant() == b.ToQVariant();
}

void DumpStructure(const VekQVariant& node)
{
    Convert::ListUnitNumberOptions options;
    options.separator = QStringLiteral("; ");
    node.Traverse([&options](const HPath& path, const VekQVariant& visited) {
        Log(static_cast<Log::Verbosity>(4),
            QStringLiteral("%1 (%2): %3")
                .arg(path.ToString(), visited.TypeName(), visited.ToString(options)));
    });
}

QDebug operator<<(QDebug debug, const VekQVariant& node)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "VekQVariant(" << (node.IsShared() ? "shared, " : "") << node.TypeName() << ", "
                    << node.ToString() << ')';
    return debug;
}

void PrintTo(const VekQVariant& node, std::ostream* out)
{
    QString text;
    QDebug(&text).nospace() << node;
    *out << text.toStdString();
}
} // namespace vek::App
