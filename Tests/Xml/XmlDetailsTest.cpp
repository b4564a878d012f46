#include "VekAppCore/Xml/XmlDetails.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Text/StringUtility.h"
#include "VekAppCore/Xml/XmlDocument.h"
#include "Xml/XmlTestSupport.h"
#include <QColor>
#include <QDate>
#include <QPoint>
#include <QVariant>
#include <bit>
#include <cmath>
#include <gmock/gmock.h>
#include <iterator>
#include <list>
#include <random>
#include <sstream>

namespace vek
{
namespace
{
using TestSupport::GetFailure;
using tinyxml2::XMLUtil;

template <typename T>
bool IsSame(T a, T b)
{
    return (std::isnan(a) && std::isnan(b)) || (a == b && std::signbit(a) == std::signbit(b));
}

/// In text of its own: what the root holds in an attribute and in itself.
template <typename T>
std::pair<T, T> WriteAndRead(const T& value)
{
    XmlDocument document;
    XmlSerializer root = document.Serializer("a");
    root.SetAttribute("b", value);
    root.SetValue(value);
    const XmlDocument read = XmlDocument::FromString(document.ToString(false));
    const XmlDeserializer element = read.Deserialize("a");
    return {element.GetAttribute<T>("b"), element.GetValue<T>()};
}
} // namespace

/// The process has decimal commas, as Qt gives it to users in most of the world.
class XmlDetailsTest : public testing::Test
{
protected:
    XmlDetailsTest()
    {
        constexpr std::string_view madeForTests = VEK_TEST_LOCALES;
        if (!madeForTests.empty())
            qputenv("LOCPATH", madeForTests.data());
        EXPECT_TRUE(std::setlocale(LC_NUMERIC, "de_DE.UTF-8"));
    }
    ~XmlDetailsTest() override { std::setlocale(LC_NUMERIC, "C"); }

    const ScopeBase m_french = StringUtility::ChangeQSystemLocale(QLocale("fr_FR"));
    std::mt19937_64 m_random{1};
};

TEST_F(XmlDetailsTest, NumbersAreThoseOfTinyxml2InTheCLocale)
{
    std::vector<std::string> texts{"", " ", std::string(400, '9'), "0." + std::string(400, '0') + "1",
                                   "\t\n7 "};
    std::istringstream words(
        "1e 1e+ 1e5e 1e400 -1e400 1e-400 0x1.8p1 0x 0xg 0x1p 0x1p9999 0x1p-9999 +-1 +.5 1. . inf -Infinity infi "
        "nan nan(1) nan( 1,5 12abc 0x1p1p 1e+5 00012 1.5.5 4e-46 1e39");
    texts.insert(texts.end(), std::istream_iterator<std::string>(words), {});
    constexpr std::string_view alphabet = "001239+-..eEexXpPinfatyINFAT() \t,";
    for (int i = 0; i < 100'000; ++i)
    {
        std::string& text = texts.emplace_back(1 + m_random() % 9, ' ');
        for (char& c : text)
            c = alphabet[m_random() % alphabet.size()];
    }
    for (const std::string& text : texts)
    {
        if (QString::fromStdString(text).contains("0x.", Qt::CaseInsensitive))
            continue; // 0 to some C libraries, nothing to others
        double expected = 7;
        float expectedFloat = 7;
        std::setlocale(LC_NUMERIC, "C");
        const bool isRead = XMLUtil::ToDouble(text.c_str(), &expected);
        const bool isFloatRead = XMLUtil::ToFloat(text.c_str(), &expectedFloat);
        std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
        double value = 7;
        float floatValue = 7;
        ASSERT_EQ(XmlDetails::ReadText(text.c_str(), value), isRead) << text;
        ASSERT_TRUE(IsSame(value, expected)) << text << ' ' << value << ' ' << expected;
        ASSERT_EQ(XmlDetails::ReadText(text.c_str(), floatValue), isFloatRead) << text;
        ASSERT_TRUE(IsSame(floatValue, expectedFloat)) << text << ' ' << floatValue << ' ' << expectedFloat;
    }
    for (const auto& [text, expected] :
         {std::pair{"", -1}, {" ", -1}, {"x", -1}, {" 7", 7}, {"12abc", 12}, {"1.9", 1}, {"0x1f", 31}})
    {
        int value = -1;
        EXPECT_EQ(XmlDetails::ReadText(text, value), expected != -1) << text;
        EXPECT_EQ(value, expected);
    }
    short narrow = 7;
    EXPECT_FALSE(XmlDetails::ReadText("70000", narrow));
    EXPECT_EQ(narrow, 7);
    for (int i = 0; i < 100'000; ++i)
    {
        const auto value = std::bit_cast<double>(std::uint64_t{m_random()});
        const auto floatValue = std::bit_cast<float>(static_cast<std::uint32_t>(m_random()));
        char expected[32];
        char expectedFloat[32];
        std::setlocale(LC_NUMERIC, "C");
        XMLUtil::ToStr(value, expected, sizeof expected);
        XMLUtil::ToStr(floatValue, expectedFloat, sizeof expectedFloat);
        std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
        ASSERT_EQ(XmlDetails::WriteText(value), expected);
        ASSERT_EQ(XmlDetails::WriteText(floatValue), expectedFloat);
    }
}

TEST_F(XmlDetailsTest, EveryValueComesBackInBothForms)
{
    const auto expectBack = [](const auto&... values) {
        const auto expect = [](const auto& value) {
            const auto [attribute, element] = WriteAndRead(value);
            EXPECT_EQ(attribute, value);
            EXPECT_EQ(element, value);
        };
        (expect(values), ...);
    };
    using Int = std::numeric_limits<int>;
    using Int64 = std::numeric_limits<qint64>;
    using Double = std::numeric_limits<double>;
    expectBack(Int::min(), Int::max(), std::numeric_limits<unsigned>::max(), short{-5}, true, false);
    expectBack(Int64::min(), Int64::max(), std::numeric_limits<quint64>::max(), std::int64_t{1} << 40, -1L);
    expectBack(Double::max(), Double::denorm_min(), -Double::infinity(), 0.1, 12.5, 0.1f, -0.0f);
    for (const char* text : {"", " ", "\n", " \t\r\n", " a ", "\ra\r\nb\n\r", "\"&<>'", "]]>", "&#10;",
                             "&amp;lt;", "\x01\x1f\x7f", "<!-- a -->", "%1", "\u00b5\u20ac\U0001f4cf"})
    {
        expectBack(std::string(text), QString::fromUtf8(text));
        EXPECT_EQ(WriteAndRead(TrString::NoTranslate(text)).second.ToString(), text);
    }
    using namespace Unit;
    expectBack(Length(12.5, LengthUnit::Microinch), Area(-0.1, AreaUnit::FeetUS2),
               Volume(1e300, VolumeUnit::BarrelOilUS), Angle(30, AngleUnit::Second),
               Angle(5, AngleUnit::Percent), Percent(Double::infinity()));
    for (int i = 0; i < 10'000; ++i)
    {
        const auto value = std::bit_cast<double>(std::uint64_t{m_random()});
        const auto floatValue = std::bit_cast<float>(static_cast<std::uint32_t>(m_random()));
        if (std::isnan(value) || std::isnan(floatValue))
            continue;
        const Length length(value, static_cast<LengthUnit>(2 + m_random() % 12));
        const auto [attribute, element] = WriteAndRead(length);
        ASSERT_EQ(attribute.GetValue(), value);
        ASSERT_EQ(element.GetUnit(), length.GetUnit());
        ASSERT_EQ(WriteAndRead(value).first, value);
        ASSERT_FLOAT_EQ(WriteAndRead(floatValue).second, floatValue); // 8 digits are one less than some need
    }
}

TEST_F(XmlDetailsTest, ValuesHaveTheirTexts)
{
    XmlDocument document;
    XmlSerializer root = document.Serializer("a");
    root.SetAttribute("a", 1.5);
    root.SetAttribute("b", 0.1f);
    root.SetAttribute("c", 1e22);
    root.SetAttribute("d", true);
    root.SetAttribute("e", Bool(false));
    root.SetAttribute("f", QPoint(-1, 2));
    root.SetAttribute("g", Unit::Length(12.5, Unit::LengthUnit::Micrometer));
    root.SetAttribute("h", TrString::translate("Bool", "Yes"));
    root.SetAttribute("i", std::string_view("\"\n\t"));
    root.SetAttribute("a", 0.1); // again
    EXPECT_EQ(
        document.ToString(false),
        QStringLiteral(
            u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><a a=\"0.10000000000000001\" b=\"0.1\" c=\"1e+22\" "
            "d=\"true\" e=\"false\" f=\"-1;2\" g=\"12.5 \u00b5m\" h=\"Yes\" i=\"&quot;&#10;&#9;\"/>"));
}

TEST_F(XmlDetailsTest, UnknownEntitiesAreText)
{
    const XmlDocument document = XmlDocument::FromString(
        "<!DOCTYPE a [<!ENTITY x 'y'>]><a b='&#65;&x;' c='&#x41&amp;&'>"
        "&lt;&x;&&gt;<!-- & --><b>&#66;<![CDATA[&x;]]></b><c>&#0;&#xD800;&#x110000;&#x1F4CF;</c></a>");
    const XmlDeserializer root = document.Deserialize("a");
    EXPECT_EQ(root.GetAttribute<std::string>("b"), "A&x;");
    EXPECT_EQ(root.GetAttribute<std::string>("c"), "&#x41&&");
    EXPECT_EQ(root.GetValue<std::string>(), "<&x;&>");
    EXPECT_STREQ(root.GetElement().FirstChildElement("b")->LastChild()->Value(), "&x;");
}

TEST_F(XmlDetailsTest, ColoursTripletsAndVariantsTakeAttributes)
{
    const auto print = [](const auto& value, const char* before = "<a/>") {
        XmlDocument document = XmlDocument::FromString(before);
        document.Serializer("a").SetValue(value);
        return document.ToString(false).mid(38).toStdString(); // behind the declaration
    };
    EXPECT_EQ(print(QColor(10, 20, 30, 40)), "<a r=\"10\" g=\"20\" b=\"30\"/>");
    EXPECT_EQ(print(QColor(), "<a r='1' g='2' b='3' c='4'/>"), "<a c=\"4\"/>");
    EXPECT_EQ(print(Triplet{0.5, -1, 1e300, {}}, "<a unit='mm'/>"),
              "<a x=\"0.5\" y=\"-1\" z=\"1.0000000000000001e+300\"/>");
    const Triplet triplet{0.1, 2, -3, Unit::LengthUnit::Micrometer};
    EXPECT_EQ(print(triplet), "<a x=\"0.10000000000000001\" y=\"2\" z=\"-3\" unit=\"\u00b5m\"/>");

    const auto read = []<typename T>(const char* text, T before) {
        const XmlDocument document = XmlDocument::FromString(text);
        EXPECT_EQ(document.Deserialize("a").GetValue(before, false), before != T()) << text;
        return before;
    };
    EXPECT_EQ(read("<a r='10' g='20' b='30'/>", QColor(1, 2, 3, 4)), QColor(10, 20, 30, 255));
    for (const char* text : {"<a g='1' b='1'/>", "<a r='1' g='x' b='1'/>", "<a r='1' g='1' b='256'/>",
                             "<a r='1' g='-1' b='1'/>"})
        EXPECT_EQ(read(text, QColor()), QColor());
    EXPECT_EQ(read("<a x='0.1' y='2' z='-3' unit='\u00b5m'/>", Triplet{7, 7, 7, {}}).unit,
              Unit::LengthUnit::Micrometer);
    EXPECT_EQ(read("<a x='1' y='2' z='3'/>", triplet), (Triplet{1, 2, 3, {}}));
    for (const char* text : {"<a x='1' y='2'/>", "<a x='1' y='' z='3'/>",
                             "<a x='1' y='2' z='3' unit='parsec'/>", "<a x='1' y='2' z='3' unit='END'/>"})
        EXPECT_EQ(read(text, Triplet()), Triplet()) << text;

    XmlDocument document;
    XmlSerializer root = document.Serializer("a");
    const XmlDeserializer reader(root.GetElement());
    const QDate date(2024, 2, 29);
    for (const QVariant& value :
         {QVariant(5), QVariant(0.1), QVariant("5;"), QVariant(true), QVariant(date), QVariant()})
    {
        root.SetAttribute("v", value);
        EXPECT_EQ(reader.GetAttribute<QVariant>("v"), value);
        EXPECT_EQ(reader.GetAttributeOr("Type", QString()), value.typeName());
    }
    for (const char* text : {"<a v='5x' Type='int'/>", "<a v='5' Type='Nothing'/>", "<a v='5'/>"})
        EXPECT_EQ(XmlDocument::FromString(text).Deserialize("a").GetAttributeOr<QVariant>("v", 7), 7) << text;
}

TEST_F(XmlDetailsTest, ErrorsAreAnsweredOrThrown)
{
    using namespace tinyxml2;
    const std::string noAttribute = "Line 2: <b> unable to retrieve the attribute <c> @2 b";
    const std::string noValue = "Line 2: <b> unable to retrieve the value @2 b";
    const struct
    {
        XMLError error;
        bool isOptionalAttributeRead;
        bool isOptionalValueRead;
        std::string attributeFailure;
        std::string valueFailure;
    } rows[] = {
        {XML_SUCCESS, true, true, "", ""},
        {XML_NO_ATTRIBUTE, false, false, "Line 2: <b> does not contain the attribute <c> @2 b", noValue},
        {XML_WRONG_ATTRIBUTE_TYPE, false, false, "Line 2: <b> wrong attribute cast <c> @2 b", noValue},
        {XML_CAN_NOT_CONVERT_TEXT, false, false, noAttribute, "Line 2: <b> bad cast @2 b"},
        {XML_NO_TEXT_NODE, false, true, noAttribute, "Line 2: <b> doesn't contain value @2 b"},
        {XML_ERROR_MISMATCHED_ELEMENT, false, false, noAttribute, noValue}};
    const XmlDocument document = XmlDocument::FromString("<a>\n<b/></a>");
    const XMLElement& b = *document.Deserialize("a").GetElement().FirstChildElement("b");
    using namespace XmlDetails;
    for (const auto& row : rows)
    {
        EXPECT_EQ(HandleAttributeError(row.error, b, "c", false), row.isOptionalAttributeRead);
        EXPECT_EQ(HandleValueError(row.error, b, false), row.isOptionalValueRead);
        EXPECT_EQ(GetFailure([&] { EXPECT_TRUE(HandleAttributeError(row.error, b, "c", true)); }),
                  row.attributeFailure);
        EXPECT_EQ(GetFailure([&] { EXPECT_TRUE(HandleValueError(row.error, b, true)); }), row.valueFailure);
    }
}

namespace App
{
/// A type of an application.
enum class EGrade
{
    Good,
    Bad,
};
bool ReadText(const char* text, EGrade& grade)
{
    grade = EGrade::Bad;
    return std::string_view(text) == "bad";
}
std::string WriteText(EGrade grade) { return grade == EGrade::Bad ? "bad" : "good"; }
void SetValue(tinyxml2::XMLElement& element, EGrade grade)
{
    XmlDetails::SetValue(element, WriteText(grade) + "!");
}
bool GetValue(const tinyxml2::XMLElement& element, EGrade& grade, bool)
{
    grade = std::string_view(element.GetText()) == "bad!" ? EGrade::Bad : EGrade::Good;
    return true;
}

struct Range
{
    int least = 0;
    int most = 0;
    bool operator==(const Range&) const = default;
};
bool GetValue(const tinyxml2::XMLElement& element, Range& range, bool mandatory)
{
    return XmlDetails::GetAttribute(element, "least", range.least, mandatory) &&
           XmlDetails::GetAttribute(element, "most", range.most, mandatory);
}
void SetValue(tinyxml2::XMLElement& element, const Range& range)
{
    XmlDetails::SetAttribute(element, "least", range.least);
    XmlDetails::SetAttribute(element, "most", range.most);
}
} // namespace App

TEST_F(XmlDetailsTest, ApplicationAddsTypes)
{
    EXPECT_EQ(WriteAndRead(App::EGrade::Bad), std::pair(App::EGrade::Bad, App::EGrade::Bad));
    XmlDocument document;
    const std::list<App::Range> ranges{{1, 2}, {3, 4}};
    document.Serializer("a").AddChildren("range", ranges);
    std::list<App::Range> read;
    EXPECT_TRUE(document.Deserialize("a").GetChildren("range", read, true));
    EXPECT_EQ(read, ranges);
}
} // namespace vek
