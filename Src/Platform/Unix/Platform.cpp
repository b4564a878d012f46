#include "Platform/Platform.h"
#include <QFile>
#include <QStandardPaths>
#include <algorithm>
#include <cfenv>
#include <cstdlib>
#include <cxxabi.h>
#include <fstream>
#include <memory>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace vek::Platform
{
std::vector<std::string> GetArguments()
{
    std::vector<std::string> arguments;
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    for (std::string argument; std::getline(file, argument, '\0');)
        arguments.push_back(std::move(argument));
    return arguments;
}

std::filesystem::path GetExecutableFile()
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error);
}

std::uint32_t GetThreadId()
{
    thread_local const auto id = static_cast<std::uint32_t>(::syscall(SYS_gettid));
    return id;
}

void SetThreadName(const std::string& name)
{
    constexpr std::size_t mostBytes = 15; // the kernel keeps 16 with the terminating zero
    std::size_t length = std::min(name.size(), mostBytes);
    while (length < name.size() && length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0U) == 0x80U)
        --length; // would cut into a UTF-8 sequence
    pthread_setname_np(pthread_self(), name.substr(0, length).c_str());
}

std::string GetReadableTypeName(const char* name)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(name, nullptr, nullptr, &status), &std::free);
    return readable ? readable.get() : name;
}

unsigned DisableFloatingPointTraps() { return static_cast<unsigned>(fedisableexcept(FE_ALL_EXCEPT)); }

void RestoreFloatingPointTraps(unsigned traps)
{
    std::feclearexcept(static_cast<int>(traps)); // a flag raised meanwhile would trap at once
    fedisableexcept(FE_ALL_EXCEPT);              // what was enabled meanwhile goes as well
    feenableexcept(static_cast<int>(traps));
}

QString GetPublicFolder() { return QStandardPaths::writableLocation(QStandardPaths::PublicShareLocation); }

QString GetListSeparator() { return {}; }

QString GetProcessorName()
{
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("model name"))
            return QString::fromStdString(line.substr(line.find(':') + 1)).simplified();
    return {};
}

std::uint64_t GetMemorySize()
{
    const long pages = ::sysconf(_SC_PHYS_PAGES);
    const long pageSize = ::sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0
               ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize)
               : 0;
}

std::FILE* OpenForWriting(const QString& path)
{
    return std::fopen(QFile::encodeName(path).constData(), "w");
}
} // namespace vek::Platform
