#pragma once
#include "VekBase/Export.h"
#include <QString>

namespace vek
{
/// A new, empty folder under the system's temporary one, removed with its contents when the object dies. The
/// youngest living one is the active one of the process. Thread-safe.
class VEKBASE_EXPORT ScopedTempFolder
{
public:
    /// @throws Exception::CriticalException  the folder cannot be created; the message names it.
    ScopedTempFolder();
    ScopedTempFolder(const ScopedTempFolder&) = delete;
    ScopedTempFolder& operator=(const ScopedTempFolder&) = delete;
    ~ScopedTempFolder();

    /// Absolute, with forward slashes, and none at its end.
    [[nodiscard]] const QString& GetPath() const noexcept { return m_path; }

    /// The path of the active one; empty when none lives.
    [[nodiscard]] static QString GetActivePath();

private:
    QString m_path;
};
} // namespace vek
