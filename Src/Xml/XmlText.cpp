#include "Xml/XmlText.h"
#include <QRegularExpression>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace vek
{
namespace
{
constexpr qsizetype mostOfDeclaration = 1024;
constexpr int mostEscaped = 1 << 20; // each takes five characters for one

std::optional<QByteArray> Decode(const QByteArray& bytes, QStringDecoder decoder)
{
    constexpr qsizetype chunkSize =
        1 << 20; // all of a large file as UTF-16 would take twice its size once more
    QStringEncoder encoder(QStringConverter::Utf8);
    QByteArray utf8;
    bool endsInPair = false; // in the middle of it
    for (qsizetype at = 0; at < bytes.size() && decoder.isValid(); at += chunkSize)
    {
        const auto chunk = QByteArrayView(bytes).sliced(at, std::min(chunkSize, bytes.size() - at));
        const QString text = decoder(chunk);
        endsInPair = !text.isEmpty() && text.back().isHighSurrogate();
        utf8 += QByteArray(encoder(text));
    }
    if (!decoder.isValid() || decoder.hasError() || encoder.hasError() || endsInPair)
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

/// Whether a text that follows an ampersand is one of the five entities or a character by number.
bool IsReference(std::string_view text)
{
    constexpr std::array entities{"amp;", "lt;", "gt;", "quot;", "apos;"};
    if (!text.starts_with('#'))
        return std::ranges::any_of(entities, [text](const char* entity) { return text.starts_with(entity); });
    const bool isHexadecimal = text.starts_with("#x");
    text.remove_prefix(isHexadecimal ? 2 : 1);
    std::uint32_t character = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), character, isHexadecimal ? 16 : 10);
    return error == std::errc() && end != text.data() + text.size() && *end == ';' &&
           character <= QChar::LastValidCodePoint && !QChar::isSurrogate(character);
}

/// Follows the parser: what that takes for a tag or a comment, this does, too.
class Scanner
{
public:
    explicit Scanner(std::string_view text) : m_text(text), m_hasAmpersands(text.find('&') != npos) {}

    XmlScan Scan()
    {
        m_scan.unparsable = m_text.find('\0');
        for (std::size_t at = 0; at < m_text.size() && m_scan.unparsable == npos;)
        {
            const std::size_t tag = std::min(m_text.find('<', at), m_text.size());
            _Escape(at, tag);
            at = _SkipTag(tag + 1);
        }
        if (m_copied > 0)
            m_scan.escaped += m_text.substr(m_copied);
        return std::move(m_scan);
    }

private:
    static constexpr std::size_t npos = std::string_view::npos;

    /// Behind the next @p end.
    [[nodiscard]] std::size_t _Skip(std::size_t at, std::string_view end) const
    {
        const std::size_t found = m_text.find(end, at);
        return found == npos ? m_text.size() : found + end.size();
    }

    std::size_t _SkipTag(std::size_t at)
    {
        const std::string_view rest = m_text.substr(std::min(at, m_text.size()));
        if (rest.starts_with("?"))
            return _Skip(at + 1, "?>");
        if (rest.starts_with("!--"))
            return _Skip(at + 3, "-->");
        if (rest.starts_with("![CDATA["))
            return _Skip(at + 8, "]]>");
        if (rest.starts_with("!"))
            return _Skip(at, ">");
        if (rest.substr(std::min(rest.find_first_not_of(" \t\n\v\f\r"), rest.size())).starts_with('/'))
        {
            if (--m_depth < 0)
                m_scan.unparsable = std::min(m_scan.unparsable, at);
            return _Skip(at, ">");
        }
        int attributes = 0;
        for (; at < m_text.size() && m_text[at] != '>'; ++at)
        {
            const char quote = m_text[at];
            if (quote != '"' && quote != '\'')
                continue;
            if (++attributes > mostAttributes)
                m_scan.unparsable = std::min(m_scan.unparsable, at);
            const std::size_t end = std::min(m_text.find(quote, at + 1), m_text.size());
            _Escape(at + 1, end);
            at = end;
        }
        if (at < m_text.size() && m_text[at - 1] != '/')
            ++m_depth;
        return at + 1;
    }

    void _Escape(std::size_t begin, std::size_t end)
    {
        if (!m_hasAmpersands)
            return;
        const std::string_view part = m_text.substr(0, end);
        for (std::size_t at = begin; (at = part.find('&', at)) != npos; ++at)
            if (!IsReference(m_text.substr(at + 1)))
            {
                if (++m_escaped > mostEscaped)
                    m_scan.unparsable = std::min(m_scan.unparsable, at);
                m_scan.escaped.append(m_text.substr(m_copied, at - m_copied)).append("&amp;");
                m_copied = at + 1;
            }
    }

    std::string_view m_text;
    bool m_hasAmpersands;
    int m_depth = 0; ///< Of open elements.
    int m_escaped = 0;
    std::size_t m_copied = 0; ///< Before it, all is in the escaped text.
    XmlScan m_scan;
};
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
    const bool isUtf8 = declared.isEmpty() || declared == "US-ASCII" || declared == "UTF8" ||
                        declared.startsWith("UTF-8") || declared.startsWith("UTF-16") ||
                        declared.startsWith("UTF-32");
    if (declared == "LOCALE" || declared == "SYSTEM") // to Qt, what the user's system happens to have
        return std::nullopt;
    if (!isUtf8)
        return Decode(bytes, QStringDecoder(declared.constData()));
    if (marked)
        bytes.remove(0, 3);
    if (!bytes.isValidUtf8())
        return std::nullopt;
    return bytes;
}

XmlScan ScanXml(std::string_view utf8) { return Scanner(utf8).Scan(); }
} // namespace vek
