// Values of each kind. CheckPrinters.py stops this program at its end, and compares what gdb prints of each
// expression behind "gdb:" with what stands behind the arrow; of addresses it sees "0x" alone.
#include "VekAppCore/App/AppConfiguration.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include "VekAppCore/Text/TrString.h"
#include "VekAppCore/Text/Triplet.h"
#include "VekBase/RawPtr.h"
#include <QObject>
#include <cstring>
#include <memory>

using namespace vek;
using namespace vek::App;

struct alignas(32) Point
{
    int x;
    int y;
};
Q_DECLARE_METATYPE(Point)

struct Base
{
    virtual ~Base() = default;
    double before = 0;
};
struct Viewer : Base, SafeObject
{
    int number = 7;
};
struct Viewer3D : Viewer
{
    int more = 8;
};

struct Holder
{
    VekQVariantMap map;
    TrString title;
};

/// Bytes where a value is expected.
template <typename T>
struct Garbage
{
    alignas(T) unsigned char bytes[sizeof(T)];
    explicit Garbage(int fill) { std::memset(bytes, fill, sizeof bytes); }
    const T& Get() const { return *reinterpret_cast<const T*>(bytes); }
};

/// A quantity in every unit beside what it has to look like; the script goes through them.
template <typename Q>
struct AllUnits
{
    static constexpr auto units = Unit::GetUnits<typename Q::UnitType>();
    int count = 0;
    Q values[units.size()];
    char texts[units.size()][32];
    AllUnits()
    {
        for (const auto unit : units)
        {
            values[count] = Q(-12.5, unit);
            std::strcpy(texts[count], Convert::ToString(values[count]).toUtf8().constData());
            ++count;
        }
    }
};
AllUnits<Unit::Length> g_lengths;
AllUnits<Unit::Area> g_areas;
AllUnits<Unit::Volume> g_volumes;
AllUnits<Unit::Angle> g_angles;
AllUnits<Unit::Percent> g_percents;

Unit::Length MakeLength() { return Unit::Length(2, Unit::LengthUnit::Mil); }

int main()
{
    // Nodes and trees
    VekQVariantMap map;
    VekQVariant& name = map["name"];
    name = VekQVariant::From(QString("Prüfung \"1\"\n\x01 \u20ac \U0001f600"));
    map["size"]["x"] = VekQVariant::From(Unit::Length(1.5, Unit::LengthUnit::Inch));
    map["size"]["deep"]["er"] = VekQVariant::From(true);
    VekQVariant& points = map["points"];
    points[1] = VekQVariant::From(-2.5e-7);
    const VekQVariantMap empty;
    const Holder holder;
    VekQVariantMap grouped;
    grouped.BeginGroup("a");
    grouped.BeginGroup("b");
    VekQVariantMap many;
    for (int i = 0; i < 20; ++i)
        many[QString::number(7 * i % 20 + 10)] = VekQVariant::From(i);
    const VekQVariantList list{{}, VekQVariant::From(quint64(-1)), VekQVariant::From(empty)};

    // gdb: name -> "Prüfung \"1\"\n\u0001 € 😀"
    // gdb: points -> list of 2 = {<invalid>, -2.5e-07}
    // gdb: map -> map of 3 = {[name] = "Prüfung \"1\"\n\u0001 € 😀",
    //   [points] = list of 2 = {<invalid>, -2.5e-07},
    //   [size] = map of 2 = {[deep] = map of 1 = {[er] = true}, [x] = 1.5 in}}
    // gdb: empty -> map of 0
    // gdb: holder -> {map = map of 0, title = ""}
    // gdb: grouped -> map of 0 in group "a/b"
    // gdb: many -> map of 20 = {[10] = 0, [11] = 3, [12] = 6, [13] = 9, [14] = 12, [15] = 15, [16] = 18,
    //   [17] = 1, [18] = 4, [19] = 7, [20] = 10, [21] = 13, [22] = 16, [23] = 19, [24] = 2, [25] = 5,
    //   [26] = 8, [27] = 11, [28] = 14, [29] = 17}
    // gdb: list -> list of 3 = {<invalid>, 18446744073709551615, map of 0}

    VekQVariant shared = points;
    shared.Share();
    VekQVariant sharedText = VekQVariant::From(QString());
    sharedText.Share();
    VekQVariant movedFrom = sharedText;
    const VekQVariant movedTo = std::move(movedFrom);
    VekQVariant own = sharedText;
    own.Unshare();
    // gdb: shared -> shared list of 2 = {<invalid>, -2.5e-07}
    // gdb: sharedText -> shared ""
    // gdb: movedFrom -> <moved from>
    // gdb: movedTo -> shared ""
    // gdb: own -> ""

    const VekQVariant strings = VekQVariant::From(QStringList{"a", "ä", ""});
    const VekQVariant plain = VekQVariant::From(QVariantMap{{"k", QVariantList{1, "x", QVariant()}}});
    const VekQVariant bytes = VekQVariant::From(QByteArray("a\0b", 3));
    const VekQVariant point = VekQVariant::From(Point{1, 2});
    const VekQVariant unit = VekQVariant::From(Unit::LengthUnit::Inch);
    const QMetaType matrixType(QMetaType::QMatrix4x4);
    const VekQVariant matrix = VekQVariant::From(QVariant(matrixType));
    const VekQVariant text = VekQVariant::From(QString(300, QChar(u'µ')));
    // gdb: strings -> list of 3 = {"a", "ä", ""}
    // gdb: plain -> map of 1 = {[k] = list of 3 = {1, "x", <invalid>}}
    // gdb: bytes -> "a\u0000b"
    // gdb: point -> {x = 1, y = 2}
    // gdb: unit -> vek::Unit::LengthUnit::Inch
    // gdb: matrix -> <QMatrix4x4>

    const HPath path(QList<QString>{"a", "ü/b"});
    const HPath root;
    // gdb: path -> "a/ü/b"
    // gdb: root -> ""

    // Texts
    TrString greeting =
        TrString::translate("Desk", "%L2 has %1 of %L2, %10").Arg(3).Arg(TrString::NoTranslate("µ"));
    greeting += TrString::translate("Desk", "!");
    greeting.Replace("has", "had");
    const TrString nothing;
    TrString source = greeting;
    const TrString target = std::move(source);
    // gdb: greeting -> "µ had 3 of µ, %10!"
    // gdb: target -> "µ had 3 of µ, %10!"
    // gdb: source -> <moved from>
    // gdb: nothing -> ""

    // Numbers
    const Unit::Length length(1000, Unit::LengthUnit::Micrometer);
    const Triplet triplet{1, -2.5, 1e-7, Unit::LengthUnit::Millimeter};
    const Triplet direction{0, 0, 1, {}};
    const Bool yes = true;
    const VersionNumber version{1, 0, 23, 4};
    const std::array<int, 4> others{1, 2, 3, 4};
    // gdb: length -> 1000 µm
    // gdb: MakeLength() -> 2 mil
    // gdb: triplet -> 1; -2.5; 1e-07 mm
    // gdb: direction -> 0; 0; 1
    // gdb: yes -> true
    // gdb: version -> 1.0.23.4
    // gdb: others -> {_M_elems = {1, 2, 3, 4}}

    // Pointers
    Viewer3D viewer;
    const RawPtr<Viewer> pointer(&viewer);
    const RawPtr<Viewer> null;
    auto dying = std::make_unique<Viewer>();
    const RawPtr<Viewer> dead(dying.get());
    dying.reset();
    QObject object;
    const RawPtr<QObject> objectPointer(&object);
    const RawPtr<QObject> nullObject;
    auto dyingObject = std::make_unique<QObject>();
    const RawPtr<QObject> deadObject(dyingObject.get());
    dyingObject.reset();
    // gdb: pointer -> RawPtr to Viewer3D = {object = 0x}
    // gdb: pointer->more -> 8
    // gdb: (*pointer).number -> 7
    // gdb: pointer.Get() == &viewer -> true
    // gdb: null -> null
    // gdb: dead -> died
    // gdb: objectPointer -> RawPtr to QObject = {object = 0x}
    // gdb: objectPointer.Get() == (void*)&object -> true
    // gdb: nullObject -> null
    // gdb: deadObject -> died

    // What was never made
    const Garbage<VekQVariant> noNode(0xa5);
    Garbage<VekQVariant> noValue(0xa5);
    noValue.bytes[offsetof(QVariant::Private, data) + 32] = 0;
    const Garbage<VekQVariantMap> noMap(0xa5);
    const Garbage<VekQVariantList> noList(0x5a);
    const Garbage<HPath> noPath(0xa5);
    const Garbage<TrString> noText(0xa5);
    const Garbage<Unit::Length> noLength(0);
    const Garbage<RawPtr<Viewer>> noPointer(0xa5);
    const Garbage<RawPtr<QObject>> noObject(0xa5);
    // gdb: *(VekQVariant*)noNode.bytes -> <garbage>
    // gdb: *(VekQVariant*)noValue.bytes -> <no memory at 0x>
    // gdb: *(VekQVariantMap*)noMap.bytes -> <no memory at 0x>
    // gdb: *(VekQVariantList*)noList.bytes -> list of 0
    // gdb: *(HPath*)noPath.bytes -> <garbage>
    // gdb: *(TrString*)noText.bytes -> <no memory at 0x>
    // gdb: *(Unit::Length*)noLength.bytes -> 0 <unit 0>
    // gdb: *(RawPtr<Viewer>*)noPointer.bytes -> <no memory at 0x>
    // gdb: *(RawPtr<QObject>*)noObject.bytes -> <no memory at 0x>
    return 0; // stop here
}
