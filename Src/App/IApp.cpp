#include "VekAppCore/App/IApp.h"

namespace vek::App
{
IApp::~IApp() = default;
} // namespace vek::App
