// The persisted form of variants, maps and lists. What is read may come from anywhere: it must neither
// exhaust the stack nor make us reserve more than a small multiple of the bytes that are there. Qt's own
// reading of a QVariant does both, so containers within it are read here, and only single values by Qt.
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QBitArray>
#include <QByteArrayList>
#include <QDataStream>
#include <QEasingCurve>
#include <QFont>
#include <QGuiApplication>
#include <QIODevice>
#include <QKeySequence>
#include <QPolygonF>
#include <QRegion>
#include <QTextFormat>
#include <QVarLengthArray>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace vek::App
{
namespace
{
constexpr qint32 currentVersion = 1;
constexpr int deepest = 512;
constexpr int userOfQt5 = 1024; ///< QMetaType::User of that time.

thread_local int g_depth = 0; // it nests through Qt, which passes nothing on

/// One level of nesting, for as long as it is read or written.
class Level
{
public:
    Level(QDataStream& stream, QDataStream::Status tooDeep)
    {
        if (++g_depth > deepest)
            stream.setStatus(tooDeep);
    }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    ~Level() { --g_depth; }
};

/// Another element may follow: where the stream has run out or gone bad, any count of them is a lie.
bool MayGoOn(QDataStream& stream)
{
    // A socket is at its end whenever the rest is still on its way.
    const bool canEnd = !stream.device() || !stream.device()->isSequential();
    if (stream.status() == QDataStream::Ok && canEnd && stream.atEnd())
        stream.setStatus(QDataStream::ReadPastEnd);
    return stream.status() == QDataStream::Ok;
}

void ReadValue(QDataStream& stream, QVariant& value);

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

/// Qt writes beyond its memory where the count of bits is absurd.
QBitArray ReadBits(QDataStream& stream)
{
    quint64 count = 0;
    if (stream.version() < QDataStream::Qt_6_0)
    {
        quint32 shortCount = 0;
        stream >> shortCount;
        count = shortCount;
    }
    else
        stream >> count;
    const auto there = static_cast<quint64>(stream.device() ? stream.device()->bytesAvailable() : 0);
    if (count > there * 8)
    {
        stream.setStatus(QDataStream::ReadPastEnd);
        return {};
    }
    QByteArray bytes(static_cast<qsizetype>((count + 7) / 8), '\0');
    stream.readRawData(bytes.data(), static_cast<int>(bytes.size()));
    if (count % 8 != 0 && static_cast<quint8>(bytes.back()) >> count % 8 != 0)
    {
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
    return QBitArray::fromBits(bytes.constData(), static_cast<qsizetype>(count));
}

/// Qt takes any number of keys into memory, and keeps four.
QKeySequence ReadKeySequence(QDataStream& stream)
{
    QList<int> keys;
    ReadList(stream, keys);
    keys.resize(4);
    return {keys[0], keys[1], keys[2], keys[3]};
}

/// Qt takes the address of a function from the stream, to call it.
QEasingCurve ReadEasingCurve(QDataStream& stream)
{
    quint8 type = 0;
    quint64 function = 0;
    bool hasParameters = false;
    stream >> type >> function >> hasParameters;
    if (type >= QEasingCurve::Custom)
    {
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
    QEasingCurve curve{static_cast<QEasingCurve::Type>(type)};
    if (!hasParameters)
        return curve;
    double period = 0;
    double amplitude = 0;
    double overshoot = 0;
    QPolygonF bezier;
    stream >> period >> amplitude >> overshoot;
    ReadList(stream, bezier);
    curve.setPeriod(period);
    curve.setAmplitude(amplitude);
    curve.setOvershoot(overshoot);
    for (qsizetype i = 0; type == QEasingCurve::BezierSpline && i + 2 < bezier.size(); i += 3)
        curve.addCubicBezierSegment(bezier[i], bezier[i + 1], bezier[i + 2]);
    quint32 count = 0;
    stream >> count;
    for (; count > 0 && MayGoOn(stream); --count)
    {
        QPointF point;
        std::array<double, 3> tcb{}; // tension, continuity, bias
        stream >> point >> tcb[0] >> tcb[1] >> tcb[2];
        if (type == QEasingCurve::TCBSpline)
            curve.addTCBSegment(point, tcb[0], tcb[1], tcb[2]);
    }
    return curve;
}

/// Qt goes on to whatever count a stream gives, and unites what is in no order one by one.
QRegion ReadRegion(QDataStream& stream)
{
    constexpr qint32 kindOfRectangles = 10;
    quint32 size = 0;
    qint32 kind = kindOfRectangles;
    stream >> size;
    if (size == 0)
        return {};
    QList<QRect> rectangles;
    stream >> kind;
    if (kind != kindOfRectangles)
        stream.setStatus(QDataStream::ReadCorruptData);
    ReadList(stream, rectangles);
    const auto isBehind = [](const QRect& next, const QRect& last) {
        const bool isSameBand = next.top() == last.top() && next.bottom() == last.bottom();
        return next.isValid() && (next.top() > last.bottom() || (isSameBand && next.left() > last.right()));
    };
    for (qsizetype i = 0; i < rectangles.size(); ++i)
        if (i == 0 ? !rectangles[i].isValid() : !isBehind(rectangles[i], rectangles[i - 1]))
        {
            stream.setStatus(QDataStream::ReadCorruptData);
            return {};
        }
    QRegion region;
    region.setRects(rectangles.constData(), static_cast<int>(rectangles.size()));
    return region;
}

QTextFormat ReadTextFormat(QDataStream& stream)
{
    constexpr qsizetype mostProperties = 1024; // Qt looks through all of them for each
    qint32 type = 0;
    stream >> type;
    QMap<qint32, QVariant> properties;
    ReadMap(stream, properties);
    QTextFormat format(type);
    if (properties.size() > mostProperties)
        stream.setStatus(QDataStream::ReadCorruptData);
    else
        for (auto property = properties.begin(); property != properties.end(); ++property)
            format.setProperty(property.key(), property.value());
    return format;
}

/// A QByteArray of UTF-8.
QString ReadKey(QDataStream& stream)
{
    std::array<char, 256> bytes;
    quint32 size = 0;
    stream >> size;
    if (size == ~quint32(0)) // null
        return {};
    if (size <= bytes.size())
    {
        const int read = stream.readRawData(bytes.data(), static_cast<int>(size));
        if (read != static_cast<int>(size))
            stream.setStatus(QDataStream::ReadPastEnd);
        return QString::fromUtf8(bytes.data(), std::max(read, 0));
    }
    QByteArray rest;
    for (constexpr quint32 step = 1 << 20; size > 0 && stream.status() == QDataStream::Ok;)
    {
        const qsizetype before = rest.size();
        const quint32 part = std::min(size, step);
        rest.resize(before + static_cast<qsizetype>(part));
        if (stream.readRawData(rest.data() + before, static_cast<int>(part)) != static_cast<int>(part))
            stream.setStatus(QDataStream::ReadPastEnd);
        size -= part;
    }
    return stream.status() == QDataStream::Ok ? QString::fromUtf8(rest) : QString();
}

/// They name files and hold pictures for the screen: what a stream says must not open a file.
bool IsRefused(int type) { return type == QMetaType::QIcon || type == QMetaType::QCursor; }

/// They end a program that has no QGuiApplication.
bool NeedsWindowSystem(int type)
{
    switch (type)
    {
    case QMetaType::QFont:
    case QMetaType::QPixmap:
    case QMetaType::QBrush:
    case QMetaType::QPalette:
    case QMetaType::QBitmap:
    case QMetaType::QPen: return true;
    default: return false;
    }
}

/// The number of a type as the present Qt has it.
int FromQt5(quint32 type)
{
    constexpr quint32 firstGui = 64;
    constexpr quint32 lastGui = 87;
    constexpr quint32 sizePolicy = 121;
    if (type == userOfQt5)
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
    case QMetaType::QVariant: ReadValue(stream, *static_cast<QVariant*>(contents)); return true;
    case QMetaType::QVariantPair:
    {
        auto& [first, second] = *static_cast<std::pair<QVariant, QVariant>*>(contents);
        ReadValue(stream, first);
        ReadValue(stream, second);
        return true;
    }
    case QMetaType::QBitArray: *static_cast<QBitArray*>(contents) = ReadBits(stream); return true;
    case QMetaType::QEasingCurve:
        *static_cast<QEasingCurve*>(contents) = ReadEasingCurve(stream);
        return true;
    case QMetaType::QRegion: *static_cast<QRegion*>(contents) = ReadRegion(stream); return true;
    case QMetaType::QTextFormat: *static_cast<QTextFormat*>(contents) = ReadTextFormat(stream); return true;
    case QMetaType::QKeySequence:
        *static_cast<QKeySequence*>(contents) = ReadKeySequence(stream);
        return true;
    default:
        if (IsRefused(type))
            return false;
        if (NeedsWindowSystem(type) && !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
            return false;
        try
        {
            // A font without a family crashes Qt when it is written again.
            return value.metaType().load(stream, contents) &&
                   (type != QMetaType::QFont || !static_cast<QFont*>(contents)->families().isEmpty());
        }
        catch (const std::bad_alloc&)
        {
            return false; // a count that Qt has believed
        }
    }
}

/// The kinds that most values are of, without the detour through their meta-types.
bool ReadFrequent(QDataStream& stream, int type, QVariant& value)
{
    const auto readAs = [&](auto contents) {
        stream >> contents;
        value = contents;
        return true;
    };
    switch (type)
    {
    case QMetaType::Bool: return readAs(false);
    case QMetaType::Int: return readAs(0);
    case QMetaType::LongLong: return readAs(qint64(0));
    case QMetaType::Double: return readAs(0.0);
    case QMetaType::QString: return readAs(QString());
    default: return false;
    }
}

/// The number of the type that is named, in this program.
int ReadTypeName(QDataStream& stream)
{
    constexpr quint32 longest = 1024;
    std::array<char, longest> name; // with the zero that ends it
    quint32 size = 0;
    stream >> size;
    if (size > 0 && size <= longest && stream.readRawData(name.data(), int(size)) == int(size))
    {
        const qsizetype length = qsizetype{size} - (name[size - 1] == '\0' ? 1 : 0);
        if (const int type = QMetaType::fromName({name.data(), length}).id())
            return type;
    }
    stream.setStatus(QDataStream::ReadCorruptData);
    return QMetaType::UnknownType;
}

/// As QVariant's own operator reads it.
void ReadValue(QDataStream& stream, QVariant& value)
{
    const Level level(stream, QDataStream::ReadCorruptData);
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
        type = ReadTypeName(stream);
    else if (type > QMetaType::User)
        stream.setStatus(QDataStream::ReadCorruptData); // of a program's own types only the names last
    if (type == QMetaType::UnknownType || stream.status() != QDataStream::Ok)
        return;
    if (!isNull && ReadFrequent(stream, type, value))
        return;
    if (!QMetaType::isRegistered(type))
    {
        stream.setStatus(QDataStream::ReadCorruptData);
        return;
    }
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

/// Writes as QDataStream does, but gathers the fields: a call of it costs more than most fields do.
class Writer : VekQVariantDetails::VariantAccessor
{
public:
    explicit Writer(QDataStream& stream) noexcept : m_stream(stream) {}

    void Write(const VekQVariant& node)
    {
        _WriteNumber(currentVersion);
        _WriteNumber(static_cast<quint8>(node.IsShared()));
        _WriteValue(GetValue(node));
    }

    void Write(const VekQVariantList& list)
    {
        _WriteNumber(currentVersion);
        _WriteNumber(static_cast<qint64>(list.size()));
        for (const VekQVariant& element : list)
            Write(element);
    }

    void Write(const VekQVariantMap& map)
    {
        _WriteNumber(currentVersion);
        _WriteNumber(static_cast<qint32>(map.GetGroups().size()));
        for (const QString& group : map.GetGroups())
            _WriteText(group);
        _WriteNumber(static_cast<qint64>(map.Size()));
        for (const auto& [key, value] : map)
        {
            _WriteKey(key);
            Write(value);
        }
    }

    /// To be called at the end.
    void Flush()
    {
        m_stream.writeRawData(m_bytes.constData(), static_cast<int>(m_bytes.size()));
        m_bytes.clear();
    }

private:
    void _WriteRaw(const void* data, std::size_t size)
    {
        m_bytes.append(static_cast<const char*>(data), static_cast<qsizetype>(size));
        if (m_bytes.size() > gathered)
            Flush();
    }

    template <typename T>
    void _WriteNumber(T number)
    {
        const T ordered = m_isBigEndian ? qToBigEndian(number) : qToLittleEndian(number);
        _WriteRaw(&ordered, sizeof ordered);
    }

    void _WriteBytes(const QByteArray& bytes)
    {
        _WriteNumber(bytes.isNull() ? ~quint32(0) : static_cast<quint32>(bytes.size()));
        _WriteRaw(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    }

    void _WriteKey(const QString& key)
    {
        std::array<char, 64> ascii;
        const auto size = static_cast<std::size_t>(key.size());
        bool isAscii = size > 0 && size <= ascii.size();
        for (std::size_t i = 0; isAscii && i < size; ++i)
        {
            const char16_t unit = key.utf16()[i];
            isAscii = unit < 0x80;
            ascii[i] = static_cast<char>(unit);
        }
        if (!isAscii)
        {
            _WriteBytes(key.toUtf8());
            return;
        }
        _WriteNumber(static_cast<quint32>(size));
        _WriteRaw(ascii.data(), size);
    }

    void _WriteText(const QString& text)
    {
        if (text.isNull())
        {
            _WriteNumber(~quint32(0));
            return;
        }
        _WriteNumber(static_cast<quint32>(text.size() * 2));
        for (const QChar unit : text)
            _WriteNumber(static_cast<quint16>(unit.unicode()));
    }

    void _WriteHead(int type, const QVariant& value)
    {
        _WriteNumber(static_cast<quint32>(type));
        _WriteNumber(static_cast<quint8>(value.isNull()));
    }

    template <typename T>
    void _WriteOwn(const QVariant& value)
    {
        _WriteHead(m_stream.version() < QDataStream::Qt_6_0 ? userOfQt5 : QMetaType::User, value);
        const char* const name = value.metaType().name();
        _WriteBytes(QByteArray::fromRawData(name, static_cast<qsizetype>(std::strlen(name)) + 1));
        Write(*static_cast<const T*>(value.constData()));
    }

    void _WriteValue(const QVariant& value)
    {
        const Level level(m_stream, QDataStream::WriteFailed);
        if (m_stream.status() == QDataStream::WriteFailed)
            return;
        const auto writeAs = [&](auto number) {
            _WriteHead(value.typeId(), value);
            _WriteNumber(number);
        };
        if (m_stream.version() >= QDataStream::Qt_5_0)
            switch (value.typeId())
            {
            case QMetaType::Bool: return writeAs(static_cast<quint8>(value.toBool()));
            case QMetaType::Int: return writeAs(value.toInt());
            case QMetaType::LongLong: return writeAs(value.toLongLong());
            case QMetaType::QString:
                _WriteHead(QMetaType::QString, value);
                return _WriteText(*static_cast<const QString*>(value.constData()));
            case QMetaType::Double:
                if (m_stream.floatingPointPrecision() == QDataStream::DoublePrecision)
                    return writeAs(std::bit_cast<quint64>(value.toDouble()));
                break;
            default:
                if (value.metaType() == QMetaType::fromType<VekQVariantMap>())
                    return _WriteOwn<VekQVariantMap>(value);
                if (value.metaType() == QMetaType::fromType<VekQVariantList>())
                    return _WriteOwn<VekQVariantList>(value);
            }
        Flush();
        if (value.isValid() &&
            (IsRefused(value.typeId()) || !value.metaType().hasRegisteredDataStreamOperators()))
            m_stream.setStatus(QDataStream::WriteFailed);
        else
            m_stream << value;
    }

    static constexpr qsizetype gathered = 4096;

    QDataStream& m_stream;
    const bool m_isBigEndian = m_stream.byteOrder() == QDataStream::BigEndian;
    QVarLengthArray<char, gathered + 256> m_bytes;
};

template <typename T>
QDataStream& Write(QDataStream& stream, const T& value)
{
    Writer writer(stream);
    writer.Write(value);
    writer.Flush();
    return stream;
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

QDataStream& operator<<(QDataStream& stream, const VekQVariant& node) { return Write(stream, node); }

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

QDataStream& operator<<(QDataStream& stream, const VekQVariantList& list) { return Write(stream, list); }

QDataStream& operator>>(QDataStream& stream, VekQVariantList& list)
{
    constexpr qint64 believed = 256; // of what a count says, before the elements are there
    qint32 version = 0;
    stream >> version;
    if (version != currentVersion)
        return stream;
    qint64 count = 0;
    stream >> count;
    list.reserve(static_cast<std::size_t>(std::clamp<qint64>(count, 0, believed)));
    for (; count > 0 && MayGoOn(stream); --count)
    {
        VekQVariant element;
        stream >> element;
        list.push_back(std::move(element));
    }
    return stream;
}

QDataStream& operator<<(QDataStream& stream, const VekQVariantMap& map) { return Write(stream, map); }

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
    if (!groups.isEmpty() || !map.GetGroups().isEmpty())
        map._State().groups = groups;

    qint64 count = 0;
    stream >> count;
    const QString prefix = map._FormatWithPrefix(QString());
    for (; count > 0 && MayGoOn(stream); --count)
    {
        QString key = ReadKey(stream);
        if (stream.status() != QDataStream::Ok)
            break;
        VekQVariant value;
        stream >> value;
        auto& entries = map._Entries();
        entries.insert_or_assign(entries.end(), prefix.isEmpty() ? std::move(key) : prefix + key,
                                 std::move(value));
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
