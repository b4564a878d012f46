#include "VekAppCore/App/RegisterService.h"
#include "VekAppCore/App/Log.h"

namespace vek::Declaration::Details
{
namespace
{
QString DescribeCurrentException()
{
    try
    {
        throw;
    }
    catch (const std::exception& exception)
    {
        return QString::fromUtf8(exception.what());
    }
    catch (...)
    {
        return QStringLiteral("A general exception has been caught.");
    }
}
} // namespace

void LogCreationFailure(const std::string& service, const std::source_location& by) noexcept
{
    try
    {
        App::Log(Log::Verbosity::Error,
                 QStringLiteral("Impossible to create the service %1, declared in %2:%3: %4")
                     .arg(QString::fromStdString(service), QString::fromUtf8(by.file_name()),
                          QString::number(by.line()), DescribeCurrentException()));
    }
    catch (...)
    {
        // The exception that the line is about matters more than the line.
    }
}
} // namespace vek::Declaration::Details
