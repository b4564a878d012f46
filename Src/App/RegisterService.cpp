#include "VekAppCore/App/RegisterService.h"
#include "Base/CurrentException.h"
#include "VekAppCore/App/Log.h"

namespace vek::Declaration::Details
{
void LogCreationFailure(const std::string& service, const std::source_location& by) noexcept
{
    try
    {
        App::Log(Log::Verbosity::Error,
                 QStringLiteral("Impossible to create the service %1, declared in %2:%3: %4")
                     .arg(QString::fromStdString(service), QString::fromUtf8(by.file_name()),
                          QString::number(by.line()),
                          vek::Details::DescribeCurrentException("A general exception has been caught.")));
    }
    catch (...)
    {
        // The exception that the line is about matters more than the line.
    }
}
} // namespace vek::Declaration::Details
