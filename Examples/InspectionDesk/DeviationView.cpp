#include "DeviationView.h"
#include <QPainter>
#include <cmath>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

constexpr QMarginsF margins(34.0, 50.0, 140.0, 34.0); // for the legend on the right
constexpr QRgb middleColour = 0xf7f7f7;
constexpr int paletteSize = 511;      // odd: the middle one is the colour of 0
constexpr double overlap = 1.6;       // of squares on an even grid; less would leave gaps in an uneven one
constexpr double largestSquare = 9.0; // in pixels

/// A column: one colour above the plane, near white on it, the other below.
QImage MakePalette(const InspectionReport& legend)
{
    QLinearGradient gradient(0.0, 0.0, 0.0, paletteSize);
    gradient.setStops({{0.0, legend.above}, {0.5, QColor(middleColour)}, {1.0, legend.below}});
    QImage palette(1, paletteSize, QImage::Format_RGB32);
    QPainter(&palette).fillRect(palette.rect(), gradient);
    return palette;
}
} // namespace

DeviationView::DeviationView(const DeskSettings& settings) : m_settings(settings)
{
    setMinimumSize(400, 300); // so that there is room for the points beside the legend
}

void DeviationView::SetSettings(const DeskSettings& settings)
{
    m_settings = settings;
    _TakeLegend();
    update();
}

void DeviationView::Show(const InspectionDocument& result)
{
    m_result = result;
    _TakeLegend();
    repaint();
}

/// A report has a legend of its own.
void DeviationView::_TakeLegend()
{
    m_image = QImage();
    if (!m_result || !m_result->inspection)
        return;
    m_result->report.tolerance = m_settings.tolerance;
    m_result->report.above = m_settings.above;
    m_result->report.below = m_settings.below;
}

double DeviationView::_GetLimit() const
{
    const auto toMillimetres = [](const Unit::Length& length) {
        return length.GetValueIn(Unit::LengthUnit::Millimeter);
    };
    const InspectionReport& report = m_result->report;
    if (report.tolerance.GetValue() > 0.0)
        return toMillimetres(report.tolerance);
    return std::max({toMillimetres(report.highest.deviation), -toMillimetres(report.lowest.deviation),
                     std::numeric_limits<double>::min()});
}

/// Each point is a square that just covers the space a point has on average.
void DeviationView::_DrawPoints()
{
    const Inspection& inspection = *m_result->inspection;
    const QRectF plot = QRectF(rect()).marginsRemoved(margins);
    const Eigen::Vector3d middle = (inspection.lowest + inspection.highest) / 2.0;
    const Eigen::Vector3d extent = inspection.highest - inspection.lowest;
    const double pixelsPerMillimetre = std::min(plot.width() / extent.x(), plot.height() / extent.y());
    const double spacing = pixelsPerMillimetre *
                           std::sqrt(extent.x() * extent.y() / static_cast<double>(inspection.flat.cols()));
    const int side = static_cast<int>(std::clamp(std::ceil(spacing * overlap), 1.0, largestSquare));
    const QImage palette = MakePalette(m_result->report);
    const double limit = _GetLimit();
    m_image = QImage(size(), QImage::Format_ARGB32_Premultiplied);
    m_image.fill(Qt::transparent);
    QPainter painter(&m_image);
    for (const auto& point : inspection.flat.colwise())
    {
        const Eigen::Vector3d offset = (point - middle) * pixelsPerMillimetre;
        QRect square(0, 0, side, side);
        square.moveCenter((plot.center() + QPointF(offset.x(), -offset.y())).toPoint());
        const long row =
            std::lround((1.0 - std::clamp(point.z() / limit, -1.0, 1.0)) / 2.0 * (paletteSize - 1));
        painter.fillRect(square, QColor(palette.pixel(0, static_cast<int>(row))));
    }
}

void DeviationView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0x1d, 0x23, 0x2b));
    painter.setPen(QColor(0xc3, 0xcc, 0xd6));
    if (!m_result)
    {
        painter.drawText(
            rect(), Qt::AlignCenter,
            TrString::translate("InspectionDesk", "Drop a point cloud here, or choose File > Open")
                .ToString());
        return;
    }
    if (!m_result->inspection)
        painter.drawText(
            rect(), Qt::AlignCenter,
            TrString::translate("InspectionDesk", "A report: figures without points").ToString());
    else if (m_image.size() != size())
        _DrawPoints();
    painter.drawImage(0, 0, m_image);

    constexpr int steps = 8;
    const QRectF bar(width() - 100.0, margins.top(), 20.0, height() - margins.top() - margins.bottom());
    const Unit::LengthUnit unit = ChooseUnit(_GetLimit(), m_settings.unit);
    painter.drawText(
        QPointF(bar.left(), bar.top() - 20.0),
        TrString::translate("InspectionDesk", "Deviation [%1]").Arg(Convert::ToString(unit)).ToString());
    painter.drawImage(bar, MakePalette(m_result->report));
    const double limit = Unit::GetValueIn(_GetLimit(), Unit::LengthUnit::Millimeter, unit);
    Convert::NumberOptions options = GetLengthOptions(unit);
    options.decimals = std::max(0, options.decimals - 1);
    for (int i = 0; i <= steps; ++i)
    {
        const double y = bar.bottom() - bar.height() * i / steps;
        painter.drawLine(QLineF(bar.right(), y, bar.right() + 5.0, y));
        const double value = limit * (2.0 * i / steps - 1.0);
        painter.drawText(QRectF(bar.right() + 9.0, y - 9.0, 70.0, 18.0), Qt::AlignVCenter,
                         (value < 0 ? QString() : u"+"_s) + Convert::ToString(value, options));
    }
}
} // namespace vek::Desk
