#include "VekAppCore/Xml/XmlDocument.h"
#include "Support/TestSupport.h"
#include "VekBase/ScopedTempFolder.h"
#include "Xml/XmlTestSupport.h"
#include <QDir>
#include <QFile>
#include <QStringEncoder>
#include <gmock/gmock.h>

namespace vek
{
using namespace Qt::StringLiterals;
using TestSupport::GetFailure;

class XmlDocumentTest : public testing::Test
{
protected:
    QString Write(const QByteArray& content) const
    {
        QFile file(m_folder.GetPath() + "/a.xml");
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }
    static QByteArray Read(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    const ScopedTempFolder m_folder;
};

TEST_F(XmlDocumentTest, FileIsReadInItsEncoding)
{
    const auto encode = [](QStringConverter::Encoding encoding, const QString& text) {
        return QByteArray(QStringEncoder(encoding, QStringConverter::Flag::WriteBom)(text));
    };
    const auto declared = [](const char* encoding, const QByteArray& element) {
        return QByteArray("<?xml version='1.0' encoding='") + encoding + "'?>" + element;
    };
    const QString text = u"<?xml version='1.0' encoding=\"UTF-16\" ?><a b=\"\u00e4\u20ac\U0001f4cf\"/>"_s;
    const QByteArray utf8 = text.mid(text.indexOf(u"<a"_s)).toUtf8();
    const QString all = u"\u00e4\u20ac\U0001f4cf"_s;
    // A pair of surrogates lies on the border of what is decoded at once.
    const QString large =
        u"<!--"_s + QString(524'282, u'x') + u"\U0001f4cf-->"_s + text.mid(text.indexOf(u"<a"_s));
    const std::tuple<const char*, QByteArray, QString> rows[] = {
        // a null value where it cannot be read
        {"UTF-8 misread", utf8, all},
        {"mark taken for text", "\xef\xbb\xbf" + utf8, all},
        {"declaration believed before mark", "\xef\xbb\xbf" + declared("ISO-8859-1", utf8), all},
        {"UTF-16 LE", encode(QStringConverter::Utf16LE, text), all},
        {"UTF-16 BE", encode(QStringConverter::Utf16BE, text), all},
        {"UTF-32 LE taken for UTF-16", encode(QStringConverter::Utf32LE, text), all},
        {"UTF-32 BE", encode(QStringConverter::Utf32BE, text), all},
        {"pair cut in two", encode(QStringConverter::Utf16LE, large), all},
        {"declaration ignored", declared("iso-8859-1", "<a b='\xe4'/>"), u"\u00e4"_s},
        {"UTF-16 believed", declared("utf-16", utf8), all},
        {"encoding in a comment believed", "<!-- <?xml version='1.0' encoding='x'?> -->" + utf8, all},
        {"broken UTF-8 read", "<a b='\xe4'/>", {}},
        {"unknown encoding ignored", declared("x-none", utf8), {}},
        {"half a unit dropped", encode(QStringConverter::Utf16LE, text) + 'x', {}},
        {"surrogate without its second half read", QByteArray::fromHex("fffe3c0061002f003e0061d8"), {}},
        {"what only Qt calls an encoding read", declared("locale", utf8), {}},
        {"lone surrogate read", QByteArray::fromHex("fffe3c006100000061d82f003e00"), {}}};
    for (const auto& [fault, file, value] : rows)
    {
        SCOPED_TRACE(fault);
        const QString path = Write(file);
        XmlDocument document;
        const std::string failure = GetFailure([&] { document.LoadFile(path); });
        if (value.isNull())
        {
            EXPECT_EQ(failure, u"Impossible to read XML file: <%1> @0 a.xml"_s.arg(path).toStdString());
            continue;
        }
        EXPECT_EQ(document.Deserialize("a").GetAttribute<QString>("b"), value);
        EXPECT_TRUE(document.SaveFile(path, false)); // what it declares is what it is
        EXPECT_EQ(XmlDocument::FromFile(path).Deserialize("a").GetAttribute<QString>("b"), value);
    }
}

TEST_F(XmlDocumentTest, WhatCannotBeReadLeavesTheDocumentEmpty)
{
    QByteArray attributes;
    for (int i = 0; i < 1025; ++i)
        attributes += " a" + QByteArray::number(i) + "='>'";
    const auto nest = [](int levels) {
        return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
    };
    const auto parse = [](const QString& text) {
        return GetFailure([&text] { static_cast<void>(XmlDocument::FromString(text)); });
    };
    const auto withOneLess = attributes.left(attributes.lastIndexOf(' '));
    EXPECT_EQ(parse("<a><!-- ' --><![CDATA[']]><!x ' >'<b" + withOneLess + "/><b" + withOneLess + "/></a>"),
              "");
    EXPECT_EQ(parse(nest(98)), "");
    const std::pair<QByteArray, int> rows[] = {{"", 0},
                                               {"<a>\n<b>\n</a>", 2},
                                               {"<a>\n\n<b c=1/></a>", 3},
                                               {"<a b='1' b='2'/>", 1},
                                               {"\n<a" + attributes + "/>", 2},
                                               {"<!-- \" -->\n<a" + attributes + "/>", 2},
                                               {nest(99), 1},
                                               {"<a>&quot", 1},
                                               {"<a/>\n</b><c/>", 2},
                                               {"<a>&gt;</a>\n\n< /a>", 3},
                                               {"text", 1}};
    for (const auto& [text, line] : rows)
    {
        XmlDocument document = XmlDocument::FromString("<a/>");
        const std::string message = "Impossible to parse XML string @" + std::to_string(line);
        EXPECT_EQ(GetFailure([&] { document.LoadString(text); }), message) << text.left(40).toStdString();
        EXPECT_EQ(document.ToString(true), QString());
        document.LoadString("<a/>");
        EXPECT_EQ(GetFailure([&] { document.LoadFile(Write(text)); }), message + " a.xml");
        EXPECT_EQ(document.ToString(true), QString());
    }
    for (const QByteArray& text : {QByteArray("<a/>\n\0<b>", 9), "<a>\n" + QByteArray(1 << 21, '&') + "</a>"})
        EXPECT_EQ(GetFailure([&] { static_cast<void>(XmlDocument::FromFile(Write(text))); }),
                  "Impossible to parse XML string @2 a.xml");
    EXPECT_EQ(parse(u"<a>"_s + QChar(0xd800) + u"</a>"_s), "Impossible to parse XML string @0");
    // Each ampersand is looked for once, and most are no entity.
    EXPECT_EQ(parse("<a>" + QString("<p x='1' y='2'/>").repeated(200'000) + "&amp;</a>"), "");
    XmlDocument document = XmlDocument::FromString("<a>" + QString("x<!-- -->").repeated(500'000) + "</a>");
    EXPECT_EQ(document.Deserialize("a").GetValue<std::string>().size(), 500'000U);
    for (const QString& path : {m_folder.GetPath(), m_folder.GetPath() + "/none", u"/dev/zero"_s, QString()})
    {
        EXPECT_THAT(GetFailure([&] { document.LoadFile(path); }),
                    testing::StartsWith(u"Impossible to read XML file: <%1>"_s.arg(path).toStdString()));
        EXPECT_EQ(document.ToString(false), QString());
    }
}

TEST_F(XmlDocumentTest, RootIsTheFirstTopLevelElementOfTheName)
{
    const XmlDocument document =
        XmlDocument::FromString("<!-- --><b/><a version='3'><c/></a><a version='4'/>");
    EXPECT_EQ(document.Deserialize("a").GetVersion(), 3);
    document.Deserialize("a").Child(
        "c", [](const auto& c) { EXPECT_EQ(c.GetVersion(), 3); }, true);
    EXPECT_EQ(document.Deserialize("b").GetVersion(), 0);
    EXPECT_EQ(XmlDocument::FromString("<a version='x'/>").Deserialize("a").GetVersion(), 0);
    for (const XmlDocument& other :
         {XmlDocument(), XmlDocument::FromString("<!-- -->"), XmlDocument::FromString("<A><c/></A>")})
        EXPECT_EQ(GetFailure([&] { static_cast<void>(other.Deserialize("c")); }),
                  "Xml document does not contain the root element: <c> @0");

    XmlDocument taken = XmlDocument::FromString("<a/>");
    XmlDocument moved = std::move(taken);
    EXPECT_EQ(taken.ToString(false), QString());
    taken = std::move(moved);
    EXPECT_EQ(taken.Deserialize("a").GetName(), "a");
}

TEST_F(XmlDocumentTest, IsPrintedWithADeclaration)
{
    XmlDocument document = XmlDocument::FromString("<a><b>1</b> <c d='2'/></a>");
    const char* const formatted =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\n    <b>1</b>\n    <c d=\"2\"/>\n</a>\n";
    const char* const compact = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a><b>1</b><c d=\"2\"/></a>";
    EXPECT_EQ(document.ToString(true), formatted);
    EXPECT_EQ(document.ToString(false), compact);
    EXPECT_EQ(XmlDocument::FromString("<?xml version='1.1'?><!-- --><a/>").ToString(false),
              "<?xml version='1.1'?><!-- --><a/>");
    EXPECT_EQ(XmlDocument().ToString(true), QString());
    EXPECT_EQ(XmlDocument::FromString("<?xml-any encoding='x'?><a/>").ToString(false),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><?xml-any encoding='x'?><a/>");
    const char* const typed = "<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY x '&#38;'><!ENTITY y 'z'>]><a/>";
    EXPECT_EQ(XmlDocument::FromString(typed).ToString(false), typed);

    const QString path = Write("before, and longer than what follows: " + QByteArray(200, 'x'));
    using Save = bool (XmlDocument::*)(const QString&, bool);
    for (const Save save : {&XmlDocument::SaveFile, &XmlDocument::SaveFileReplacing})
    {
        EXPECT_TRUE((document.*save)(path, true));
        EXPECT_EQ(Read(path), formatted);
        EXPECT_TRUE((document.*save)(path, false));
        EXPECT_EQ(Read(path), compact);
        for (const QString& wrong :
             {m_folder.GetPath(), m_folder.GetPath() + "/none/a.xml", QString(), path + QChar(u'\0') + u'b'})
            EXPECT_FALSE((document.*save)(wrong, false)) << wrong.toStdString();
    }
    EXPECT_EQ(QDir(m_folder.GetPath()).entryList(QDir::Files), QStringList("a.xml"));
    EXPECT_EQ(Read(path), compact);
    if (QFile::exists("/dev/full"))
    {
        EXPECT_FALSE(document.SaveFile("/dev/full", false));
    }
}
} // namespace vek
