#pragma once
#include "VekAppCore/Export.h"

namespace vek::App
{
/// Makes the next request for the settings the first one of the process again; for tests, as in a new
/// process.
VEKAPPCORE_EXPORT void ForgetFirstSettingsRequest();
} // namespace vek::App
