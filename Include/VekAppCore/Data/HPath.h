#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/LogText.h"
#include <QList>
#include <QString>

namespace vek::App
{
/// The way from a node of a tree to one below it: the names, or the indices in decimal, of the children to go
/// through, the outermost first. Reentrant.
class VEKAPPCORE_EXPORT HPath
{
public:
    /// To the node itself.
    HPath() = default;
    /// @{
    /// @param path  segments with slashes between them; empty ones are left out ("a//b/" has two).
    HPath(const QString& path);
    HPath(const char* path);
    /// @}

    /// @param segments  taken as they are, slashes included.
    HPath(QList<QString> segments) noexcept : m_segments(std::move(segments)) {}

    /// The outermost first.
    [[nodiscard]] const QList<QString>& GetSegments() const noexcept { return m_segments; }
    /// It leads to the node itself.
    [[nodiscard]] bool IsEmpty() const noexcept { return m_segments.isEmpty(); }

    /// One step further.
    [[nodiscard]] HPath operator/(const QString& segment) const;

    /// The segments with slashes between them.
    [[nodiscard]] QString ToString() const;

    bool operator==(const HPath&) const = default;

private:
    QList<QString> m_segments;
};

[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const HPath& path);
using vek::PrintTo;
} // namespace vek::App
