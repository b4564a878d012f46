#include "VekAppCore/App/ServiceBase.h"

namespace vek::App
{
IServiceBase::~IServiceBase() = default;

void IServiceBase::OnNotify() {}
} // namespace vek::App
