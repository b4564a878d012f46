#pragma once
#include "VekAppCore/App/Exception.h"
#include "VekBase/LogText.h"

namespace vek
{
/// What is wrong with an XML document, and where.
class VEKAPPCORE_EXPORT XmlException : public Exception::InternalAppException
{
public:
    /// Where in which document.
    struct Place
    {
        int line = 0;    ///< From 1; 0 where it is not known, as in an element that was not read from a text.
        QString element; ///< Its name; empty where the document as a whole is wrong.
        QString path;    ///< Of the file; empty for a document that was not read from one.
    };

    /// @param message  not translated.
    explicit XmlException(const QString& message, Place place,
                          const std::source_location& where = std::source_location::current());
    ~XmlException() override;
    XmlException(const XmlException&) = default;
    XmlException& operator=(const XmlException&) = default;

    /// As given to the constructor.
    [[nodiscard]] const Place& GetPlace() const noexcept { return m_place; }

private:
    Place m_place;
};

/// As compilers write it: "plate.xml:12: Width".
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const XmlException::Place& place);
} // namespace vek
