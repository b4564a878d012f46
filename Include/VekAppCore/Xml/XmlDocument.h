#pragma once
#include "VekAppCore/Xml/XmlDeserializer.h"
#include "VekAppCore/Xml/XmlSerializer.h"
#include <memory>

#undef LoadString // of windows.h, which would rename the function

namespace vek
{
struct PathDocument;

/// An XML document. Elements nest 98 deep at most, and one has 1024 attributes at most; what has more is not
/// parsed. Entities are the five of XML and characters by number; others are kept as text, whatever a DOCTYPE
/// says. Processing instructions stand before the root only. One thread at a time uses a document and what
/// stands in it, also for reading.
///
/// What throws throws an XmlException that carries the caller's location. Loading ends the deserializers and
/// serializers of what was there.
///
/// @code
/// XmlDocument document;
/// document.Serializer("Report").SetAttribute("flatness", Unit::Length(55.8, Unit::LengthUnit::Micrometer));
/// const auto flatness = document.Deserialize("Report").GetAttribute<Unit::Length>("flatness");
/// @endcode
class VEKAPPCORE_EXPORT XmlDocument
{
public:
    /// Empty.
    XmlDocument();
    ~XmlDocument();
    /// The one that is left is empty. Deserializers and serializers stay valid.
    XmlDocument(XmlDocument&& other) noexcept;
    XmlDocument& operator=(XmlDocument&& other) noexcept;

    /// As LoadFile.
    [[nodiscard]] static XmlDocument
    FromFile(const QString& path, const std::source_location& where = std::source_location::current());
    /// As LoadString.
    [[nodiscard]] static XmlDocument
    FromString(const QString& text, const std::source_location& where = std::source_location::current());

    /// Reads a file: UTF-8, or UTF-16 and UTF-32 with a byte-order mark, or the encoding that its declaration
    /// names. From then on the document is text, and its declaration names UTF-8.
    /// @throws XmlException  it cannot be read, decoded or parsed; the document is then empty.
    void LoadFile(const QString& path, const std::source_location& where = std::source_location::current());

    /// Reads a text, whatever encoding its declaration names.
    /// @throws XmlException  it cannot be parsed; the document is then empty.
    void LoadString(const QString& text, const std::source_location& where = std::source_location::current());

    /// For reading from the first top-level element of that name.
    /// @throws XmlException  there is none.
    [[nodiscard]] XmlDeserializer
    Deserialize(const AsciiStringView& rootName,
                const std::source_location& where = std::source_location::current()) const;

    /// For writing to the first top-level element of that name, which is added where there is none.
    [[nodiscard]] XmlSerializer
    Serializer(const AsciiStringView& rootName,
               const std::source_location& where = std::source_location::current());

    /// Writes the file in place, UTF-8, as a text file of the platform; where that fails, it is left cut off.
    /// @param formatted  every element on a line of its own.
    /// @return whether it was written.
    [[nodiscard]] bool SaveFile(const QString& path, bool formatted);

    /// Writes a new file, to the disk, which takes the place of the one at @p path only when it is whole.
    /// @return whether it was written; the file of before stays where it was not.
    [[nodiscard]] bool SaveFileReplacing(const QString& path, bool formatted);

    /// The text that SaveFile writes.
    /// @param formatted  every element on a line of its own.
    [[nodiscard]] QString ToString(bool formatted);

protected:
    /// Sees to it that the document starts with an XML declaration, unless it is empty.
    void _AddDeclaration();

private:
    void _Parse(std::string_view utf8, const QString& path, const std::source_location& where);

    std::unique_ptr<PathDocument> m_document; ///< Not null.
};
} // namespace vek
