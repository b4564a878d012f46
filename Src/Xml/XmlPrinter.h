#pragma once
#include <functional>
#include <string>
#include <string_view>
#include <tinyxml2.h>

namespace vek
{
/// Prints a document as tinyxml2 does, but so that every text comes back: carriage returns, which a parser
/// makes line feeds, line breaks and tabs in attributes, which most make blanks, and texts of blanks alone,
/// which it drops, are written as characters by number.
class XmlPrinter : private tinyxml2::XMLPrinter
{
public:
    /// Takes a part of the text.
    using Sink = std::function<void(std::string_view)>;

    XmlPrinter(Sink sink, bool formatted);

    void PrintAll(const tinyxml2::XMLDocument& document);

private:
    bool Visit(const tinyxml2::XMLText& text) override;
    void Write(const char* data, std::size_t size) override;
    void Putc(char character) override;
    void _Append(std::string_view text);

    Sink m_sink;
    std::string m_buffer;        ///< Not yet given to the sink.
    std::string_view m_referred; ///< The characters of the text that is printed which are written by number.
};
} // namespace vek
