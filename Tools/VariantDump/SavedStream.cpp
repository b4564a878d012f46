#include "VariantDump/SavedStream.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QDataStream>
#include <QIODevice>
#include <map>

namespace vek::VariantDump
{
namespace
{
using App::HPath;
using App::VekQVariant;
using App::VekQVariantList;
using App::VekQVariantMap;

constexpr qsizetype longestText = 200;

/// Reads a T even where reading it throws: what was read until then is kept.
template <typename T>
QString ReadInto(QDataStream& stream, T& value)
{
    try
    {
        stream >> value;
    }
    catch (const Exception::WrongVersionException&)
    {
        return QStringLiteral("a variant of a version that is not 1, or none");
    }
    switch (stream.status())
    {
    case QDataStream::ReadPastEnd: return QStringLiteral("cut off");
    case QDataStream::ReadCorruptData:
        return QStringLiteral("an unknown type, broken data or more than 512 levels");
    default: return stream.atEnd() ? QString() : QStringLiteral("bytes are left over");
    }
}

SavedStream ReadAs(const QByteArray& bytes, EKind kind, int version)
{
    SavedStream saved{{}, kind, version, 0, {}};
    QDataStream stream(bytes);
    stream.setVersion(version);
    switch (kind)
    {
    case EKind::Variant: saved.problem = ReadInto(stream, saved.tree); break;
    case EKind::Map:
    {
        VekQVariantMap map;
        saved.problem = ReadInto(stream, map);
        saved.tree = VekQVariant::From(map);
        break;
    }
    case EKind::List:
    {
        VekQVariantList list;
        saved.problem = ReadInto(stream, list);
        saved.tree = VekQVariant::From(list);
        break;
    }
    }
    saved.end = stream.device()->pos();
    if (saved.problem.isEmpty())
        return saved;
    QString last;
    std::as_const(saved.tree).Traverse([&last](const HPath& path, const VekQVariant&) {
        last = '/' + path.ToString();
    });
    saved.problem = QStringLiteral("byte %1 of %2, behind or in %3: %4")
                        .arg(QString::number(saved.end), QString::number(bytes.size()), last, saved.problem);
    return saved;
}

QString Describe(const VekQVariant& node)
{
    QString text = '(' + (node.HasValue() ? node.TypeName() : QStringLiteral("invalid")) + ')';
    if (node.IsShared())
        text += QStringLiteral(" shared");
    if (node.Is<VekQVariantMap>())
    {
        const QList<QString>& groups = node.AsConst<VekQVariantMap>().GetGroups();
        return groups.isEmpty() ? text : text + QStringLiteral(" in ") + groups.join(u'/');
    }
    if (node.Is<VekQVariantList>() || !node.HasValue())
        return text;
    QString value = node.ToString();
    if (value.size() > longestText)
        value = value.first(longestText) + QStringLiteral("...");
    return text + QStringLiteral(": ") + value.replace(u'\n', QStringLiteral("\\n"));
}

struct Description
{
    QString text;
    VekQVariant node;
};

std::map<QString, Description> DescribeAll(const VekQVariant& tree)
{
    std::map<QString, Description> descriptions;
    tree.Traverse([&descriptions](const HPath& path, const VekQVariant& node) {
        descriptions.emplace('/' + path.ToString(), Description{Describe(node), node});
    });
    return descriptions;
}

bool IsSame(const Description& a, const Description& b)
{
    const bool isContainer = a.node.Is<VekQVariantMap>() || a.node.Is<VekQVariantList>();
    return a.text == b.text && (isContainer || HasEqualContents(a.node, b.node));
}
} // namespace

SavedStream Read(const QByteArray& bytes, const Reading& reading)
{
    std::optional<SavedStream> best;
    for (const EKind kind : {EKind::Variant, EKind::Map, EKind::List})
        for (const int version : {int(QDataStream::Qt_6_0), int(QDataStream::Qt_5_15)})
        {
            const int usedVersion = reading.streamVersion.value_or(version);
            if (reading.kind.value_or(kind) != kind)
                continue;
            SavedStream saved = ReadAs(bytes, kind, usedVersion);
            if (saved.problem.isEmpty())
                return saved;
            if (!best || saved.end > best->end)
                best = std::move(saved);
        }
    return *best;
}

QStringList ToLines(const VekQVariant& tree)
{
    QStringList lines;
    tree.Traverse([&lines](const HPath& path, const VekQVariant& node) {
        const QList<QString>& segments = path.GetSegments();
        const QString name = segments.isEmpty() ? QStringLiteral("/") : segments.last();
        lines += QString(segments.size() * 2, u' ') + name + ' ' + Describe(node);
    });
    return lines;
}

QStringList Compare(const VekQVariant& a, const VekQVariant& b)
{
    const auto ofA = DescribeAll(a);
    const auto ofB = DescribeAll(b);
    QStringList lines;
    for (const auto& [path, description] : ofA)
    {
        const auto other = ofB.find(path);
        if (other == ofB.end())
            lines += path + QStringLiteral(" only in the first: ") + description.text;
        else if (!IsSame(description, other->second))
            lines += path + QStringLiteral(" differs: ") + description.text + QStringLiteral(" | ") +
                     other->second.text;
    }
    for (const auto& [path, description] : ofB)
        if (!ofA.contains(path))
            lines += path + QStringLiteral(" only in the second: ") + description.text;
    return lines;
}
} // namespace vek::VariantDump
