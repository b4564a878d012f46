#pragma once
#include "InspectionDesk/Inspection.h"
#include <QImage>
#include <QWidget>
#include <memory>

namespace vek::Desk
{
/// Shows the points along the normal of their plane, coloured by deviation, with scale bar, legend and the
/// two extremes. Main thread only.
class DeviationView : public QWidget
{
public:
    DeviationView() { setMinimumSize(400, 300); } // so that there is room for the points beside the legend

    /// Draws at once.
    void Show(std::shared_ptr<const Inspection> inspection);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QPointF _ToWidget(double x, double y) const;
    void _DrawScale(QPainter& painter) const;
    void _DrawLegend(QPainter& painter) const;
    void _DrawExtreme(QPainter& painter, const FlatPoint& point) const;

    std::shared_ptr<const Inspection> m_inspection; ///< Null before the first one.
    QRectF m_plot;                                  ///< Where the points are drawn.
    double m_pixelsPerMillimetre = 1.0;
    QImage m_image; ///< The points as drawn the last time.
};
} // namespace vek::Desk
