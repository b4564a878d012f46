#include "VekAppCore/Data/VariantConverter.h"
#include "Base/EnumText.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include "VekAppCore/Text/Convert.h"
#include <QDateTime>
#include <QStringList>
#include <cmath>

namespace vek::App::VekQVariantDetails
{
namespace
{
bool IsInteger(QMetaType type)
{
    switch (type.id())
    {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::SChar:
    case QMetaType::UChar: return true;
    default: return false;
    }
}

bool IsFloating(QMetaType type) { return type.id() == QMetaType::Double || type.id() == QMetaType::Float; }

/// ToItems gives something else than the value itself.
bool IsList(const QVariant& value)
{
    switch (value.typeId())
    {
    case QMetaType::QString:
    case QMetaType::QByteArray: return false;
    default:
        return value.metaType() == QMetaType::fromType<VekQVariantList>() || value.canConvert<QVariantList>();
    }
}

/// Comes back as it was from a text file, without our help.
bool IsPlain(QMetaType type)
{
    switch (type.id())
    {
    case QMetaType::UnknownType:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QPoint:
    case QMetaType::QSize:
    case QMetaType::QRect: return true;
    default: return false;
    }
}

/// Converts a number to another type of numbers; invalid when it does not fit.
QVariant ToNumber(const QVariant& number, QMetaType type)
{
    if (IsFloating(type))
    {
        // An integer that would come back as another one does not fit, nor does what becomes infinite.
        QVariant converted = number;
        if (!converted.convert(type))
            return {};
        const bool isKept = IsFloating(number.metaType())
                                ? std::isinf(converted.toDouble()) == std::isinf(number.toDouble())
                                : ToNumber(converted, number.metaType()) == number;
        return isKept ? converted : QVariant();
    }
    // By way of its text: all integers have one, and it is read with a check of the range.
    if (IsFloating(number.metaType()) && number.toDouble() != std::trunc(number.toDouble()))
        return {};
    Convert::NumberOptions options;
    options.notation = Convert::ENotation::Fixed;
    options.decimals = 0;
    QVariant converted;
    const QString text = IsFloating(number.metaType()) ? Convert::ToString(number.toDouble(), options)
                                                       : Convert::ToString(number);
    return Convert::FromString(text, type, converted) ? converted : QVariant();
}
} // namespace

QVariant ToReadable(const QVariant& value)
{
    if (IsPlain(value.metaType()))
        return value;
    QString text = Convert::ToString(value);
    QVariant back;
    const bool comesBack = Convert::FromString(text, value.metaType(), back) && back == value;
    // Times are equal that tell the same instant, whatever their zone.
    const bool isSameZone = value.typeId() != QMetaType::QDateTime ||
                            back.toDateTime().timeSpec() == value.toDateTime().timeSpec();
    return comesBack && isSameZone ? QVariant(text) : value;
}

QVariant ToReadable(const QVariantList& items)
{
    if (items.size() != 1)
        return items;
    if (items[0].isValid() && !IsList(items[0]))
        return items[0];
    VekQVariantList list;
    list.push_back(VekQVariant::From(items[0]));
    return QVariant::fromValue(list);
}

QVariant ToReadableItem(const QVariantList& items)
{
    QStringList texts;
    for (const QVariant& item : items)
    {
        if (!item.isValid() || !IsPlain(item.metaType()))
            return items;
        texts.push_back(Convert::ToString(item));
    }
    return Convert::ToString(texts);
}

std::optional<QStringList> SplitItem(const QString& text)
{
    QStringList items;
    return Convert::FromString(text, items) ? std::optional(items) : std::nullopt;
}

QVariant ToType(const QVariant& value, QMetaType type)
{
    if (value.metaType() == type)
        return value;
    const bool isNumber = IsInteger(value.metaType()) || IsFloating(value.metaType());
    if (isNumber && (IsInteger(type) || IsFloating(type)))
        return ToNumber(value, type);
    if (value.typeId() == QMetaType::QString)
    {
        QVariant read;
        return Convert::FromString(value.toString(), type, read) ? read : QVariant();
    }
    return {};
}

QVariantList ToItems(const QVariant& value)
{
    if (!value.isValid())
        return {};
    if (value.metaType() != QMetaType::fromType<VekQVariantList>())
        return IsList(value) ? value.toList() : QVariantList{value};
    QVariantList items;
    for (const VekQVariant& element : *static_cast<const VekQVariantList*>(value.constData()))
        items.push_back(element.ToQVariant());
    return items;
}

std::optional<QVariantMap> ToEntries(const QVariant& value)
{
    QVariantMap entries;
    if (value.metaType() == QMetaType::fromType<VekQVariantMap>())
    {
        for (const auto& [key, child] : *static_cast<const VekQVariantMap*>(value.constData()))
            entries.insert(key, child.ToQVariant());
        return entries;
    }
    switch (value.typeId())
    {
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: return value.toMap();
    case QMetaType::UnknownType: return entries; // an empty one in a text file
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
    {
        const QVariantList inTurn = value.toList();
        if (inTurn.size() % 2 != 0)
            return std::nullopt;
        for (qsizetype i = 0; i < inTurn.size(); i += 2)
        {
            if (inTurn[i].typeId() != QMetaType::QString || entries.contains(inTurn[i].toString()))
                return std::nullopt;
            entries.insert(inTurn[i].toString(), inTurn[i + 1]);
        }
        return entries;
    }
    default: return std::nullopt;
    }
}
} // namespace vek::App::VekQVariantDetails

namespace vek::App
{
std::string ToLogText(EVariantStoreFormat format)
{
    return Details::ToEnumText(format, EVariantStoreFormat::Typed, {"Typed", "Readable"});
}
} // namespace vek::App
