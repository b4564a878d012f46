#include "VekBase/CommandLine.h"
#include "Platform/Platform.h"
#include <QString>
#include <mutex>

namespace vek
{
namespace
{
std::mutex g_mutex; // guards g_replacement
std::optional<std::vector<std::string>> g_replacement;

const std::vector<std::string>& GetOwnArguments()
{
    static const std::vector<std::string> arguments = [] {
        std::vector<std::string> all = Platform::GetArguments();
        if (!all.empty())
            all.erase(all.begin()); // the program's name
        return all;
    }();
    return arguments;
}

/// Calls visit(argument, the one behind it or null) until it returns true.
template <typename Visit>
bool VisitArguments(Visit visit)
{
    const std::lock_guard lock(g_mutex);
    const std::vector<std::string>& arguments = g_replacement ? *g_replacement : GetOwnArguments();
    for (std::size_t i = 0; i < arguments.size(); ++i)
        if (visit(arguments[i], i + 1 < arguments.size() ? &arguments[i + 1] : nullptr))
            return true;
    return false;
}

bool HasValue(std::string_view argument, std::string_view name)
{
    return argument.size() > name.size() && argument.starts_with(name) && argument[name.size()] == '=';
}

std::string ToUtf8(std::wstring_view text)
{
    return QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size())).toStdString();
}
} // namespace

bool IsCmdLineArgPresent(std::string_view name)
{
    return VisitArguments([name](std::string_view argument, const std::string*) {
        return argument == name || HasValue(argument, name);
    });
}

bool IsCmdLineArgPresent(std::wstring_view name)
{
    return IsCmdLineArgPresent(std::string_view(ToUtf8(name)));
}

std::optional<std::string> GetCmdLineArgValue(std::string_view name)
{
    std::optional<std::string> value;
    VisitArguments([name, &value](std::string_view argument, const std::string* next) {
        if (HasValue(argument, name))
            value = argument.substr(name.size() + 1);
        else if (argument == name && next)
            value = *next;
        return value.has_value();
    });
    return value;
}

std::optional<std::wstring> GetCmdLineArgValue(std::wstring_view name)
{
    const std::optional<std::string> value = GetCmdLineArgValue(std::string_view(ToUtf8(name)));
    return value ? std::optional(QString::fromStdString(*value).toStdWString()) : std::nullopt;
}

void SetCmdLineArgs(std::optional<std::vector<std::string>> arguments)
{
    const std::lock_guard lock(g_mutex);
    g_replacement = std::move(arguments);
}
} // namespace vek
