#include "Xml/XmlPrinter.h"
#include <algorithm>
#include <utility>

namespace vek
{
namespace
{
constexpr std::size_t bufferSize = 1 << 16;
constexpr std::string_view blanks = " \t\n\v\f\r";
} // namespace

XmlPrinter::XmlPrinter(Sink sink, bool formatted)
    : tinyxml2::XMLPrinter(nullptr, !formatted), m_sink(std::move(sink))
{}

void XmlPrinter::PrintAll(const tinyxml2::XMLDocument& document)
{
    document.Accept(this);
    m_sink(m_buffer);
    m_buffer.clear();
}

bool XmlPrinter::Visit(const tinyxml2::XMLText& text)
{
    if (!text.CData())
    {
        const bool isBlank =
            std::string_view(text.Value()).find_first_not_of(blanks) == std::string_view::npos;
        m_referred = isBlank ? blanks : "\r";
    }
    // Beside the root, it is what the parser has left of a DOCTYPE: its ">" is none of a text.
    if (!text.CData() && text.Parent() && text.Parent()->ToDocument())
        for (const char* c = text.Value(); *c != '\0'; ++c)
            if (*c == '&' || *c == '<')
                _Append(*c == '&' ? "&amp;" : "&lt;");
            else
                Write(c, 1);
    else
        XMLPrinter::Visit(text);
    m_referred = {};
    return true;
}

void XmlPrinter::Write(const char* data, std::size_t size)
{
    // Between an element's name and the end of its tag are its attributes.
    const std::string_view referred = _elementJustOpened ? "\t\n\r" : m_referred;
    const auto isReferred = [referred](char c) {
        return c <= ' ' && referred.find(c) != std::string_view::npos;
    };
    const char* const end = data + size;
    for (const char* rest = data;; ++rest)
    {
        const char* const stop = std::find_if(rest, end, isReferred);
        _Append({rest, stop});
        if (stop == end)
            return;
        _Append("&#" + std::to_string(static_cast<int>(*stop)) + ';');
        rest = stop;
    }
}

void XmlPrinter::Putc(char character) { _Append({&character, 1}); }

void XmlPrinter::_Append(std::string_view text)
{
    m_buffer += text;
    if (m_buffer.size() < bufferSize)
        return;
    m_sink(m_buffer);
    m_buffer.clear();
}
} // namespace vek
