#include "TracedPlugin.h"

struct Module
{
    ~Module() { Tell(" unloaded"); }
    void Tell(const char* event) const { trace->push_back(std::string(VEK_NAME) + event); }
    std::vector<std::string>* trace = nullptr;
};
static Module g_module;

// Must not be asked for any more once the module has been unloaded.
[[maybe_unused]] static const int g_extensionCount =
    vek::IO::PluginMgr::GetInstance().AddInitExtension([] { return nullptr; });

struct Plugin final : TracedPlugin
{
    ~Plugin() override { g_module.Tell(" deleted"); }
    void SetTrace(std::vector<std::string>* trace) override { g_module.trace = trace; }
};
VEK_PLUGIN(Plugin)
