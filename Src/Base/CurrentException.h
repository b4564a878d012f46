#pragma once
#include <QString>
#include <exception>

namespace vek::Details
{
/// What the exception in flight says; to be called in its handler.
/// @param unknown  the text for one that is no std::exception.
inline QString DescribeCurrentException(const char* unknown)
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
        return QString::fromUtf8(unknown);
    }
}
} // namespace vek::Details
