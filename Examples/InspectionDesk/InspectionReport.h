#pragma once
#include "InspectionDesk/LengthText.h"
#include "VekAppCore/Text/TrString.h"
#include "VekAppCore/Text/Triplet.h"
#include <QColor>
#include <utility>
#include <vector>

namespace vek
{
class IXmlValidatorService;
} // namespace vek

/// Results for other programs: XML files, which have the figures but not the points. Any thread.
namespace vek::Desk
{
/// What is kept of an inspection without its points.
struct InspectionReport
{
    struct Extreme
    {
        Unit::Length deviation; ///< Positive on the side of the normal.
        Triplet place;          ///< Where it was measured.
    };

    QString title;
    qint64 points = 0;
    Unit::Length flatness;
    Unit::Length standardDeviation;
    Extreme highest;
    Extreme lowest;
    // The legend of the picture.
    Unit::Length tolerance; ///< 0 for the largest deviation.
    QColor above;
    QColor below;

    /// Names and values for people.
    [[nodiscard]] std::vector<std::pair<TrString, QString>> GetFigures(const ShownUnit& unit = {}) const;
};

/// Without dot.
constexpr QLatin1String reportExtension("xml");

/// The file is one of these, by its extension.
[[nodiscard]] bool IsReport(const QString& path);

/// What was in the file stays unless all of the report has been written.
/// @throws Exception::AppException  it cannot be written; the message names the file.
void WriteReport(const QString& path, const InspectionReport& report);

/// @throws Exception::AppException  it cannot be read, or what is in it is no report; the message names the
/// file and the line.
[[nodiscard]] InspectionReport ReadReport(const QString& path, const IXmlValidatorService& validator);
} // namespace vek::Desk
