#pragma once
#include "VekAppCore/App/ServiceBase.h"
#include "VekAppCore/Threading/IProgression.h"
#include <Eigen/Core>
#include <QStringList>
#include <functional>
#include <string_view>
#include <vector>

/// What a plug-in needs to add a file format to the desk.
namespace vek::Desk
{
/// Points in millimetres, all finite.
using PointCloud = std::vector<Eigen::Vector3d>;

/// Reading is this part of an inspection.
constexpr int percentOfReading = 80;

/// Reads the whole content of a file. Any thread. It throws Exception::AppException where the content is not
/// of the format; the name of the file is added to the message.
using ReadFormat = std::function<PointCloud(std::string_view content, Threading::IProgression& progression)>;

/// Reads point clouds. A module adds a format by appending a callback to this interface's extension point:
/// App::DeclarationSystem::GetInstance().Append<IPointCloudReader>([](IPointCloudReader& reader) {...});
class IPointCloudReader : public App::IServiceExtensible<IPointCloudReader, ReadFormat>
{
public:
    /// Main thread only, at start-up.
    /// @param extension  lower case, without dot.
    virtual void AddFormat(const QString& extension, ReadFormat read) = 0;

    [[nodiscard]] virtual QStringList GetExtensions() const = 0;

    /// Reads a file in the format that its extension tells. Any thread, once the application has started.
    /// @throws Exception::AppException  it cannot be read; the message names the file.
    [[nodiscard]] virtual PointCloud Read(const QString& path,
                                          Threading::IProgression& progression) const = 0;
};
} // namespace vek::Desk
