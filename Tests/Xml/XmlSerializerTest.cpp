#include "VekAppCore/Xml/XmlSerializer.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Xml/XmlDocument.h"
#include <QVariant>
#include <gtest/gtest.h>

namespace vek
{
TEST(XmlSerializer, WritesWhatReadsBackWithItsVersion)
{
    XmlDocument document;
    XmlSerializer root = document.Serializer("a");
    root.Child("b", [](XmlSerializer& b) { EXPECT_EQ(b.GetVersion(), 0); });
    root.SetVersion(-3);
    root.Child("b", [](XmlSerializer& b) {
        EXPECT_EQ(b.GetVersion(), -3);
        b.SetVersion(5); // for its children alone
        b.Child("c", [](XmlSerializer& c) {
            EXPECT_EQ(c.GetVersion(), 5);
            c.SetName("d");
            EXPECT_EQ(c.Name(), "d");
        });
    });
    root.AddChildren("e", std::vector{1.5, 2.0});
    EXPECT_EQ(root.GetVersion(), -3);
    EXPECT_EQ(document.ToString(false),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a version=\"-3\"><b/><b><d/></b>"
              "<e>1.5</e><e>2</e></a>");
    EXPECT_EQ(document.Deserialize("a").GetVersion(), -3);

    XmlDocument read = XmlDocument::FromString("<a version='7'/>");
    read.Serializer("a").Child("b", [](const XmlSerializer& b) { EXPECT_EQ(b.GetVersion(), 7); });
    read.Serializer("c").SetValue(1);
    EXPECT_EQ(read.ToString(false).mid(38), "<a version=\"7\"><b/></a><c>1</c>"); // what is there stays
}

TEST(XmlSerializer, GoesNoDeeperThanIsRead)
{
    XmlDocument document;
    int depth = 1;
    const std::function<void(XmlSerializer&)> dig = [&](XmlSerializer& element) {
        ++depth;
        element.SetValue("text");
        element.Child("b", dig);
    };
    XmlSerializer root = document.Serializer("a");
    EXPECT_THROW(root.Child("b", dig), XmlException);
    EXPECT_EQ(depth, 98);
    const XmlDocument read = XmlDocument::FromString(document.ToString(true));
    EXPECT_TRUE(read.Deserialize("a").IsEqual(document.Deserialize("a"), {}));
}

TEST(XmlSerializer, RefusesWhatCouldNotBeReadAgain)
{
    XmlDocument document;
    XmlSerializer root = document.Serializer("a");
    for (const char* name : {"", "a b", "1", "<", "a\n"})
    {
        EXPECT_THROW(root.SetAttribute(name, 1), XmlException) << name;
        EXPECT_THROW(root.Child(name, {}), XmlException) << name;
        EXPECT_THROW(root.SetName(name), XmlException) << name;
        EXPECT_THROW(static_cast<void>(document.Serializer(name)), XmlException) << name;
    }
    EXPECT_EQ(document.ToString(false).mid(38), "<a/>");
    for (const std::string& text : {std::string("a\0b", 3), std::string("\xff")})
    {
        EXPECT_THROW(root.SetAttribute("b", text), XmlException);
        EXPECT_THROW(root.SetValue(text), XmlException);
    }
    EXPECT_THROW(root.SetValue(QString(QChar(0xd800))), XmlException);
    EXPECT_THROW(root.SetAttribute("b", QVariant(QChar(0xd800))), XmlException);
    for (int i = 0; i < 1024; ++i)
        root.SetAttribute(QString::number(i).prepend(u'a').toStdString(), i);
    EXPECT_THROW(root.SetAttribute("b", 1), XmlException);
    root.SetAttribute("a0", 1); // no new one
    static_cast<void>(XmlDocument::FromString(document.ToString(false)));

    XmlDocument read = XmlDocument::FromString("<a><!-- -->1<b/>2<![CDATA[3]]></a>");
    read.Serializer("a").SetValue(4);
    EXPECT_EQ(read.ToString(false).mid(38), "<a>4<!-- --><b/></a>");
}

TEST(AsciiStringViewDeathTest, RefusesWhatIsNotAscii)
{
    EXPECT_DEBUG_DEATH(static_cast<void>(AsciiStringView("\u00e4")), "0x80");
}
} // namespace vek
