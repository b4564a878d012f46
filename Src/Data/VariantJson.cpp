#include "VekAppCore/Data/VariantJson.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QJsonArray>
#include <QJsonObject>
#include <cmath>

namespace vek::App
{
namespace
{
constexpr int deepest = 512;

class Writer
{
public:
    QJsonValue Write(const HPath& path, const VekQVariant& node)
    {
        if (node.IsShared())
            _AddLoss(path, QStringLiteral("sharing is left out"));
        if (node.Is<VekQVariantMap>())
            return _WriteMap(path, node.AsConst<VekQVariantMap>());
        if (node.Is<VekQVariantList>())
        {
            QJsonArray array;
            quint64 index = 0;
            for (const VekQVariant& element : node.AsConst<VekQVariantList>())
                array.push_back(Write(path / QString::number(index++), element));
            return array;
        }
        return _WriteValue(path, node);
    }

    QStringList losses;

private:
    void _AddLoss(const HPath& path, const QString& loss) { losses += path.ToString() + ": " + loss; }

    QJsonValue _WriteMap(const HPath& path, const VekQVariantMap& map)
    {
        if (!map.GetGroups().isEmpty())
            _AddLoss(path, QStringLiteral("open groups are left out"));
        QJsonObject object;
        for (const auto& [key, child] : map)
            object.insert(key, Write(path / key, child));
        return object;
    }

    QJsonValue _WriteValue(const HPath& path, const VekQVariant& node)
    {
        const QVariant value = node.ToQVariant();
        switch (value.typeId())
        {
        case QMetaType::UnknownType: return QJsonValue::Null;
        case QMetaType::Bool: return value.toBool();
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong: return value.toLongLong();
        case QMetaType::QString: return value.toString();
        case QMetaType::Float:
        case QMetaType::Double:
            // Qt writes minus zero as 0.
            if (const double number = value.toDouble();
                std::isfinite(number) && !(number == 0 && std::signbit(number)))
                return number;
            break;
        default: break;
        }
        _AddLoss(path, QStringLiteral("%1 is kept as text").arg(node.TypeName()));
        return node.ToString();
    }
};

VekQVariant Read(const QJsonValue& value, int depth)
{
    if (depth > deepest)
        throw Exception::OutOfRangeException(QStringLiteral("JSON is nested too deep"));
    switch (value.type())
    {
    case QJsonValue::Bool: return VekQVariant::From(value.toBool());
    case QJsonValue::String: return VekQVariant::From(value.toString());
    case QJsonValue::Double:
    {
        const QVariant number = value.toVariant(); // a qlonglong where it is whole
        return number.typeId() == QMetaType::LongLong ? VekQVariant::From(number.toLongLong())
                                                      : VekQVariant::From(value.toDouble());
    }
    case QJsonValue::Array:
    {
        VekQVariantList list;
        for (const QJsonValue element : value.toArray())
            list.push_back(Read(element, depth + 1));
        return VekQVariant::From(list);
    }
    case QJsonValue::Object:
    {
        VekQVariantMap map;
        const QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member)
            map[member.key()] = Read(member.value(), depth + 1);
        return VekQVariant::From(map);
    }
    default: return {};
    }
}
} // namespace

VariantJson ToJson(const VekQVariant& node)
{
    Writer writer;
    QJsonValue value = writer.Write({}, node);
    return {std::move(value), std::move(writer.losses)};
}

VekQVariant FromJson(const QJsonValue& value) { return Read(value, 1); }
} // namespace vek::App
