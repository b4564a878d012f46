#pragma once
#include "InspectionDesk/DeskSettings.h"
#include "InspectionDesk/IPlaneFitter.h"
#include <QImage>
#include <QWidget>
#include <memory>

namespace vek::Desk
{
/// Shows the points along the normal of their plane, coloured by deviation, and a legend. Main thread only.
class DeviationView : public QWidget
{
public:
    explicit DeviationView(const DeskSettings& settings);

    void SetSettings(const DeskSettings& settings);

    /// Draws at once.
    void Show(std::shared_ptr<const Inspection> inspection);
    /// Null before the first one.
    [[nodiscard]] const std::shared_ptr<const Inspection>& GetInspection() const { return m_inspection; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The largest deviation, to either side, that has a colour of its own.
    [[nodiscard]] double _GetLimit() const;
    void _DrawPoints();

    DeskSettings m_settings;
    std::shared_ptr<const Inspection> m_inspection; ///< Null before the first one.
    QImage m_image;                                 ///< The points as drawn the last time; may be null.
};
} // namespace vek::Desk
