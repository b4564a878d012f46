#pragma once
#include "InspectionDesk/LengthText.h"
#include <QColor>
#include <QStringList>

namespace vek::App
{
class VekQSettings;
} // namespace vek::App

namespace vek::Desk
{
/// What the user has chosen; at first, what the desk does on its own.
struct DeskSettings
{
    static constexpr Unit::Length largestTolerance{1000.0, Unit::LengthUnit::Millimeter};

    ShownUnit unit;
    QColor above{0xb2, 0x18, 0x2b}; ///< The colours at both ends of the scale.
    QColor below{0x21, 0x66, 0xac};
    /// Where the scale ends; 0 for the largest deviation.
    Unit::Length tolerance{0.0, Unit::LengthUnit::Millimeter};
    QStringList recentFiles; ///< Absolute, the newest first, at most 8.
    bool restoresWindow = true;
    QByteArray geometry;     ///< Of the window when it was closed; see QWidget::saveGeometry.
    bool sendsUsage = false; ///< The user has agreed to usage statistics.
    QString clientId{};      ///< A random number of this installation; empty before he has.
    QString updateAddress{}; ///< Where the number of the newest version stands; empty for not looking.

    void AddRecentFile(const QString& file);
    bool operator==(const DeskSettings&) const = default;
};

/// Where the settings are kept: in the user's store, with the machine's below it. The user is notified once
/// of what is wrong with them; the desk then works with what it has. Main thread only.
class DeskSettingsStore
{
public:
    /// Reads them.
    DeskSettingsStore();

    [[nodiscard]] const DeskSettings& Get() const { return m_kept; }
    /// Writes what differs from Get: the rest goes on following the machine's.
    void Write(const DeskSettings& settings);

private:
    void _TellProblem(const App::VekQSettings& store, bool isWritten);

    DeskSettings m_kept;
    bool m_hasTold = false;
};
} // namespace vek::Desk
