#include "VekAppCore/Data/HPath.h"
#include <algorithm>

namespace vek::App
{
namespace
{
constexpr QChar separator = u'/';

QList<QString> Split(QStringView path)
{
    QList<QString> segments;
    segments.reserve(std::ranges::count(path, separator) + 1);
    while (!path.isEmpty())
    {
        const qsizetype end = path.indexOf(separator);
        if (end != 0)
            segments.push_back(path.first(end < 0 ? path.size() : end).toString());
        path = end < 0 ? QStringView() : path.sliced(end + 1);
    }
    return segments;
}
} // namespace

HPath::HPath(const QString& path) : m_segments(Split(path)) {}
HPath::HPath(const char* path) : HPath(QString::fromUtf8(path)) {}

HPath HPath::operator/(const QString& segment) const
{
    HPath path = *this;
    path.m_segments.push_back(segment);
    return path;
}

QString HPath::ToString() const { return m_segments.join(separator); }

std::string ToLogText(const HPath& path) { return path.ToString().toStdString(); }
} // namespace vek::App
