#include "VekAppCore/Xml/XmlDocument.h"
#include "Platform/Platform.h"
#include "Xml/PathDocument.h"
#include "Xml/XmlPrinter.h"
#include "Xml/XmlText.h"
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringDecoder>
#include <algorithm>
#include <cstdio>

namespace vek
{
namespace
{
/// Null where the document does not start with one, but with another "<?...?>", say.
tinyxml2::XMLNode* FindDeclaration(tinyxml2::XMLDocument& document)
{
    tinyxml2::XMLNode* const first = document.FirstChild();
    const bool isDeclaration =
        first && first->ToDeclaration() && std::string_view(first->Value()).starts_with("xml ");
    return isDeclaration ? first : nullptr;
}

/// From now on it is UTF-8, whatever it was in its file.
void DeclareUtf8(tinyxml2::XMLDocument& document)
{
    tinyxml2::XMLNode* const declaration = FindDeclaration(document);
    if (!declaration)
        return;
    static const QRegularExpression encoding(QStringLiteral(R"((\sencoding\s*=\s*)(["'])[^"']*["'])"));
    QString text = QString::fromUtf8(declaration->Value());
    text.replace(encoding, QStringLiteral(R"(\1\2UTF-8\2)"));
    declaration->SetValue(text.toUtf8().constData());
}

std::string_view ToView(const QByteArray& utf8)
{
    return {utf8.data(), static_cast<std::size_t>(utf8.size())};
}

int GetLine(std::string_view text, std::size_t at)
{
    return 1 + static_cast<int>(std::ranges::count(text.substr(0, at), '\n'));
}

/// Whether all of the document got into the file.
bool Print(const tinyxml2::XMLDocument& document, std::FILE* file, bool formatted)
{
    bool isWritten = true;
    XmlPrinter(
        [&](std::string_view text) {
            isWritten = isWritten && std::fwrite(text.data(), 1, text.size(), file) == text.size();
        },
        formatted)
        .PrintAll(document);
    return isWritten && std::fflush(file) == 0;
}
} // namespace

XmlDocument::XmlDocument() : m_document(std::make_unique<PathDocument>()) {}
XmlDocument::~XmlDocument() = default;
XmlDocument::XmlDocument(XmlDocument&& other) noexcept : XmlDocument() { m_document.swap(other.m_document); }

XmlDocument& XmlDocument::operator=(XmlDocument&& other) noexcept
{
    XmlDocument taken(std::move(other));
    m_document.swap(taken.m_document);
    return *this;
}

XmlDocument XmlDocument::FromFile(const QString& path, const std::source_location& where)
{
    XmlDocument document;
    document.LoadFile(path, where);
    return document;
}

XmlDocument XmlDocument::FromString(const QString& text, const std::source_location& where)
{
    XmlDocument document;
    document.LoadString(text, where);
    return document;
}

void XmlDocument::LoadFile(const QString& path, const std::source_location& where)
{
    m_document = std::make_unique<PathDocument>(); // what was there goes before more memory is taken
    std::optional<QByteArray> utf8;
    QFile file(path);
    if (QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly)) // a device may have no end
    {
        QByteArray bytes = file.readAll();
        if (file.error() == QFileDevice::NoError)
            utf8 = DecodeXml(std::move(bytes));
    }
    if (!utf8)
        throw XmlException(QStringLiteral("Impossible to read XML file: <%1>").arg(path), {0, {}, path},
                           where);
    _Parse(ToView(*utf8), path, where);
}

void XmlDocument::LoadString(const QString& text, const std::source_location& where)
{
    m_document = std::make_unique<PathDocument>();
    const QStringView view = text;
    const QByteArray utf8 = view.sliced(text.startsWith(QChar::ByteOrderMark) ? 1 : 0).toUtf8();
    if (!text.isValidUtf16())
        throw XmlException(QStringLiteral("Impossible to parse XML string"), {}, where);
    _Parse(ToView(utf8), {}, where);
}

void XmlDocument::_Parse(std::string_view utf8, const QString& path, const std::source_location& where)
{
    auto document = std::make_unique<PathDocument>();
    document->path = path;
    int line = 0;
    const XmlScan scan = ScanXml(utf8);
    const std::string_view parsable = scan.escaped.empty() ? utf8 : scan.escaped;
    if (scan.unparsable != std::string_view::npos)
        line = GetLine(utf8, scan.unparsable);
    else if (document->Parse(parsable.data(), parsable.size()) != tinyxml2::XML_SUCCESS)
        line = document->ErrorLineNum();
    else
    {
        DeclareUtf8(*document);
        m_document = std::move(document);
        return;
    }
    throw XmlException(QStringLiteral("Impossible to parse XML string"), {line, {}, path}, where);
}

XmlDeserializer XmlDocument::Deserialize(const AsciiStringView& rootName,
                                         const std::source_location& where) const
{
    const tinyxml2::XMLElement* const root = m_document->FirstChildElement(rootName.GetText());
    if (!root)
        throw XmlException(
            QStringLiteral("Xml document does not contain the root element: <%1>").arg(rootName.ToString()),
            {0, {}, m_document->path}, where);
    return XmlDeserializer(*root, XmlDeserializer(*root).GetAttributeOr("version", 0));
}

XmlSerializer XmlDocument::Serializer(const AsciiStringView& rootName, const std::source_location& where)
{
    tinyxml2::XMLElement* root = m_document->FirstChildElement(rootName.GetText());
    if (!root)
    {
        root = m_document->NewElement(rootName.GetText());
        XmlDetails::RequireName(*root, rootName, where); // before it is part of the document
        m_document->InsertEndChild(root);
    }
    return XmlSerializer(*root, XmlDeserializer(*root).GetAttributeOr("version", 0));
}

void XmlDocument::_AddDeclaration()
{
    if (m_document->FirstChild() && !FindDeclaration(*m_document))
        m_document->InsertFirstChild(m_document->NewDeclaration());
}

bool XmlDocument::SaveFile(const QString& path, bool formatted)
{
    const auto close = [](std::FILE* file) { std::fclose(file); };
    if (path.contains(QChar::Null)) // the system would take what is before it
        return false;
    const std::unique_ptr<std::FILE, decltype(close)> file(Platform::OpenForWriting(path));
    if (!file)
        return false;
    _AddDeclaration();
    return Print(*m_document, file.get(), formatted);
}

bool XmlDocument::SaveFileReplacing(const QString& path, bool formatted)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    _AddDeclaration();
    XmlPrinter([&file](std::string_view text) { file.write(text.data(), static_cast<qint64>(text.size())); },
               formatted)
        .PrintAll(*m_document);
    return file.commit(); // false where a write failed, too
}

QString XmlDocument::ToString(bool formatted)
{
    _AddDeclaration();
    QStringDecoder decoder(QStringConverter::Utf8);
    QString text;
    XmlPrinter(
        [&](std::string_view part) {
            text += QString(decoder(QByteArrayView(part.data(), static_cast<qsizetype>(part.size()))));
        },
        formatted)
        .PrintAll(*m_document);
    return text;
}
} // namespace vek
