#pragma once
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
    DeviationView() { setMinimumSize(400, 300); } // so that there is room for the points beside the legend

    /// Draws at once.
    void Show(std::shared_ptr<const Inspection> inspection);
    /// Null before the first one.
    [[nodiscard]] const Inspection* GetInspection() const { return m_inspection.get(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void _DrawPoints();

    std::shared_ptr<const Inspection> m_inspection; ///< Null before the first one.
    double m_limit = 0.0;                           ///< The largest deviation to either side.
    QImage m_image;                                 ///< The points as drawn the last time.
};
} // namespace vek::Desk
