#include "Xml/XmlText.h"
#include <QRegularExpression>
#include <QStringDecoder>
#include <algorithm>

namespace vek
{
namespace
{
constexpr qsizetype mostOfDeclaration = 1024;
constexpr int mostAttributes = 1024;

std::optional<QByteArray> Decode(const QByteArray& bytes, QStringDecoder decoder)
{
    constexpr qsizetype chunkSize =
        1 << 20; // all of a large file as UTF-16 would take twice its size once more
    QStringEncoder encoder(QStringConverter::Utf8);
    QByteArray utf8;
    for (qsizetype at = 0; at < bytes.size() && decoder.isValid(); at += chunkSize)
    {
        const auto chunk = QByteArrayView(bytes).sliced(at, std::min(chunkSize, bytes.size() - at));
        const QString text = decoder(chunk);
        utf8 += QByteArray(encoder(text));
    }
    if (!decoder.isValid() || decoder.hasError() || encoder.hasError())
        return std::nullopt;
    return utf8;
}

/// Of the declaration that the file starts with; empty without one.
QByteArray GetDeclaredEncoding(const QByteArray& bytes)
{
    static const QRegularExpression declaration(
        QStringLiteral(R"(^<\?xml\s[^>]*?\sencoding\s*=\s*["']([A-Za-z][A-Za-z0-9._\-]*)["'])"));
    return declaration.match(QString::fromLatin1(bytes.first(std::min(bytes.size(), mostOfDeclaration))))
        .captured(1)
        .toLatin1();
}
} // namespace

std::optional<QByteArray> DecodeXml(QByteArray bytes)
{
    using enum QStringConverter::Encoding;
    const auto marked = QStringConverter::encodingForData(bytes);
    if (marked && *marked != Utf8)
    {
        const bool isWide = *marked == Utf32LE || *marked == Utf32BE;
        if (bytes.size() % (isWide ? 4 : 2) != 0)
            return std::nullopt;
        return Decode(bytes, QStringDecoder(*marked));
    }
    // Where the declaration can be read byte by byte, it is no UTF-16, whatever it says.
    const QByteArray declared = marked ? QByteArray() : GetDeclaredEncoding(bytes).toUpper();
    const bool isUtf8 = declared.isEmpty() || declared == "US-ASCII" || declared.startsWith("UTF-8") ||
                        declared.startsWith("UTF-16") || declared.startsWith("UTF-32");
    if (!isUtf8)
        return Decode(bytes, QStringDecoder(declared.constData()));
    if (marked)
        bytes.remove(0, 3);
    if (!bytes.isValidUtf8())
        return std::nullopt;
    return bytes;
}

// Follows the parser: what it takes for a tag, this does, too.
std::size_t FindUnparsable(std::string_view utf8)
{
    if (const std::size_t null = utf8.find('\0'); null != std::string_view::npos)
        return null;
    const auto skip = [&utf8](std::size_t at, std::string_view end) {
        const std::size_t found = utf8.find(end, at);
        return found == std::string_view::npos ? utf8.size() : found + end.size();
    };
    for (std::size_t at = skip(0, "<"); at < utf8.size(); at = skip(at, "<"))
    {
        const std::string_view rest = utf8.substr(at);
        if (rest.starts_with("?"))
            at = skip(at, "?>");
        else if (rest.starts_with("!--"))
            at = skip(at, "-->");
        else if (rest.starts_with("![CDATA["))
            at = skip(at, "]]>");
        else if (rest.starts_with("!"))
            at = skip(at, ">");
        else
        {
            int attributes = 0;
            for (; at < utf8.size() && utf8[at] != '>'; ++at)
            {
                const char quote = utf8[at];
                if (quote != '"' && quote != '\'')
                    continue;
                if (++attributes > mostAttributes)
                    return at;
                at = std::min(utf8.find(quote, at + 1), utf8.size() - 1);
            }
        }
    }
    return std::string_view::npos;
}
} // namespace vek
