// The persisted form of variants, maps and lists. What is read may come from anywhere: it must neither
// exhaust the stack nor make us reserve more than a small multiple of the bytes that are there. Qt's own
// reading of a QVariant does both, so containers within it are read here, and only single values by Qt.
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QByteArrayList>
#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>
#include <QKeySequence>
#include <QPolygonF>
#include <QTextFormat>
#include <algorithm>

namespace vek::App
{
namespace
{
constexpr qint32 currentVersion = 1;
constexpr int deepest = 512;

thread_local int g_depth = 0; // reading nests through Qt, which passes nothing on

/// One level of nesting, for as long as it is read.
class Level
{
public:
    explicit Level(QDataStream& stream)
    {
        if (++g_depth > deepest)
            stream.setStatus(QDataStream::ReadCorruptData);
    }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    ~Level() { --g_depth; }
};

/// Another element may follow: where the stream has run out or gone bad, any count of them is a lie.
bool MayGoOn(QDataStream& stream)
{
    if (stream.status() == QDataStream::Ok && stream.atEnd())
        stream.setStatus(QDataStream::ReadPastEnd);
    return stream.status() == QDataStream::Ok;
}

void ReadValue(QDataStream& stream, QVariant& value);

/// How many elements the rest of the stream can hold at most, to reserve for.
template <typename Count>
std::size_t GetPossibleCount(QDataStream& stream, Count count, qint64 leastElementBytes)
{
    const qint64 bytes = stream.device() ? stream.device()->bytesAvailable() : 0;
    return static_cast<std::size_t>(
        std::clamp<qint64>(static_cast<qint64>(count), 0, bytes / leastElementBytes));
}

template <typename Element>
void Read(QDataStream& stream, Element& element)
{
    stream >> element;
}
void Read(QDataStream& stream, QVariant& element) { ReadValue(stream, element); }

template <typename List>
void ReadList(QDataStream& stream, List& list)
{
    quint32 count = 0;
    stream >> count;
    for (; count > 0 && MayGoOn(stream); --count)
    {
        typename List::value_type element;
        Read(stream, element);
        list.push_back(std::move(element));
    }
}

template <typename Map>
void ReadMap(QDataStream& stream, Map& map)
{
    quint32 count = 0;
    stream >> count;
    for (; count > 0 && MayGoOn(stream); --count)
    {
        typename Map::key_type key{};
        QVariant value;
        stream >> key;
        ReadValue(stream, value);
        map.insert(key, value);
    }
}

QTextFormat ReadTextFormat(QDataStream& stream)
{
    qint32 type = 0;
    stream >> type;
    QMap<qint32, QVariant> properties;
    ReadMap(stream, properties);
    QTextFormat format(type);
    for (auto property = properties.begin(); property != properties.end(); ++property)
        format.setProperty(property.key(), property.value());
    return format;
}

/// They end a program that has no QGuiApplication.
bool NeedsWindowSystem(int type)
{
    switch (type)
    {
    case QMetaType::QFont:
    case QMetaType::QPixmap:
    case QMetaType::QBrush:
    case QMetaType::QPalette:
    case QMetaType::QIcon:
    case QMetaType::QBitmap:
    case QMetaType::QCursor:
    case QMetaType::QPen: return true;
    default: return false;
    }
}

/// The number of a type as the present Qt has it.
int FromQt5(quint32 type)
{
    constexpr quint32 user = 1024;
    constexpr quint32 firstGui = 64;
    constexpr quint32 lastGui = 87;
    constexpr quint32 sizePolicy = 121;
    if (type == user)
        return QMetaType::User;
    if (type >= firstGui && type <= lastGui)
        return static_cast<int>(type - firstGui) + QMetaType::FirstGuiType;
    if (type == sizePolicy)
        return QMetaType::QSizePolicy;
    return static_cast<int>(type);
}

/// Reads the contents of @p value, which has its type already.
bool ReadContents(QDataStream& stream, QVariant& value)
{
    // What Qt does too: the value is ours alone, and stays null where the stream says that it is.
    void* const contents = const_cast<void*>(value.constData());
    switch (const int type = value.typeId())
    {
    case QMetaType::QVariantList: ReadList(stream, *static_cast<QVariantList*>(contents)); return true;
    case QMetaType::QStringList: ReadList(stream, *static_cast<QStringList*>(contents)); return true;
    case QMetaType::QByteArrayList: ReadList(stream, *static_cast<QByteArrayList*>(contents)); return true;
    case QMetaType::QPolygon: ReadList(stream, *static_cast<QPolygon*>(contents)); return true;
    case QMetaType::QPolygonF: ReadList(stream, *static_cast<QPolygonF*>(contents)); return true;
    case QMetaType::QVariantMap: ReadMap(stream, *static_cast<QVariantMap*>(contents)); return true;
    case QMetaType::QVariantHash: ReadMap(stream, *static_cast<QVariantHash*>(contents)); return true;
    case QMetaType::QVariantPair:
    {
        auto& [first, second] = *static_cast<std::pair<QVariant, QVariant>*>(contents);
        ReadValue(stream, first);
        ReadValue(stream, second);
        return true;
    }
    case QMetaType::QTextFormat: *static_cast<QTextFormat*>(contents) = ReadTextFormat(stream); return true;
    default:
        if (NeedsWindowSystem(type) && !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
            return false;
        try
        {
            return value.metaType().load(stream, contents);
        }
        catch (const std::bad_alloc&)
        {
            return false; // a count that Qt has believed
        }
    }
}

/// As QVariant's own operator reads it.
void ReadValue(QDataStream& stream, QVariant& value)
{
    const Level level(stream);
    value.clear();
    if (!MayGoOn(stream))
        return;
    if (stream.version() < QDataStream::Qt_5_0)
    {
        stream >> value; // numbered types in yet another way
        return;
    }
    quint32 typeInStream = 0;
    bool isNull = false;
    stream >> typeInStream >> isNull;
    int type =
        stream.version() < QDataStream::Qt_6_0 ? FromQt5(typeInStream) : static_cast<int>(typeInStream);
    if (type == QMetaType::User)
    {
        QByteArray name; // with the zero that ends it
        stream >> name;
        type = QMetaType::fromName(name.constData()).id();
        if (type == QMetaType::UnknownType)
            stream.setStatus(QDataStream::ReadCorruptData);
    }
    if (type == QMetaType::UnknownType || stream.status() != QDataStream::Ok)
        return;
    QVariant read{QMetaType(type)};
    if (!read.isValid() || !ReadContents(stream, read))
    {
        stream.setStatus(QDataStream::ReadCorruptData);
        return;
    }
    if (!isNull)
        read.data(); // is not null any more
    value = std::move(read);
}

template <typename Element, typename Arrays>
QDataStream& WriteArray(QDataStream& stream, const Arrays& arrays)
{
    stream << static_cast<qint32>(arrays.size());
    for (const Element& element : arrays)
        stream << element;
    return stream;
}

template <typename Element, typename Arrays>
QDataStream& ReadArray(QDataStream& stream, Arrays& arrays)
{
    arrays.clear();
    qint32 count = 0;
    stream >> count;
    for (; count > 0 && MayGoOn(stream); --count)
        stream >> arrays.emplace_back();
    return stream;
}
} // namespace

QDataStream& operator<<(QDataStream& stream, const VekQVariant& node)
{
    return stream << currentVersion << node.IsShared() << node._Value();
}

QDataStream& operator>>(QDataStream& stream, VekQVariant& node)
{
    qint32 version = 0;
    stream >> version;
    if (version != currentVersion)
        throw Exception::WrongVersionException(QStringLiteral("Wrong version"));
    bool isShared = false;
    stream >> isShared;
    if (isShared)
        node.Share();
    else
        node.Unshare();
    ReadValue(stream, node._Value());
    return stream;
}

QDataStream& operator<<(QDataStream& stream, const VekQVariantList& list)
{
    stream << currentVersion << static_cast<qint64>(list.size());
    for (const VekQVariant& element : list)
        stream << element;
    return stream;
}

QDataStream& operator>>(QDataStream& stream, VekQVariantList& list)
{
    constexpr qint64 leastElementBytes = 4 + 1 + 4 + 1;
    qint32 version = 0;
    stream >> version;
    if (version != currentVersion)
        return stream;
    qint64 count = 0;
    stream >> count;
    list.reserve(GetPossibleCount(stream, count, leastElementBytes));
    for (; count > 0 && MayGoOn(stream); --count)
    {
        VekQVariant element;
        stream >> element;
        list.push_back(std::move(element));
    }
    return stream;
}

QDataStream& operator<<(QDataStream& stream, const VekQVariantMap& map)
{
    stream << currentVersion << static_cast<qint32>(map._Groups().size());
    for (const QString& group : map._Groups())
        stream << group;
    stream << static_cast<qint64>(map.Size());
    for (const auto& [key, value] : map)
        stream << key.toUtf8() << value;
    return stream;
}

QDataStream& operator>>(QDataStream& stream, VekQVariantMap& map)
{
    qint32 version = 0;
    stream >> version;
    if (version != currentVersion)
        return stream;

    const QDataStream::Status before = stream.status();
    stream.resetStatus();
    QList<QString> groups;
    ReadList(stream, groups);
    if (stream.status() != QDataStream::Ok)
        groups.clear();
    if (before != QDataStream::Ok)
    {
        stream.resetStatus();
        stream.setStatus(before);
    }
    if (!groups.isEmpty() || !map._Groups().isEmpty())
        map._State().groups = groups;

    qint64 count = 0;
    stream >> count;
    const QString prefix = map._FormatWithPrefix(QString());
    for (; count > 0 && MayGoOn(stream); --count)
    {
        QByteArray key;
        stream >> key;
        VekQVariant value;
        stream >> value;
        auto& entries = map._Entries();
        entries.insert_or_assign(entries.end(), prefix + QString::fromUtf8(key), std::move(value));
    }
    return stream;
}
} // namespace vek::App

namespace eastl
{
QDataStream& operator<<(QDataStream& stream, const VekQVariantMaps& maps)
{
    return vek::App::WriteArray<vek::App::VekQVariantMap>(stream, maps);
}
QDataStream& operator>>(QDataStream& stream, VekQVariantMaps& maps)
{
    return vek::App::ReadArray<vek::App::VekQVariantMap>(stream, maps);
}
QDataStream& operator<<(QDataStream& stream, const VekQVariantLists& lists)
{
    return vek::App::WriteArray<vek::App::VekQVariantList>(stream, lists);
}
QDataStream& operator>>(QDataStream& stream, VekQVariantLists& lists)
{
    return vek::App::ReadArray<vek::App::VekQVariantList>(stream, lists);
}
} // namespace eastl
