#include "VekBase/RawPtr.h"

namespace vek::Details
{
void ThrowNullptrException() { throw Exception::NullptrException(); }
} // namespace vek::Details
