#include "InspectionDesk/IPointCloudReader.h"
#include "InspectionDesk/NumberText.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/RegisterService.h"
#include <QFile>
#include <QFileInfo>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view shortestLine = "1 2 3\n";
constexpr std::size_t pointsPerStep = 8192;

PointCloud ReadText(std::string_view content, const QString& name, const Progress& progress)
{
    std::string_view rest = content;
    if (rest.starts_with(byteOrderMark))
        rest.remove_prefix(byteOrderMark.size());
    const auto mostLines = static_cast<std::size_t>(std::ranges::count(rest, '\n')) + 1;
    PointCloud points;
    points.reserve(std::min(mostLines, rest.size() / shortestLine.size() + 1));
    for (int line = 1; !rest.empty(); ++line)
    {
        std::string_view text = TakeLine(rest);
        text = text.substr(0, text.find('#'));
        SkipBlanks(text);
        if (text.empty())
            continue;
        Eigen::Vector3d& point = points.emplace_back();
        if (!TakeNumber(text, point.x()) || !TakeNumber(text, point.y()) || !TakeNumber(text, point.z()) ||
            !text.empty())
            // The name goes in last, since a "%2" in it would be filled as well.
            throw Exception::AppException(
                TrString::translate("InspectionDesk", "%2, line %1: expected three numbers")
                    .Arg(line)
                    .Arg(name));
        if (points.size() % pointsPerStep == 0)
            progress(1.0 - static_cast<double>(rest.size()) / static_cast<double>(content.size()));
    }
    return points;
}

class PointCloudReader final : public IPointCloudReader
{
public:
    PointCloudReader() { AddFormat({{u"xyz"_s, u"txt"_s, u"csv"_s}, ReadText}); }

    /// Takes the formats of the plug-ins loaded before.
    void PostRegistration() { App::DeclarationSystem::GetInstance().RunAll<IPointCloudReader>(*this); }
    /// Takes those of a plug-in that was loaded later.
    void OnNotify() override { App::DeclarationSystem::GetInstance().RunNew<IPointCloudReader>(*this); }

    void AddFormat(PointCloudFormat format) override { m_formats.push_back(std::move(format)); }

    QStringList GetExtensions() const override
    {
        QStringList extensions;
        for (const PointCloudFormat& format : m_formats)
            extensions += format.extensions;
        return extensions;
    }

    PointCloud Read(const QString& path, const Progress& progress) const override
    {
        const QFileInfo info(path);
        const auto fail = [&info](const QString& reason) {
            throw Exception::AppException(TrString::NoTranslate(u"%1: %2"_s.arg(info.fileName(), reason)));
        };
        if (!info.exists())
            fail(u"there is no such file"_s);
        if (!info.isFile()) // a folder, or a device that never ends
            fail(u"this is not a file"_s);
        const auto format = std::ranges::find_if(
            m_formats, [extension = info.suffix().toLower()](const PointCloudFormat& candidate) {
                return candidate.extensions.contains(extension);
            });
        if (format == m_formats.end())
            fail(u"files of this kind cannot be read"_s);

        QFile file(path);
        QByteArray content;
        if (file.open(QIODevice::ReadOnly))
            content = file.readAll();
        if (file.error() != QFile::NoError)
            fail(file.errorString());
        PointCloud points = format->read({content.constData(), static_cast<std::size_t>(content.size())},
                                         info.fileName(), progress);
        if (points.empty())
            fail(u"there are no points in it"_s);
        return points;
    }

private:
    std::vector<PointCloudFormat> m_formats;
};

VEK_DECLARE_SERVICE(IPointCloudReader, PointCloudReader);
} // namespace
} // namespace vek::Desk
