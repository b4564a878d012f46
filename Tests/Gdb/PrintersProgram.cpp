// Values of each kind. CheckPrinters.py stops this program at its end, and compares what gdb prints then of
// each expression behind "gdb:" with what stands behind the arrow; of addresses it sees "0x" alone.
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
    Unit::Area area;
    Unit::Volume volume;
    Unit::Angle angle;
    Unit::Percent percent;
};

/// Bytes where a value is expected.
template <typename T>
union Garbage
{
    T value;
    explicit Garbage(int fill) { std::memset(static_cast<void*>(this), fill, sizeof *this); }
    ~Garbage() {}
};

Unit::Length MakeLength() { return Unit::Length(2, Unit::LengthUnit::Mil); }

int main()
{
    // Nodes and trees
    VekQVariantMap map;
    VekQVariant& name = map["name"]; // gdb: name -> "Prüfung \"1\"\n\u0001 € 😀"
    name = VekQVariant::From(QString("Prüfung \"1\"\n\x01 \u20ac \U0001f600"));
    map["size"]["x"] = VekQVariant::From(Unit::Length(1.5, Unit::LengthUnit::Inch));
    map["size"]["deep"]["er"] = VekQVariant::From(true);
    VekQVariant& points = map["points"]; // gdb: points -> list of 2 = {<invalid>, -2.5e-07}
    points[1] = VekQVariant::From(-2.5e-7);
    // gdb: map -> map of 3 = {[name] = "Prüfung \"1\"\n\u0001 € 😀",
    //   [points] = list of 2 = {<invalid>, -2.5e-07},
    //   [size] = map of 2 = {[deep] = map of 1 = {[er] = true}, [x] = 1.5 in}}
    const VekQVariantMap empty; // gdb: empty -> map of 0
    const Holder holder;
    // gdb: holder -> {map = map of 0, title = "", area = 0 m², volume = 0 m³, angle = 0°, percent = 0 %}
    VekQVariantMap grouped; // gdb: grouped -> map of 0 in group "a/b"
    grouped.BeginGroup("a");
    grouped.BeginGroup("b");
    VekQVariantMap many;
    for (int i = 0; i < 20; ++i)
        many[QString::number(7 * i % 20 + 10)] = VekQVariant::From(i);
    // gdb: many -> map of 20 = {[10] = 0, [11] = 3, [12] = 6, [13] = 9, [14] = 12, [15] = 15, [16] = 18,
    //   [17] = 1, [18] = 4, [19] = 7, [20] = 10, [21] = 13, [22] = 16, [23] = 19, [24] = 2, [25] = 5,
    //   [26] = 8, [27] = 11, [28] = 14, [29] = 17}
    const VekQVariantList list{{}, VekQVariant::From(quint64(-1)), VekQVariant::From(empty)};
    // gdb: list -> list of 3 = {<invalid>, 18446744073709551615, map of 0}

    VekQVariant shared = points; // gdb: shared -> shared list of 2 = {<invalid>, -2.5e-07}
    shared.Share();
    VekQVariant sharedText = VekQVariant::From(QString()); // gdb: sharedText -> shared ""
    sharedText.Share();
    VekQVariant movedFrom = sharedText;               // gdb: movedFrom -> <moved from>
    const VekQVariant movedTo = std::move(movedFrom); // gdb: movedTo -> shared ""
    VekQVariant own = sharedText;                     // gdb: own -> ""
    own.Unshare();

    const VekQVariant strings = VekQVariant::From(QStringList{"a", "ä", ""});
    // gdb: strings -> list of 3 = {"a", "ä", ""}
    const VekQVariant plain = VekQVariant::From(QVariantMap{{"k", QVariantList{1, "x", QVariant()}}});
    // gdb: plain -> map of 1 = {[k] = list of 3 = {1, "x", <invalid>}}
    const VekQVariant bytes = VekQVariant::From(QByteArray("a\0b", 3)); // gdb: bytes -> "a\u0000b"
    const VekQVariant point = VekQVariant::From(Point{1, 2});           // gdb: point -> {x = 1, y = 2}
    const VekQVariant unit = VekQVariant::From(Unit::LengthUnit::Inch);
    // gdb: unit -> vek::Unit::LengthUnit::Inch
    const QMetaType matrixType(QMetaType::QMatrix4x4);
    const VekQVariant matrix = VekQVariant::From(QVariant(matrixType)); // gdb: matrix -> <QMatrix4x4>
    const VekQVariant text = VekQVariant::From(QString(300, QChar(u'µ')));
    const HPath path(QList<QString>{"a", "ü/b"}); // gdb: path -> "a/ü/b"
    const HPath root;                             // gdb: root -> ""

    // Texts
    TrString greeting =
        TrString::translate("Desk", "%L2 has %1 of %L2, %10").Arg(3).Arg(TrString::NoTranslate("µ"));
    greeting += TrString::translate("Desk", "!");
    greeting.Replace("has", "had");            // gdb: greeting -> "µ had 3 of µ, %10!"
    const TrString nothing;                    // gdb: nothing -> ""
    TrString source = greeting;                // gdb: source -> <moved from>
    const TrString target = std::move(source); // gdb: target -> "µ had 3 of µ, %10!"

    // Numbers
    const Unit::Length length(1000, Unit::LengthUnit::Micrometer);      // gdb: length -> 1000 µm
    const Triplet triplet{1, -2.5, 1e-7, Unit::LengthUnit::Millimeter}; // gdb: triplet -> 1; -2.5; 1e-07 mm
    const Triplet direction{0, 0, 1, {}};                               // gdb: direction -> 0; 0; 1
    const Bool yes = true;                                              // gdb: yes -> true
    const VersionNumber version{1, 0, 23, 4};                           // gdb: version -> 1.0.23.4
    const std::array<int, 4> others{1, 2, 3, 4}; // gdb: others -> {_M_elems = {1, 2, 3, 4}}
    // gdb: MakeLength() -> 2 mil

    // All units, beside what they have to look like
    VekQVariant quantities;
    QStringList texts;
    const auto add = [&]<typename Q>(Q) {
        for (const auto each : Unit::GetUnits<typename Q::UnitType>())
        {
            quantities[texts.size()] = VekQVariant::From(Q(-12.5, each));
            texts << Convert::ToString(Q(-12.5, each));
        }
    };
    add(Unit::Length());
    add(Unit::Area());
    add(Unit::Volume());
    add(Unit::Angle());
    add(Unit::Percent());
    const auto expected =
        QStringLiteral("list of %1 = {%2}").arg(texts.size()).arg(texts.join(", ")).toStdString();
    const char* const allUnits = expected.c_str();

    // Pointers
    Viewer3D viewer;
    const RawPtr<Viewer> pointer(&viewer); // gdb: pointer -> RawPtr to Viewer3D = {object = 0x}
    // gdb: pointer->more -> 8
    // gdb: (*pointer).number -> 7
    // gdb: pointer.Get() == &viewer -> true
    const RawPtr<Viewer> null; // gdb: null -> null
    auto dying = std::make_unique<Viewer>();
    const RawPtr<Viewer> dead(dying.get()); // gdb: dead -> died
    dying.reset();
    QObject object;
    const RawPtr<QObject> objectPointer(&object); // gdb: objectPointer -> RawPtr to QObject = {object = 0x}
    // gdb: objectPointer.Get() == (void*)&object -> true
    const RawPtr<QObject> nullObject; // gdb: nullObject -> null
    auto dyingObject = std::make_unique<QObject>();
    const RawPtr<QObject> deadObject(dyingObject.get()); // gdb: deadObject -> died
    dyingObject.reset();

    // What was never made
    const Garbage<VekQVariant> noNode(0xa5); // gdb: noNode.value -> <garbage>
    Garbage<VekQVariant> noValue(0xa5);      // gdb: noValue.value -> <no memory at 0x>
    reinterpret_cast<char*>(&noValue)[offsetof(QVariant::Private, data) + 32] = 0;
    const Garbage<VekQVariantMap> noMap(0xa5);     // gdb: noMap.value -> <no memory at 0x>
    const Garbage<VekQVariantList> noList(0x5a);   // gdb: noList.value -> list of 0
    const Garbage<HPath> noPath(0xa5);             // gdb: noPath.value -> <garbage>
    const Garbage<TrString> noText(0xa5);          // gdb: noText.value -> <no memory at 0x>
    const Garbage<Unit::Length> noLength(0);       // gdb: noLength.value -> 0 <unit 0>
    const Garbage<RawPtr<Viewer>> noPointer(0xa5); // gdb: noPointer.value -> <no memory at 0x>
    const Garbage<RawPtr<QObject>> noObject(0xa5); // gdb: noObject.value -> <no memory at 0x>
    return 0;                                      // stop here
}
