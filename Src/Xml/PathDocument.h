#pragma once
#include <QString>
#include <tinyxml2.h>

namespace vek
{
/// What messages are to name: a document that knows the file it was read from.
struct PathDocument : tinyxml2::XMLDocument
{
    QString path; ///< Empty without one.
};

/// Of the file that an element was read from; empty without one.
[[nodiscard]] inline QString GetPath(const tinyxml2::XMLElement& element)
{
    const auto* const document = dynamic_cast<const PathDocument*>(element.GetDocument());
    return document ? document->path : QString();
}
} // namespace vek
