#include "Support/TestSupport.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QtGui> // values of all its types
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
QByteArray Write(const T& value, int version = QDataStream::Qt_6_0)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream << value;
    return bytes;
}

/// Bytes as GoogleTest shows them best.
std::string Hex(const QByteArray& bytes) { return bytes.toHex(' ').toStdString(); }

/// How reading has ended: "ok" where all was read.
template <typename T>
std::string ReadInto(T& target, const QByteArray& bytes, int version = QDataStream::Qt_6_0)
{
    QDataStream stream(bytes);
    stream.setVersion(version);
    std::string refusal;
    try
    {
        stream >> target;
    }
    catch (const Exception::WrongVersionException& exception)
    {
        refusal = std::string(", ") + exception.what();
    }
    if (stream.status() != QDataStream::Ok)
        return (stream.status() == QDataStream::ReadPastEnd ? "cut off" : "corrupt") + refusal;
    return (stream.atEnd() ? "ok" : "ok, bytes left") + refusal;
}

VekQVariantMap MakeValues()
{
    VekQVariantMap map;
    for (const auto& [key, value] : std::initializer_list<std::pair<const char*, QVariant>>{
             {"invalid", QVariant()},
             {"bool", true},
             {"int", -5},
             {"uint", 4'000'000'000U},
             {"longlong", std::numeric_limits<qint64>::min()},
             {"ulonglong", std::numeric_limits<quint64>::max()},
             {"double", 12.5},
             {"float", 0.25F},
             {"string", QStringLiteral(u"\u00c4\u4e2d\U0001f600")},
             {"string/null", QVariant(QMetaType::fromType<QString>())},
             {"strings", QStringList{"a", ""}},
             {"bytes", QByteArray("\0\xff", 2)},
             {"date", QDate(2026, 11, 21)},
             {"time", QTime(1, 1, 1, 1)},
             {"point", QPoint(1, -2)},
             {"pointf", QPointF(0.5, -1)},
             {"color", QColor(0x12, 0x34, 0x56)},
             {"list", QVariantList{1, "b"}},
             {"map", QVariantMap{{"k", 2}}}})
        map[key] = VekQVariant::FromQVariant(value, {});
    return map;
}

template <typename T>
void CheckGolden(const std::string& name, const T& value)
{
    for (const auto& [suffix, version] :
         {std::pair(".qt5.bin", QDataStream::Qt_5_15), std::pair(".qt6.bin", QDataStream::Qt_6_0)})
    {
        SCOPED_TRACE(name + suffix);
        const QByteArray golden = ReadGolden(QString::fromStdString(name + suffix));
        ASSERT_EQ(Hex(Write(value, version)), Hex(golden));
        T back;
        EXPECT_EQ(ReadInto(back, golden, version), "ok");
        if (name != "groups") // those come back twice
        {
            EXPECT_EQ(Hex(Write(back, version)), Hex(golden));
        }

        // Cut off at every byte: what is there is taken, the rest is told, and nothing else happens.
        for (qsizetype size = 0; size < golden.size(); ++size)
        {
            T cut;
            EXPECT_FALSE(ReadInto(cut, golden.first(size), version).starts_with("ok")) << size;
            ReadInto(cut, golden, version); // whatever is left of it, it can be used
        }
    }
}

TEST(VariantStream, GoldenFilesAreWrittenReadAndSurviveCutting)
{
    CheckGolden("values", MakeValues());

    VekQVariant inner;
    inner["x"] = Node(7);
    inner.As<VekQVariantMap>().SetType("Inner");
    VekQVariant nested;
    nested["a"] = inner;
    nested["b"][0] = Node(7);
    nested["b"][2] = inner;
    nested["b/c"] = Node(7);
    CheckGolden("nested", nested);

    VekQVariant shared;
    shared["s"] = Node(-0.0);
    shared["s"].Share();
    shared.Share();
    CheckGolden("shared", shared);

    VekQVariantMap groups;
    groups.BeginGroup("g");
    groups.BeginGroup("h");
    groups.SetValueAsVariant("k", Node(1));
    CheckGolden("groups", groups);

    VekQVariantMaps maps(2);
    maps[0]["k"] = Node(1);
    CheckGolden("maps", Node(maps));

    VekQVariantLists lists(2);
    lists[1].push_back(Node(false));
    CheckGolden("lists", Node(lists));

    CheckGolden("variants", VekQVariantList{Node(Node(3))});
}

TEST(VariantStream, ReadingAddsToMapsAndListsAndPrefixesGroupsAgain)
{
    VekQVariantMap map;
    map["old"] = Node(0);
    map.BeginGroup("dropped");
    ReadInto(map, ReadGolden("groups.qt6.bin"));
    EXPECT_EQ(map.AllKeys(""), QStringList({"g/h/g/h/k", "old"}));
    EXPECT_FALSE(map.Contains("k"));
    map.EndGroup();
    EXPECT_EQ(map.AllKeys("h"), QStringList("g/h/g/h/k")); // the groups are open

    VekQVariantList list;
    for (int i = 0; i < 2; ++i)
        ReadInto(list, ReadGolden("variants.qt6.bin"));
    EXPECT_EQ(list.size(), 2U);

    VekQVariantMaps maps(7);
    ReadInto(maps, Write(VekQVariantMaps(2)));
    EXPECT_EQ(maps.size(), 2U); // the ones of before are gone
}

TEST(VariantStream, ReadValueReplacesThatOfASharedNodeForAll)
{
    VekQVariant node = Node(1);
    node.Share();
    const VekQVariant partner = node;
    ReadInto(node, ReadGolden("shared.qt6.bin"));
    EXPECT_TRUE(node.IsShared());
    EXPECT_TRUE(partner.Is<VekQVariantMap>());
    ReadInto(node, ReadGolden("nested.qt6.bin"));
    EXPECT_FALSE(node.IsShared());
    EXPECT_TRUE(partner["s"].HasValue()); // it has gone its own way
}

QByteArray NodeOf(const QByteArray& variant) { return Write(qint32(1)) + '\0' + variant; }
QByteArray Typed(int type, const QByteArray& contents) { return Write(type) + '\0' + contents; }
QByteArray User(const char* name, const QByteArray& contents)
{
    return Typed(QMetaType::User, Write(QByteArray(name) + '\0') + contents);
}
QByteArray Map(const QByteArray& groups) { return User("vek::App::VekQVariantMap", Write(1) + groups); }
QByteArray List(const QByteArray& elements, int version = 1)
{
    return User("vek::App::VekQVariantList", Write(version) + elements);
}

struct HostileCase
{
    const char* fault;
    QByteArray variant; ///< What stands where a QVariant is to be read.
    const char* end;    ///< And whether a value, if only a part of one, was read.
};
void PrintTo(const HostileCase& row, std::ostream* out) { *out << row.fault; }
class HostileStream : public testing::TestWithParam<HostileCase>
{};

TEST_P(HostileStream, IsToldAndCostsNothing)
{
    VekQVariant node = Node(1);
    const std::string end = ReadInto(node, NodeOf(GetParam().variant));
    EXPECT_EQ(end + (node.HasValue() ? "; kept" : ""), GetParam().end);
}

const QByteArray most = Write(~quint32(0));
const QByteArray countless = Write(qint64(1) << 62);
const QByteArray listOfOne = List(Write(qint64(1)));
const HostileCase hostileCases[] = {
    {"list of 2^62 believed", List(countless), "cut off; kept"},
    {"negative list read", List(Write(qint64(-1))), "ok; kept"},
    {"map of 2^62 believed", Map(Write(0) + countless), "cut off; kept"},
    {"2^32 - 1 groups believed", Map(most), "cut off; kept"},
    {"array of 2^31 maps believed",
     User("eastl::vector<vek::App::VekQVariantMap,eastl::allocator>", Write(0x7fffffff) + Write(2)),
     "cut off; kept"},
    {"version of an element ignored", listOfOne + Write(2), "ok, Wrong version"},
    {"version of a list refused", List(countless, 2), "ok, bytes left; kept"},
    {"unknown type taken", User("no::Type", {}), "corrupt"},
    {"type without contents taken", Typed(QMetaType::Void, {}), "corrupt"},
    {"unknown number taken", Typed(60'000, {}), "corrupt"},
    {"a million lists overflow the stack", (listOfOne + NodeOf({})).repeated(1'000'000), "corrupt; kept"},
    {"a million lists of Qt overflow it", Typed(QMetaType::QVariantList, Write(1)).repeated(1'000'000),
     "corrupt; kept"},
    {"a million variants in variants overflow it", Typed(QMetaType::QVariant, {}).repeated(1'000'000),
     "corrupt; kept"},
    {"a million pairs overflow it", Typed(QMetaType::QVariantPair, {}).repeated(1'000'000), "corrupt; kept"},
    {"list of Qt reserved for 2^32 - 1", Typed(QMetaType::QVariantList, most), "cut off; kept"},
    {"strings reserved for 2^32 - 1", Typed(QMetaType::QStringList, most), "cut off; kept"},
    {"polygon reserved for 2^32 - 1", Typed(QMetaType::QPolygonF, most), "cut off; kept"},
    {"bits of 2^63 written beyond memory",
     Typed(QMetaType::QBitArray, Write(quint64(0xfffff600258eb600)) + "padding"), "cut off; kept"},
    {"bits beyond their count taken", Typed(QMetaType::QBitArray, Write(quint64(3)) + '\x0f'),
     "corrupt; kept"},
    {"nested lists reserved for 2^62 each",
     (List(countless) + NodeOf({})).repeated(500) + QByteArray(1 << 20, '\1'), "corrupt; kept"},
    {"name of a type reserved for 2^31", Typed(QMetaType::User, Write(0x7ffffffe)), "corrupt"},
    {"number of a program's own type taken", Typed(QMetaType::User + 1, {}), "corrupt"},
    {"address of a function called",
     Typed(QMetaType::QEasingCurve, char(QEasingCurve::Custom) + Write(~quint64(0)) + '\0'), "corrupt; kept"},
    {"rectangles in no order united one by one",
     Typed(QMetaType::QRegion,
           Write(40) + Write(10) + Write(2) + Write(QRect(5, 5, 1, 1)) + Write(QRect(0, 0, 1, 1))),
     "corrupt; kept"},
    {"keys reserved for 2^32 - 1", Typed(QMetaType::QKeySequence, most), "cut off; kept"},
    {"font without a family kept", Typed(QMetaType::QFont, QByteArray(60, '\0')), "corrupt"},
    {"icon opens a file", Typed(QMetaType::QIcon, Write(QString("engine"))), "corrupt"},
    {"text of 2^31 reserved", Typed(QMetaType::QString, Write(0x7ffffffe)), "cut off; kept"}};
INSTANTIATE_TEST_SUITE_P(Rows, HostileStream, testing::ValuesIn(hostileCases));

VekQVariant MakeNestedLists(int depth)
{
    VekQVariant tree = Node(1);
    for (int level = 1; level < depth; ++level)
        tree = Node(VekQVariantList(1, tree));
    return tree;
}

TEST(VariantStream, NestingIsWrittenAndReadUntilTheDeepestLevel)
{
    const VekQVariant tree = MakeNestedLists(512);
    const QByteArray bytes = Write(tree);
    VekQVariant back;
    EXPECT_EQ(ReadInto(back, bytes), "ok");
    EXPECT_EQ(back, tree);
    EXPECT_EQ(ReadInto(back, NodeOf(listOfOne + bytes)), "corrupt");
}

TEST(VariantStream, WhatCouldNotBeReadIsNotWritten)
{
    for (const VekQVariant& node : {MakeNestedLists(513), Node(QModelIndex()), Node(QIcon())})
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << node;
        EXPECT_EQ(stream.status(), QDataStream::WriteFailed) << node.TypeName().toStdString();
    }
}

TEST(VariantStream, UnknownVersionIsRefusedOrNothingIsRead)
{
    VekQVariant node = Node(1);
    for (const qint32 version : {2, 0, -1})
    {
        EXPECT_EQ(ReadInto(node, Write(version) + '\0' + Typed(QMetaType::Int, Write(5))),
                  "ok, bytes left, Wrong version");
        EXPECT_EQ(node, Node(1));
    }
    VekQVariantList list(1);
    VekQVariantMap map;
    map["k"] = Node(1);
    const QByteArray bytes = Write(qint32(2)) + Write(qint64(1));
    EXPECT_EQ(ReadInto(list, bytes), "ok, bytes left");
    EXPECT_EQ(ReadInto(map, bytes), "ok, bytes left");
    EXPECT_EQ(list.size(), 1U);
    EXPECT_EQ(map.Size(), 1U);
}

TEST(VariantStream, GroupsThatAreBrokenAreNone)
{
    VekQVariantMap map;
    map.BeginGroup("before");
    const QByteArray groups = Write(2) + Write(QString("g")) + Write(3) + "abc";
    EXPECT_EQ(ReadInto(map, Write(1) + groups + Write(qint64(0))), "corrupt");
    EXPECT_TRUE(map.GetGroups().isEmpty());
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
         {QVariant(QBitArray::fromBits("\x01\x04", 11)), QVariant(QKeySequence(1, 2, 3)),
          QVariant(QRegion(0, 0, 3, 3) + QRect(5, 1, 2, 2)), QVariant(format),
          QVariant(QPolygon(QList<QPoint>{{1, 2}, {3, 4}})), QVariant::fromValue(QByteArrayList{"a", ""}),
          QVariant(MakeCurve(QEasingCurve::OutElastic)), QVariant(MakeCurve(QEasingCurve::BezierSpline)),
          QVariant(MakeCurve(QEasingCurve::TCBSpline)),
          QVariant::fromValue(std::pair<QVariant, QVariant>(1, "x")),
          QVariant(QVariantHash{{"k", QVariantList{1}}}), QVariant(QColor(1, 2, 3)),
          QVariant(QFont("Sans", 7)), QVariant(QPen(Qt::red, 2.5)), QVariant(QLineF(1, 2, 3, 4)),
          QVariant(QUuid::createUuid())})
        for (const int version : {int(QDataStream::Qt_5_15), int(QDataStream::Qt_6_0)})
        {
            VekQVariant back;
            EXPECT_EQ(ReadInto(back, Write(Node(value), version), version), "ok");
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
            QDataStream out(&bytes, QIODevice::WriteOnly);
            QDataStream in(&bytes, QIODevice::ReadOnly);
            for (QDataStream* const stream : {&out, &in})
            {
                stream->setByteOrder(order);
                stream->setFloatingPointPrecision(precision);
            }
            out << map;
            EXPECT_EQ(Hex(bytes.first(4)), order == QDataStream::BigEndian ? "00 00 00 01" : "01 00 00 00");
            VekQVariantMap back;
            in >> back;
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
            if (!value.isValid() || type == QMetaType::QIcon || type == QMetaType::QCursor || // see above
                !ReadInto(byQt, bytes, version).starts_with("ok"))                            // nor can Qt
                continue;
            VekQVariant node;
            EXPECT_EQ(ReadInto(node, NodeOf(bytes), version), "ok") << type;
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
