#pragma once
#include "InspectionDesk/IPlaneFitter.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekBase/ScopedTempFolder.h"
#include <QFile>
#include <gmock/gmock.h>

namespace vek::Desk
{
/// The services of the desk, made as the program makes them, and a folder for files.
class DeskFixture
{
public:
    DeskFixture() { m_frame.Start(); }

    QString Write(const QString& name, const QByteArray& content) const
    {
        QFile file(m_folder.GetPath() + u'/' + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            throw std::runtime_error("Cannot write " + file.fileName().toStdString());
        return file.fileName();
    }

    /// The points as "x y z; " each, or the message of the exception.
    std::string ReadAsText(const QString& name, const QByteArray& content) const
    {
        try
        {
            std::ostringstream text;
            for (const Eigen::Vector3d& point : GetReader().Read(Write(name, content), [](double) {}))
                text << point.x() << ' ' << point.y() << ' ' << point.z() << "; ";
            return text.str();
        }
        catch (const Exception::AppException& exception)
        {
            return exception.what();
        }
    }

    static IPointCloudReader& GetReader() { return App::Services().Require<IPointCloudReader>(); }
    static IPlaneFitter& GetFitter() { return App::Services().Require<IPlaneFitter>(); }

private:
    ScopedTempFolder m_folder;
    App::ApplicationFrame m_frame{App::AppConfiguration()};
};
} // namespace vek::Desk
