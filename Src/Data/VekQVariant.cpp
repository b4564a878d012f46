#include "VekAppCore/Data/VekQVariant.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QDebug>
#include <algorithm>
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

/// Calls @p visit with the container that @p value holds, when it holds one that nodes may lie in.
template <typename Value, typename Visitor>
void VisitContainer(Value& value, const Visitor& visit)
{
    const auto visitAs = [&]<typename Container>(const Container*) {
        if (value.metaType() != QMetaType::fromType<Container>())
            return false;
        if constexpr (std::is_const_v<Value>)
            visit(*static_cast<const Container*>(value.constData()));
        else
            visit(*static_cast<Container*>(value.data()));
        return true;
    };
    const auto visitAny = [&](const auto*... none) { return (visitAs(none) || ...); };
    visitAny(static_cast<VekQVariantMap*>(nullptr), static_cast<VekQVariantList*>(nullptr),
             static_cast<VekQVariant*>(nullptr), static_cast<VekQVariantMaps*>(nullptr),
             static_cast<VekQVariantLists*>(nullptr), static_cast<QVariantList*>(nullptr),
             static_cast<QVariantMap*>(nullptr));
}

/// The entry of a map, or the item of a list.
auto& GetItem(auto& item) { return item; }
template <typename Key, typename Value>
Value& GetItem(std::pair<Key, Value>& entry)
{
    return entry.second;
}
template <typename Key, typename Value>
const Value& GetItem(const std::pair<Key, Value>& entry)
{
    return entry.second;
}

class Sharing : VekQVariantDetails::VariantAccessor
{
public:
    template <typename T>
    static bool IsAny(const T& tree)
    {
        bool isAny = false;
        if constexpr (std::is_same_v<T, VekQVariant>)
            isAny = tree.IsShared() || IsAny(GetValue(tree));
        else if constexpr (std::is_same_v<T, QVariant>)
            VisitContainer(tree, [&isAny](const auto& container) { isAny = IsAny(container); });
        else
            for (const auto& item : tree)
                isAny = isAny || IsAny(GetItem(item));
        return isAny;
    }

    template <typename T>
    static void Drop(T& tree)
    {
        if (!IsAny(tree))
            return; // nor is anything copied
        if constexpr (std::is_same_v<T, VekQVariant>)
        {
            tree.Unshare();
            Drop(GetValue(tree));
        }
        else if constexpr (std::is_same_v<T, QVariant>)
            VisitContainer(tree, [](auto& container) { Drop(container); });
        else
            for (auto& item : tree)
                Drop(GetItem(item));
    }
};
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
    if (index >= VekQVariantList().max_size())
        throw std::length_error("VekQVariantList");
    if (!Is<VekQVariantList>())
        _Value() = QVariant::fromValue(VekQVariantList(index + 1));
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
    Sharing::Drop(clone);
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

bool HasEqualContents(const VekQVariant& a, const VekQVariant& b) { return a.Clone() == b.Clone(); }

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

std::string ToLogText(const VekQVariant& node)
{
    QString text;
    QDebug(&text).nospace() << "VekQVariant(" << (node.IsShared() ? "shared, " : "") << node.TypeName()
                            << ", " << node.ToString() << ')';
    return text.toStdString();
}
} // namespace vek::App
