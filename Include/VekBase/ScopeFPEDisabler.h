#pragma once
#include "VekBase/Export.h"

namespace vek
{
/// While it lives, floating-point exceptions do not trap on the thread that made it.
class VEKBASE_EXPORT ScopeFPEDisabler
{
public:
    ScopeFPEDisabler();
    ScopeFPEDisabler(const ScopeFPEDisabler&) = delete;
    ScopeFPEDisabler& operator=(const ScopeFPEDisabler&) = delete;
    ~ScopeFPEDisabler();

private:
    const unsigned m_traps; ///< To be brought back.
};
} // namespace vek
