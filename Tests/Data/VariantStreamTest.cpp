#include "Support/TestSupport.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QBitArray>
#include <QByteArrayList>
#include <QColor>
#include <QDataStream>
#include <QDate>
#include <QEasingCurve>
#include <QFile>
#include <QFont>
#include <QIODevice>
#include <QIcon>
#include <QKeySequence>
#include <QLineF>
#include <QPen>
#include <QPointF>
#include <QPolygon>
#include <QRect>
#include <QRegion>
#include <QTextCharFormat>
#include <QUuid>
#include <cmath>
#include <gtest/gtest.h>

namespace vek::App
{
namespace
{
template <typename T>
VekQVariant Node(const T& value)
{
    return VekQVariant::From(value);
}

QByteArray ReadGolden(const QString& name)
{
    QFile file(QStringLiteral(VEK_GOLDEN_FOLDER "/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

template <typename T>
QByteArray Write(const T& value, int version)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream << value;
    return bytes;
}

/// Bytes as GoogleTest shows them best.
std::string Hex(const QByteArray& bytes) { return bytes.toHex(' ').toStdString(); }

struct Read
{
    QDataStream::Status status;
    bool isWhole; ///< Nothing is left.
    bool isVersionRefused;
};

template <typename T>
Read ReadInto(T& target, const QByteArray& bytes, int version)
{
    QDataStream stream(bytes);
    stream.setVersion(version);
    bool isVersionRefused = false;
    try
    {
        stream >> target;
    }
    catch (const Exception::WrongVersionException& exception)
    {
        isVersionRefused = true;
        EXPECT_STREQ(exception.what(), "Wrong version");
    }
    return {stream.status(), stream.atEnd(), isVersionRefused};
}

VekQVariantMap MakeValues()
{
    VekQVariantMap map;
    map["invalid"];
    map["bool"] = Node(true);
    map["int"] = Node(-5);
    map["uint"] = Node(4'000'000'000U);
    map["longlong"] = Node(std::numeric_limits<qint64>::min());
    map["ulonglong"] = Node(std::numeric_limits<quint64>::max());
    map["double"] = Node(12.5);
    map["float"] = Node(0.25F);
    map["string"] = Node(QStringLiteral(u"\u00c4\u4e2d\U0001f600"));
    map["string/null"] = VekQVariant::FromQVariant(QVariant(QMetaType::fromType<QString>()), {});
    map["strings"] = Node(QStringList{"a", ""});
    map["bytes"] = Node(QByteArray("\0\xff", 2));
    map["date"] = Node(QDate(2026, 11, 21));
    map["time"] = Node(QTime(1, 1, 1, 1));
    map["point"] = Node(QPoint(1, -2));
    map["pointf"] = Node(QPointF(0.5, -1));
    map["color"] = Node(QColor(0x12, 0x34, 0x56));
    map["list"] = Node(QVariantList{1, "b"});
    map["map"] = Node(QVariantMap{{"k", 2}});
    return map;
}

VekQVariant MakeNested()
{
    VekQVariant inner;
    inner["x"] = Node(7);
    inner.As<VekQVariantMap>().SetType("Inner");
    VekQVariant tree;
    tree["a"] = inner;
    tree["b"][0] = Node(7);
    tree["b"][2] = inner;
    tree["b/c"] = Node(7);
    return tree;
}

VekQVariant MakeShared()
{
    VekQVariant tree;
    tree["s"] = Node(-0.0);
    tree["s"].Share();
    tree.Share();
    return tree;
}

VekQVariantMap MakeGroups()
{
    VekQVariantMap map;
    map.BeginGroup("g");
    map.BeginGroup("h");
    map.SetValueAsVariant("k", Node(1));
    return map;
}

VekQVariant MakeMaps()
{
    VekQVariantMaps maps(2);
    maps[0]["k"] = Node(1);
    return Node(maps);
}

VekQVariant MakeLists()
{
    VekQVariantLists lists(2);
    lists[1].push_back(Node(false));
    return Node(lists);
}

VekQVariantList MakeVariants()
{
    VekQVariantList list;
    list.push_back(Node(Node(3)));
    return list;
}

template <typename T>
void CheckGolden(const char* name, const T& value)
{
    for (const auto& [suffix, version] :
         {std::pair(".qt5.bin", QDataStream::Qt_5_15), std::pair(".qt6.bin", QDataStream::Qt_6_0)})
    {
        SCOPED_TRACE(std::string(name) + suffix);
        const QByteArray golden = ReadGolden(QString(name) + suffix);
        ASSERT_EQ(Hex(Write(value, version)), Hex(golden));
        T back;
        const Read read = ReadInto(back, golden, version);
        EXPECT_EQ(read.status, QDataStream::Ok);
        EXPECT_TRUE(read.isWhole && !read.isVersionRefused);
        if (std::string(name) != "groups") // those come back twice
        {
            EXPECT_EQ(Hex(Write(back, version)), Hex(golden));
        }

        // Cut off at every byte: what is there is taken, the rest is told, and nothing else happens.
        for (qsizetype size = 0; size < golden.size(); ++size)
        {
            T cut;
            const Read part = ReadInto(cut, golden.first(size), version);
            const bool isIgnoredVersion = size < 4 && !std::is_same_v<T, VekQVariant>;
            EXPECT_TRUE(part.status != QDataStream::Ok || part.isVersionRefused || isIgnoredVersion) << size;
            ReadInto(cut, golden, version); // whatever is left of it, it can be used
        }
    }
}

TEST(VariantStream, GoldenFilesAreWrittenReadAndSurviveCutting)
{
    CheckGolden("values", MakeValues());
    CheckGolden("nested", MakeNested());
    CheckGolden("shared", MakeShared());
    CheckGolden("groups", MakeGroups());
    CheckGolden("maps", MakeMaps());
    CheckGolden("lists", MakeLists());
    CheckGolden("variants", MakeVariants());
}

TEST(VariantStream, EmptyMapTakesSixteenBytes)
{
    EXPECT_EQ(Write(VekQVariantMap(), QDataStream::Qt_6_0).toHex(), "00000001"
                                                                    "00000000"
                                                                    "0000000000000000");
}

TEST(VariantStream, ReadingAddsToMapsAndListsAndPrefixesGroupsAgain)
{
    VekQVariantMap map;
    map["old"] = Node(0);
    map.BeginGroup("dropped");
    ReadInto(map, ReadGolden("groups.qt6.bin"), QDataStream::Qt_6_0);
    EXPECT_EQ(map.AllKeys(""), QStringList({"g/h/g/h/k", "old"}));
    EXPECT_FALSE(map.Contains("k"));
    map.EndGroup();
    EXPECT_EQ(map.AllKeys("h"), QStringList("g/h/g/h/k")); // the groups are open

    VekQVariantList list;
    for (int i = 0; i < 2; ++i)
        ReadInto(list, ReadGolden("variants.qt6.bin"), QDataStream::Qt_6_0);
    EXPECT_EQ(list.size(), 2U);

    VekQVariantMaps maps(7);
    const QByteArray array = Write(VekQVariantMaps(2), QDataStream::Qt_6_0);
    ReadInto(maps, array, QDataStream::Qt_6_0);
    EXPECT_EQ(maps.size(), 2U); // the ones of before are gone
}

TEST(VariantStream, ReadValueReplacesThatOfASharedNodeForAll)
{
    VekQVariant node = Node(1);
    node.Share();
    const VekQVariant partner = node;
    ReadInto(node, ReadGolden("shared.qt6.bin"), QDataStream::Qt_6_0);
    EXPECT_TRUE(node.IsShared());
    EXPECT_TRUE(partner.Is<VekQVariantMap>());
    ReadInto(node, ReadGolden("nested.qt6.bin"), QDataStream::Qt_6_0);
    EXPECT_FALSE(node.IsShared());
    EXPECT_TRUE(partner["s"].HasValue()); // it has gone its own way
}

/// As QDataStream writes it.
template <typename T>
QByteArray Big(T number)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << number;
    return bytes;
}
QByteArray Text(const QByteArray& text) { return Big(static_cast<quint32>(text.size())) + text; }
QByteArray User(const char* name, const QByteArray& contents)
{
    return Big(quint32(65536)) + '\0' + Text(QByteArray(name) + '\0') + contents;
}
QByteArray NodeOf(const QByteArray& variant) { return Big(qint32(1)) + '\0' + variant; }
QByteArray Repeat(const QByteArray& part, int count) { return part.repeated(count); }

struct HostileCase
{
    const char* fault;
    QByteArray variant; ///< What stands where a QVariant is to be read.
    QDataStream::Status status;
    bool isVersionRefused = false;
    bool isKept = false; ///< A value, if only a part of one, was read.
};
void PrintTo(const HostileCase& row, std::ostream* out) { *out << row.fault; }
class HostileStream : public testing::TestWithParam<HostileCase>
{};

TEST_P(HostileStream, IsToldAndCostsNothing)
{
    VekQVariant node = Node(1);
    const Read read = ReadInto(node, NodeOf(GetParam().variant), QDataStream::Qt_6_0);
    EXPECT_EQ(read.status, GetParam().status);
    EXPECT_EQ(read.isVersionRefused, GetParam().isVersionRefused);
    EXPECT_EQ(node.HasValue(), GetParam().isKept);
}

constexpr const char* mapName = "vek::App::VekQVariantMap";
constexpr const char* listName = "vek::App::VekQVariantList";
const QByteArray countless = Big(qint64(1) << 62);
const QByteArray listStart = User(listName, Big(qint32(1)) + Big(qint64(1))) + Big(qint32(1)) + '\0';
const QByteArray qtListStart = Big(quint32(QMetaType::QVariantList)) + '\0' + Big(quint32(1));
const QByteArray pairStart = Big(quint32(QMetaType::QVariantPair)) + '\0';

INSTANTIATE_TEST_SUITE_P(
    Rows, HostileStream,
    testing::Values(
        HostileCase{"list of 2^62 believed", User(listName, Big(qint32(1)) + countless),
                    QDataStream::ReadPastEnd, false, true},
        HostileCase{"negative list read", User(listName, Big(qint32(1)) + Big(qint64(-1))), QDataStream::Ok,
                    false, true},
        HostileCase{"map of 2^62 believed", User(mapName, Big(qint32(1)) + Big(qint32(0)) + countless),
                    QDataStream::ReadPastEnd, false, true},
        HostileCase{"2^32 - 1 groups believed", User(mapName, Big(qint32(1)) + Big(qint32(-1))),
                    QDataStream::ReadPastEnd, false, true},
        HostileCase{"array of 2^31 maps believed",
                    User("eastl::vector<vek::App::VekQVariantMap,eastl::allocator>",
                         Big(qint32(0x7fffffff)) + Big(qint32(2))),
                    QDataStream::ReadPastEnd, false, true},
        HostileCase{"version of an element ignored",
                    User(listName, Big(qint32(1)) + Big(qint64(1)) + Big(qint32(2))), QDataStream::Ok, true},
        HostileCase{"version of a list refused", User(listName, Big(qint32(2)) + countless), QDataStream::Ok,
                    false, true},
        HostileCase{"unknown type taken", User("no::Type", {}), QDataStream::ReadCorruptData},
        HostileCase{"type without contents taken", Big(quint32(QMetaType::Void)) + '\0',
                    QDataStream::ReadCorruptData},
        HostileCase{"unknown number taken", Big(quint32(60'000)) + '\0', QDataStream::ReadCorruptData},
        HostileCase{"a million lists overflow the stack", Repeat(listStart, 1'000'000),
                    QDataStream::ReadCorruptData, false, true},
        HostileCase{"a million lists of Qt overflow it", Repeat(qtListStart, 1'000'000),
                    QDataStream::ReadCorruptData, false, true},
        HostileCase{"a million variants in variants overflow it",
                    Repeat(Big(quint32(QMetaType::QVariant)) + '\0', 1'000'000), QDataStream::ReadCorruptData,
                    false, true},
        HostileCase{"a million pairs overflow it", Repeat(pairStart, 1'000'000), QDataStream::ReadCorruptData,
                    false, true},
        HostileCase{"list of Qt reserved for 2^32 - 1",
                    Big(quint32(QMetaType::QVariantList)) + '\0' + Big(~quint32(0)), QDataStream::ReadPastEnd,
                    false, true},
        HostileCase{"strings reserved for 2^32 - 1",
                    Big(quint32(QMetaType::QStringList)) + '\0' + Big(~quint32(0)), QDataStream::ReadPastEnd,
                    false, true},
        HostileCase{"polygon reserved for 2^32 - 1",
                    Big(quint32(QMetaType::QPolygonF)) + '\0' + Big(~quint32(0)), QDataStream::ReadPastEnd,
                    false, true},
        HostileCase{"bits of 2^63 written beyond memory",
                    Big(quint32(QMetaType::QBitArray)) + '\0' + Big(quint64(0xfffff600258eb600)) + "padding",
                    QDataStream::ReadPastEnd, false, true},
        HostileCase{"bits beyond their count taken",
                    Big(quint32(QMetaType::QBitArray)) + '\0' + Big(quint64(3)) + '\x0f',
                    QDataStream::ReadCorruptData, false, true},
        HostileCase{"nested lists reserved for 2^62 each",
                    Repeat(User(listName, Big(qint32(1)) + countless) + Big(qint32(1)) + '\0', 500) +
                        QByteArray(1 << 20, '\1'),
                    QDataStream::ReadCorruptData, false, true},
        HostileCase{"name of a type reserved for 2^31", Big(quint32(65536)) + '\0' + Big(quint32(0x7ffffffe)),
                    QDataStream::ReadCorruptData},
        HostileCase{"number of a program's own type taken", Big(quint32(65537)) + '\0',
                    QDataStream::ReadCorruptData},
        HostileCase{"address of a function called",
                    Big(quint32(QMetaType::QEasingCurve)) + '\0' + char(QEasingCurve::Custom) +
                        Big(~quint64(0)) + '\0',
                    QDataStream::ReadCorruptData, false, true},
        HostileCase{"rectangles in no order united one by one",
                    Big(quint32(QMetaType::QRegion)) + '\0' + Big(quint32(40)) + Big(qint32(10)) +
                        Big(quint32(2)) + Big(QRect(5, 5, 1, 1)) + Big(QRect(0, 0, 1, 1)),
                    QDataStream::ReadCorruptData, false, true},
        HostileCase{"keys reserved for 2^32 - 1",
                    Big(quint32(QMetaType::QKeySequence)) + '\0' + Big(~quint32(0)), QDataStream::ReadPastEnd,
                    false, true},
        HostileCase{"font without a family kept",
                    Big(quint32(QMetaType::QFont)) + '\0' + QByteArray(60, '\0'),
                    QDataStream::ReadCorruptData},
        HostileCase{"icon opens a file", Big(quint32(QMetaType::QIcon)) + '\0' + Big(QString("engine")),
                    QDataStream::ReadCorruptData},
        HostileCase{"text of 2^31 reserved",
                    Big(quint32(QMetaType::QString)) + '\0' + Big(quint32(0x7ffffffe)),
                    QDataStream::ReadPastEnd, false, true}));

VekQVariant MakeNestedLists(int depth)
{
    VekQVariant tree = Node(1);
    for (int level = 1; level < depth; ++level)
    {
        VekQVariantList list;
        list.push_back(tree);
        tree = Node(list);
    }
    return tree;
}

TEST(VariantStream, NestingIsWrittenAndReadUntilTheDeepestLevel)
{
    const VekQVariant tree = MakeNestedLists(512);
    const QByteArray bytes = Write(tree, QDataStream::Qt_6_0);
    VekQVariant back;
    EXPECT_EQ(ReadInto(back, bytes, QDataStream::Qt_6_0).status, QDataStream::Ok);
    EXPECT_EQ(back, tree);
    const QByteArray oneMore = NodeOf(listStart.first(listStart.size() - 5) + bytes);
    EXPECT_EQ(ReadInto(back, oneMore, QDataStream::Qt_6_0).status, QDataStream::ReadCorruptData);
}

struct Unstreamable
{
    bool operator==(const Unstreamable&) const = default;
};

TEST(VariantStream, WhatCouldNotBeReadIsNotWritten)
{
    for (const VekQVariant& node : {MakeNestedLists(513), Node(Unstreamable()), Node(QIcon())})
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << node;
        EXPECT_EQ(stream.status(), QDataStream::WriteFailed) << node.TypeName().toStdString();
    }
}

TEST(VariantStream, UnknownVersions)
{
    VekQVariant node = Node(1);
    for (const qint32 version : {2, 0, -1})
    {
        const QByteArray bytes = Big(version) + NodeOf(Big(quint32(QMetaType::Int))).sliced(4) + Big(5);
        EXPECT_TRUE(ReadInto(node, bytes, QDataStream::Qt_6_0).isVersionRefused);
        EXPECT_EQ(node, Node(1));
    }
    VekQVariantList list(1);
    VekQVariantMap map;
    map["k"] = Node(1);
    const QByteArray bytes = Big(qint32(2)) + Big(qint64(1));
    for (const Read& read :
         {ReadInto(list, bytes, QDataStream::Qt_6_0), ReadInto(map, bytes, QDataStream::Qt_6_0)})
        EXPECT_TRUE(read.status == QDataStream::Ok && !read.isWhole && !read.isVersionRefused);
    EXPECT_EQ(list.size(), 1U);
    EXPECT_EQ(map.Size(), 1U);
}

TEST(VariantStream, GroupsThatAreBrokenAreNone)
{
    VekQVariantMap map;
    map.BeginGroup("before");
    const QByteArray group = Write(QString("g"), QDataStream::Qt_6_0);
    const QByteArray bytes =
        Big(qint32(1)) + Big(qint32(2)) + group + Big(quint32(3)) + "abc" + Big(qint64(0));
    EXPECT_EQ(ReadInto(map, bytes, QDataStream::Qt_6_0).status, QDataStream::ReadCorruptData);
    EXPECT_TRUE(map.GetGroups().isEmpty());
}

QBitArray MakeBits()
{
    QBitArray bits(11);
    bits.setBit(0);
    bits.setBit(10);
    return bits;
}

QEasingCurve MakeCurve(QEasingCurve::Type type)
{
    QEasingCurve curve(type);
    curve.setAmplitude(2.5);
    if (type == QEasingCurve::BezierSpline)
        curve.addCubicBezierSegment({0.1, 0.2}, {0.3, 0.4}, {1, 1});
    if (type == QEasingCurve::TCBSpline)
        curve.addTCBSegment({1, 1}, 0.1, 0.2, 0.3);
    return curve;
}

TEST(VariantStream, FilledValuesComeBackAsFromQt)
{
    QTextCharFormat format;
    format.setFontItalic(true);
    for (const QVariant& value :
         {QVariant(MakeBits()), QVariant(QKeySequence(1, 2, 3)),
          QVariant(QRegion(0, 0, 3, 3) + QRect(5, 1, 2, 2)), QVariant(format),
          QVariant(QPolygon({{1, 2}, {3, 4}})), QVariant::fromValue(QByteArrayList{"a", ""}),
          QVariant(MakeCurve(QEasingCurve::OutElastic)), QVariant(MakeCurve(QEasingCurve::BezierSpline)),
          QVariant(MakeCurve(QEasingCurve::TCBSpline)),
          QVariant::fromValue(std::pair<QVariant, QVariant>(1, "x")),
          QVariant(QVariantHash{{"k", QVariantList{1}}}), QVariant(QColor(1, 2, 3)),
          QVariant(QFont("Sans", 7)), QVariant(QPen(Qt::red, 2.5)), QVariant(QLineF(1, 2, 3, 4)),
          QVariant(QUuid::createUuid())})
        for (const int version : {int(QDataStream::Qt_5_15), int(QDataStream::Qt_6_0)})
        {
            VekQVariant back;
            const Read read = ReadInto(back, Write(Node(value), version), version);
            EXPECT_TRUE(read.status == QDataStream::Ok && read.isWhole);
            EXPECT_EQ(back.ToQVariant(), value) << value.typeName();
        }
}

TEST(VariantStream, FollowsByteOrderAndPrecisionOfTheStream)
{
    for (const auto order : {QDataStream::LittleEndian, QDataStream::BigEndian})
        for (const auto precision : {QDataStream::SinglePrecision, QDataStream::DoublePrecision})
        {
            VekQVariantMap map = MakeValues();
            map[QString()] = Node(0.5);
            map[QString(65, u'k')] = Node(1);
            map[QString(1 << 21, u'\u00c4')] = Node(2); // keys come in steps
            QByteArray bytes;
            const auto makeStream = [&bytes, order, precision](QIODevice::OpenMode mode) {
                auto stream = std::make_unique<QDataStream>(&bytes, mode);
                stream->setByteOrder(order);
                stream->setFloatingPointPrecision(precision);
                return stream;
            };
            *makeStream(QIODevice::WriteOnly) << map;
            QByteArray start;
            QDataStream(&start, QIODevice::WriteOnly)
                << qint32(order == QDataStream::BigEndian ? 1 : 1 << 24);
            EXPECT_TRUE(bytes.startsWith(start));
            VekQVariantMap back;
            *makeStream(QIODevice::ReadOnly) >> back;
            EXPECT_EQ(back, map);
        }
}

TEST(VariantStream, StatusOfBeforeIsKeptWhileGroupsAreRead)
{
    const QByteArray bytes = ReadGolden("groups.qt6.bin");
    QDataStream stream(bytes);
    stream.setStatus(QDataStream::ReadCorruptData);
    VekQVariantMap map;
    stream >> map;
    EXPECT_EQ(stream.status(), QDataStream::ReadCorruptData);
    EXPECT_EQ(map.GetGroups(), QStringList({"g", "h"}));
}

TEST(VariantStream, EveryTypeOfQtComesBackAsFromQt)
{
    for (const int version : {int(QDataStream::Qt_5_15), int(QDataStream::Qt_6_0)})
        for (int type = 1; type < QMetaType::User; ++type)
        {
            if (type == QMetaType::LastCoreType + 1)
                type = QMetaType::FirstGuiType;
            if (type == QMetaType::LastGuiType + 1)
                break;
            const QVariant value{QMetaType(type)};
            const QByteArray bytes = Write(value, version);
            QVariant byQt;
            if (!value.isValid() || type == QMetaType::QIcon || type == QMetaType::QCursor)
                continue; // see above
            if (ReadInto(byQt, bytes, version).status != QDataStream::Ok)
                continue; // Qt cannot either
            VekQVariant node;
            const Read read = ReadInto(node, NodeOf(bytes), version);
            EXPECT_TRUE(read.status == QDataStream::Ok && read.isWhole) << type;
            EXPECT_EQ(node.TypeName(), QString(byQt.typeName())) << version;
            EXPECT_EQ(node.ToQVariant().isNull(), byQt.isNull()) << type;
            if (type != QMetaType::QEasingCurve) // has an address in it
            {
                EXPECT_EQ(Write(node, version), NodeOf(bytes)) << type;
            }
        }
}
} // namespace
} // namespace vek::App
