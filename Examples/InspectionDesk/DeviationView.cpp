#include "DeviationView.h"
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <span>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

constexpr QMarginsF margins(34, 40, 140, 60); // for the legend on the right, the scale below
constexpr QColor background(0x1d, 0x23, 0x2b);
constexpr QColor textColour(0xc3, 0xcc, 0xd6);
constexpr QRgb colours[] = {0x2166ac, 0x4393c3, 0x92c5de, 0xf7f7f7, 0xf4a582, 0xd6604d, 0xb2182b};
constexpr int paletteSize = 511;      // odd: the middle one is the colour of 0
constexpr double overlap = 1.6;       // of squares on an even grid; less would leave gaps in an uneven one
constexpr double largestSquare = 9.0; // in pixels

/// Blue below the plane, near white on it, red above.
QLinearGradient MakeGradient(QPointF from, QPointF to)
{
    QLinearGradient gradient(from, to);
    for (double place = 0.0; const QRgb colour : colours)
        gradient.setColorAt(std::exchange(place, place + 1.0) / (std::size(colours) - 1), QColor(colour));
    return gradient;
}

/// Draws each point as a square that just covers the space a point has on average. A pixel that several
/// points share shows their mean; one without points is transparent.
/// @param origin  where the centre of the plane lies, in pixels.
QImage DrawPoints(const Inspection& inspection, QSize size, QPointF origin, double pixelsPerMillimetre)
{
    struct Pixel
    {
        float sum = 0.0F;
        float count = 0.0F;
    };
    const QSizeF extent = inspection.bounds.size() * pixelsPerMillimetre;
    const double spacing =
        std::sqrt(extent.width() * extent.height() / static_cast<double>(inspection.points.size()));
    const int side = static_cast<int>(std::clamp(std::ceil(spacing * overlap), 1.0, largestSquare));
    const QPointF corner = origin - QPointF(side - 1, side - 1) / 2.0;
    std::vector<Pixel> pixels(static_cast<std::size_t>(size.width()) *
                              static_cast<std::size_t>(size.height()));
    for (const FlatPoint& point : inspection.points)
    {
        const int left = static_cast<int>(corner.x() + point.x * pixelsPerMillimetre);
        const int top = static_cast<int>(corner.y() - point.y * pixelsPerMillimetre);
        for (int y = std::max(top, 0); y < std::min(top + side, size.height()); ++y)
            for (int x = std::max(left, 0); x < std::min(left + side, size.width()); ++x)
            {
                Pixel& pixel = pixels[static_cast<std::size_t>(y * size.width() + x)];
                pixel.sum += static_cast<float>(point.deviation);
                pixel.count += 1.0F;
            }
    }

    QImage palette(paletteSize, 1, QImage::Format_RGB32);
    QPainter(&palette).fillRect(palette.rect(), MakeGradient({0.0, 0.0}, {paletteSize, 0.0}));
    const auto* const paletteLine = reinterpret_cast<const QRgb*>(palette.constScanLine(0));
    const float limit =
        std::max(static_cast<float>(inspection.GetLimit()), std::numeric_limits<float>::min());
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    const Pixel* pixel = pixels.data();
    for (int y = 0; y < size.height(); ++y)
        for (QRgb& colour :
             std::span(reinterpret_cast<QRgb*>(image.scanLine(y)), static_cast<std::size_t>(size.width())))
        {
            const float ratio = std::clamp(pixel->sum / std::max(pixel->count, 1.0F) / limit, -1.0F, 1.0F);
            colour =
                pixel->count > 0.0F ? paletteLine[std::lround((ratio + 1.0F) / 2.0F * (paletteSize - 1))] : 0;
            ++pixel;
        }
    return image;
}
} // namespace

void DeviationView::Show(std::shared_ptr<const Inspection> inspection)
{
    m_inspection = std::move(inspection);
    m_image = QImage();
    repaint();
}

QPointF DeviationView::_ToWidget(double x, double y) const
{
    const QPointF offset = QPointF(x, y) - m_inspection->bounds.center();
    return m_plot.center() + QPointF(offset.x(), -offset.y()) * m_pixelsPerMillimetre;
}

void DeviationView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), background);
    painter.setPen(textColour);
    if (!m_inspection)
    {
        painter.setFont(QFont(font().family(), 14));
        painter.drawText(rect(), Qt::AlignCenter, u"Drop a point cloud here, or choose File > Open"_s);
        return;
    }
    m_plot = QRectF(rect()).marginsRemoved(margins);
    const QSizeF extent = m_inspection->bounds.size();
    m_pixelsPerMillimetre = std::min(m_plot.width() / extent.width(), m_plot.height() / extent.height());
    const double ratio = devicePixelRatioF();
    if (m_image.size() != size() * ratio)
        m_image = DrawPoints(*m_inspection, size() * ratio, _ToWidget(0.0, 0.0) * ratio,
                             m_pixelsPerMillimetre * ratio);
    painter.drawImage(rect(), m_image);
    _DrawScale(painter);
    _DrawLegend(painter);
    _DrawExtreme(painter, m_inspection->lowest);
    _DrawExtreme(painter, m_inspection->highest);
}

void DeviationView::_DrawScale(QPainter& painter) const
{
    // 1, 2 or 5 times a power of ten: the longest that fits a quarter of the width.
    const double most = m_plot.width() / 4.0 / m_pixelsPerMillimetre;
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    const double length = power * (most >= 5.0 * power ? 5.0 : most >= 2.0 * power ? 2.0 : 1.0);
    const QRectF bar(m_plot.left(), height() - 26.0, length * m_pixelsPerMillimetre, 8.0);
    painter.drawPolyline(QPolygonF({bar.topLeft(), bar.bottomLeft(), bar.bottomRight(), bar.topRight()}));
    painter.drawText(bar.adjusted(-40.0, -18.0, 40.0, -10.0), Qt::AlignCenter, u"%1 mm"_s.arg(length));
}

void DeviationView::_DrawLegend(QPainter& painter) const
{
    constexpr int steps = 8;
    const QRectF bar(width() - 100.0, m_plot.top() + 10.0, 20.0, m_plot.height() - 10.0);
    painter.drawText(QPointF(bar.left(), bar.top() - 20.0), u"Deviation [mm]"_s);
    painter.fillRect(bar, MakeGradient(bar.bottomLeft(), bar.topLeft()));
    for (int i = 0; i <= steps; ++i)
    {
        const double y = bar.bottom() - bar.height() * i / steps;
        const double deviation = m_inspection->GetLimit() * (2.0 * i / steps - 1.0);
        painter.drawLine(QLineF(bar.right(), y, bar.right() + 5.0, y));
        painter.drawText(QRectF(bar.right() + 9.0, y - 9.0, 70.0, 18.0), Qt::AlignVCenter,
                         QString::asprintf("%+.3f", deviation));
    }
}

void DeviationView::_DrawExtreme(QPainter& painter, const FlatPoint& point) const
{
    const double down = point.deviation < 0.0 ? 1.0 : -1.0;
    const QPointF tip = _ToWidget(point.x, point.y);
    QRectF label(0.0, 0.0, 64.0, 18.0);
    label.moveCenter(tip + QPointF(0.0, down * 20.0));
    painter.setPen(Qt::white);
    painter.setBrush(background);
    painter.drawPolygon(QPolygonF({tip, tip + QPointF(-6.0, down * 11.0), tip + QPointF(6.0, down * 11.0)}));
    painter.drawRoundedRect(label, 3.0, 3.0);
    painter.drawText(label, Qt::AlignCenter, QString::asprintf("%+.4f", point.deviation));
}
} // namespace vek::Desk
