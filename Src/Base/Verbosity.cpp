#include "VekBase/Verbosity.h"
#include "Base/EnumText.h"

namespace vek::Log
{
std::string ToLogText(Verbosity verbosity)
{
    return Details::ToEnumText(verbosity, Verbosity::Error, {"Error", "Warning", "Info", "Debug", "Trace"});
}
} // namespace vek::Log
