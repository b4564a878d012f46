#include "VekBase/ScopeFPEDisabler.h"
#include "Platform/Platform.h"

namespace vek
{
ScopeFPEDisabler::ScopeFPEDisabler() : m_traps(Platform::DisableFloatingPointTraps()) {}

ScopeFPEDisabler::~ScopeFPEDisabler() { Platform::RestoreFloatingPointTraps(m_traps); }
} // namespace vek
