// Loads any bytes as a file and any text as a document, reads all that is in it as every type of value, and
// writes it. What was loaded and written is loaded again, and equal.
#include "VekAppCore/Xml/XmlDocument.h"
#include <QColor>
#include <QPoint>
#include <QTemporaryFile>
#include <QVariant>
#include <cstdint>
#include <cstdlib>

using namespace vek;

namespace
{
template <typename T>
void Read(const XmlDeserializer& element)
{
    const QStringList attributes = element.GetAllAtributes();
    for (const QString& attribute : attributes)
    {
        T value{};
        // Names of attributes need not be ASCII.
        if (XmlDetails::ReadText(element.GetElement().Attribute(attribute.toUtf8().constData()), value))
            static_cast<void>(XmlDetails::WriteText(value));
    }
    static_cast<void>(element.GetValueOr(T()));
}

void Walk(const XmlDeserializer& element)
{
    Read<int>(element);
    Read<quint64>(element);
    Read<double>(element);
    Read<float>(element);
    Read<bool>(element);
    Read<QString>(element);
    Read<QPoint>(element);
    Read<Unit::Length>(element);
    Read<Unit::Angle>(element);
    static_cast<void>(element.GetValueOr(QColor()));
    static_cast<void>(element.GetValueOr(Triplet()));
    static_cast<void>(element.GetAttributeOr("v", QVariant()));
    for (const auto* child = element.GetElement().FirstChildElement(); child;
         child = child->NextSiblingElement())
        Walk(XmlDeserializer(*child));
}

/// What is written is read again, or the program ends.
void Use(XmlDocument document) noexcept
{
    const auto find = [](const XmlDocument& from) -> std::optional<XmlDeserializer> {
        try
        {
            return from.Deserialize("a");
        }
        catch (const XmlException&)
        {
            return std::nullopt;
        }
    };
    const auto root = find(document);
    if (root)
        Walk(*root);
    if (!document.ToString(false).isEmpty())
        static_cast<void>(XmlDocument::FromString(document.ToString(true)));
    const XmlDocument again = root ? XmlDocument::FromString(document.ToString(false)) : XmlDocument();
    const auto rootAgain = find(again);
    if (root && (!rootAgain || !root->IsEqual(*rootAgain, {})))
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto* const bytes = reinterpret_cast<const char*>(data);
    static QTemporaryFile file;
    const auto load = [](const auto& loadIt) -> std::optional<XmlDocument> {
        try
        {
            return loadIt();
        }
        catch (const XmlException&)
        {
            return std::nullopt;
        }
    };
    if (!file.open() || !file.resize(0) || file.write(bytes, qint64(size)) != qint64(size) || !file.flush())
        std::abort();
    if (auto document = load([] { return XmlDocument::FromFile(file.fileName()); }))
        Use(std::move(*document));
    const QString text(reinterpret_cast<const QChar*>(bytes), qsizetype(size / 2));
    if (auto document = load([&text] { return XmlDocument::FromString(text); }))
        Use(std::move(*document));
    return 0;
}
