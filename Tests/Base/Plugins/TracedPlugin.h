#pragma once
#include "VekBase/PluginMgr.h"
#include <string>
#include <vector>

namespace vek::TestSupport
{
/// A plug-in that tells when it dies and when its module is unloaded.
class Q_DECL_EXPORT TracedPlugin : public IO::IPlugin
{
public:
    virtual void SetTrace(std::vector<std::string>* trace) = 0;
};

/// Of one module: its plug-in is given the name of the module.
template <const char* name>
class TracedPluginOf final : public TracedPlugin
{
public:
    ~TracedPluginOf() override { s_module.Tell("deleted"); }
    void SetTrace(std::vector<std::string>* trace) override { s_module.trace = trace; }

private:
    struct Module
    {
        ~Module() { Tell("unloaded"); }
        void Tell(const char* event) const
        {
            if (trace)
                trace->push_back(std::string(name) + ' ' + event);
        }
        std::vector<std::string>* trace = nullptr;
    };
    static inline Module s_module;
};
} // namespace vek::TestSupport
