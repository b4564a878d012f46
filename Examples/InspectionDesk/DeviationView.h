#pragma once
#include "InspectionDesk/DeskSettings.h"
#include "InspectionDesk/InspectionDocument.h"
#include <QImage>
#include <QWidget>
#include <optional>

namespace vek::Desk
{
/// Shows the points along the normal of their plane, coloured by deviation, and a legend; of a report, which
/// has no points, the legend alone. Main thread only.
class DeviationView : public QWidget
{
public:
    explicit DeviationView(const DeskSettings& settings);

    void SetSettings(const DeskSettings& settings);

    /// Draws at once.
    void Show(const InspectionDocument& result);
    /// Its report has the legend that is shown. Empty before the first one.
    [[nodiscard]] const std::optional<InspectionDocument>& GetResult() const { return m_result; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The largest deviation, to either side, that has a colour of its own.
    [[nodiscard]] double _GetLimit() const;
    void _TakeLegend();
    void _DrawPoints();

    DeskSettings m_settings;
    std::optional<InspectionDocument> m_result; ///< Empty before the first one.
    QImage m_image;                             ///< The points as drawn the last time; may be null.
};
} // namespace vek::Desk
