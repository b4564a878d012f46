#include "VekAppCore/App/IApp.h"
#include "Base/EnumText.h"

namespace vek::App
{
IApp::~IApp() = default;

std::string ToLogText(EAppType type)
{
    return Details::ToEnumText(type, EAppType::Development, {"Development", "Nightly", "Beta"});
}
} // namespace vek::App
