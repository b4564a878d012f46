#include "InspectionDesk/IPointCloudReader.h"
#include "InspectionDesk/NumberText.h"
#include "VekAppCore/App/RegisterService.h"
#include "VekAppCore/Threading/StepProgression.h"
#include <QFile>
#include <QFileInfo>
#include <QMap>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t pointsPerStep = 8192;

PointCloud ReadText(std::string_view content, Threading::IProgression& progression)
{
    Threading::StepProgression bytes(progression, content.size(), 0, percentOfReading);
    std::size_t told = 0;
    std::string_view rest = content;
    if (rest.starts_with(byteOrderMark))
        rest.remove_prefix(byteOrderMark.size());
    PointCloud points;
    for (qsizetype line = 1; !rest.empty(); ++line)
    {
        std::string_view text = TakeLine(rest);
        text = text.substr(0, text.find('#'));
        SkipBlanks(text);
        if (text.empty())
            continue;
        Eigen::Vector3d& point = points.emplace_back();
        if (!TakeNumber(text, point.x()) || !TakeNumber(text, point.y()) || !TakeNumber(text, point.z()) ||
            !text.empty() || !point.allFinite())
            FailReading(TrString::translate("InspectionDesk", "line %1: expected three numbers").Arg(line));
        if (points.size() % pointsPerStep == 0)
            bytes.Advance(content.size() - rest.size() - std::exchange(told, content.size() - rest.size()));
    }
    return points;
}

class PointCloudReader final : public IPointCloudReader
{
public:
    PointCloudReader() : m_formats{{u"xyz"_s, ReadText}, {u"txt"_s, ReadText}, {u"csv"_s, ReadText}} {}

    /// Takes the formats of the plug-ins, which were loaded before.
    void PostRegistration() { App::DeclarationSystem::GetInstance().RunAll<IPointCloudReader>(*this); }

    void AddFormat(const QString& extension, ReadFormat read) override { m_formats[extension] = read; }

    QStringList GetExtensions() const override { return m_formats.keys(); }

    PointCloud Read(const QString& path, Threading::IProgression& progression) const override
    {
        return NameInFailures(path, [&] {
            const QFileInfo info(path);
            if (!info.isFile()) // a folder, or a device that never ends, is none
                FailReading(TrString::translate("InspectionDesk", "there is no such file"));
            const ReadFormat read = m_formats.value(info.suffix().toLower());
            if (!read)
                FailReading(TrString::translate("InspectionDesk", "files of this kind cannot be read"));
            QFile file(path);
            const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            if (file.error() != QFile::NoError)
                FailReading(
                    TrString::translate("InspectionDesk", "it cannot be read (%1)").Arg(file.errorString()));
            PointCloud points = read({content.cbegin(), content.cend()}, progression);
            if (points.empty())
                FailReading(TrString::translate("InspectionDesk", "there are no points in it"));
            return points;
        });
    }

private:
    QMap<QString, ReadFormat> m_formats; ///< By extension.
};

VEK_DECLARE_SERVICE(IPointCloudReader, PointCloudReader);
} // namespace
} // namespace vek::Desk
