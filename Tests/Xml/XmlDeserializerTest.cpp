#include "VekAppCore/Xml/XmlDeserializer.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Xml/XmlDocument.h"
#include "Xml/XmlTestSupport.h"
#include <gmock/gmock.h>

namespace vek
{
using TestSupport::GetFailure;

class XmlDeserializerTest : public testing::Test
{
protected:
    const XmlDocument m_document =
        XmlDocument::FromString("<a x='1' y='z'><b>1</b><B/><c><b>7</b></c><b/>\n<b>3</b></a>");
    const XmlDeserializer m_root = m_document.Deserialize("a");
};

TEST_F(XmlDeserializerTest, ChildrenAreVisitedByName)
{
    std::vector<std::string> visited;
    const auto visit = [&visited](const XmlDeserializer& b) {
        visited.push_back(std::to_string(b.GetLine()) + ": " + b.GetValueOr(std::string("-")));
    };
    m_root.Child("b", visit, true);
    m_root.Child("d", visit, false);
    m_root.ForEachChild("d", visit, false);
    EXPECT_THAT(visited, testing::ElementsAre("1: 1"));
    m_root.ForEachChild("b", visit, true);
    EXPECT_THAT(visited, testing::ElementsAre("1: 1", "1: 1", "1: -", "2: 3"));
    EXPECT_EQ(GetFailure([&] { m_root.Child("d", visit, true); }),
              "Line 1: <a> does contain the child <d> @1 a");
    EXPECT_EQ(GetFailure([&] { m_root.ForEachChild("d", visit, true); }),
              "Line 1: <a> does contain any child <d> @1 a");
    EXPECT_TRUE(m_root.HasChild("B") && m_root.HasAttribute("y"));
    EXPECT_FALSE(m_root.HasChild("y") || m_root.HasAttribute("B") || m_root.HasAttribute("X"));
    EXPECT_EQ(m_root.GetAllAtributes(), (QStringList{"x", "y"}));
}

TEST_F(XmlDeserializerTest, ValuesAreReadOrLeftAsTheyWere)
{
    int value = 7;
    EXPECT_FALSE(m_root.GetAttribute("y", value, false) || m_root.GetAttribute("d", value, false));
    EXPECT_TRUE(m_root.GetValue(value, false)); // an element without text counts as read
    EXPECT_EQ(value, 7);
    EXPECT_TRUE(m_root.GetAttribute("x", value, false));
    EXPECT_EQ(value, 1);
    EXPECT_EQ(m_root.GetAttributeOr("y", 5), 5);
    EXPECT_EQ(GetFailure([&] { static_cast<void>(m_root.GetAttribute<int>("y")); }),
              "Line 1: <a> wrong attribute cast <y> @1 a");
    EXPECT_EQ(GetFailure([&] { static_cast<void>(m_root.GetAttribute<int>("d")); }),
              "Line 1: <a> does not contain the attribute <d> @1 a");
    EXPECT_EQ(GetFailure([&] { static_cast<void>(m_root.GetValue<int>()); }),
              "Line 1: <a> doesn't contain value @1 a");
    EXPECT_EQ(GetFailure([&] { m_root.Throw("what \"%1\""); }), "Line 1: <a>: what \"%1\" @1 a");

    std::vector<int> values{9};
    EXPECT_TRUE(m_root.GetChildren("b", values, false));
    EXPECT_THAT(values, testing::ElementsAre(1, 0, 3));
    EXPECT_THROW(m_root.GetChildren("b", values, true), XmlException); // the second one is empty
    const XmlDocument wrong = XmlDocument::FromString("<a><b>1</b><b>x</b></a>");
    EXPECT_FALSE(wrong.Deserialize("a").GetChildren("b", values, false));
    EXPECT_THAT(values, testing::ElementsAre(1, 0, 3));
    EXPECT_TRUE(m_root.GetChildren("d", values, true));
    EXPECT_TRUE(values.empty());
}

TEST_F(XmlDeserializerTest, ElementsAreComparedAllTheWayDown)
{
    const std::pair<const char*, bool> rows[] = {
        {"<a y='2'\n x='1'><!-- --><b i='3'>t</b> <c></c></a>", true},
        {"<a x='1' y='2' ignored='5'><b i='3' ignored=''>t</b><c/></a>", true},
        {"<a x='1' y='3'><b i='3'>t</b><c/></a>", false},
        {"<a x='1' z='2'><b i='3'>t</b><c/></a>", false},
        {"<a x='1' y='2' z=''><b i='3'>t</b><c/></a>", false},
        {"<a x='1'><b i='3'>t</b><c/></a>", false},
        {"<a x='1' y='2'><b i='4'>t</b><c/></a>", false},
        {"<a x='1' y='2'><b i='3'>u</b><c/></a>", false},
        {"<a x='1' y='2'><c/><b i='3'>t</b></a>", false},
        {"<a x='1' y='2'><b i='3'>t</b></a>", false},
        {"<a x='1' y='2'><b i='3'>t</b><c/><c/></a>", false},
        {"<a x='1' y='2'>t<b i='3'>t</b><c/></a>", false},
        {"<a x='1' y='2'><b i='3'>t</b><c/>t</a>", false},
        {"<a x='1' y='2'><b i='3'><!-- --><![CDATA[t]]></b><c/></a>", true},
        {"<b><a x='1' y='2'><b i='3'>t</b><c/></a></b>", false}};
    const XmlDocument a = XmlDocument::FromString("<a x='1' y='2'><b i='3'>t</b><c/></a>");
    for (const auto& [second, isEqual] : rows)
    {
        const XmlDocument b = XmlDocument::FromString(second);
        const auto* const root = second[1] == 'a' ? "a" : "b";
        EXPECT_EQ(a.Deserialize("a").IsEqual(b.Deserialize(root), {"ignored"}), isEqual) << second;
        EXPECT_EQ(b.Deserialize(root).IsEqual(a.Deserialize("a"), {"ignored"}), isEqual) << second;
    }
    EXPECT_FALSE(a.Deserialize("a").IsEqual(XmlDocument::FromString(rows[1].first).Deserialize("a"), {}));
}
} // namespace vek
