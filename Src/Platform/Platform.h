#pragma once
#include <QString>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

/// The one interface to what differs by platform. Stateless; every function is thread-safe.
namespace vek::Platform
{
/// The arguments the process was started with, UTF-8, the program's own name first.
std::vector<std::string> GetArguments();

/// The running program's file, absolute; empty where the system does not tell. Unix resolves links.
std::filesystem::path GetExecutableFile();

/// The system's id of the calling thread, never 0.
std::uint32_t GetThreadId();

/// @param name  UTF-8; what the system has no room for is cut off between characters.
void SetThreadName(const std::string& name);

/// The name of a type as a programmer writes it, from std::type_info::name().
std::string GetReadableTypeName(const char* name);

/// Stops floating-point exceptions of the calling thread from trapping; returns what
/// RestoreFloatingPointTraps takes.
unsigned DisableFloatingPointTraps();
void RestoreFloatingPointTraps(unsigned traps);

/// The folder that all users of this computer share, with slashes; empty where there is none.
QString GetPublicFolder();

/// What separates the items of a list in the user's regional settings; empty where the system does not tell.
QString GetListSeparator();

/// As its maker calls it; empty where the system does not tell.
QString GetProcessorName();

/// That is installed, in bytes; 0 where the system does not tell.
std::uint64_t GetMemorySize();

/// Opens a file to be written anew, with the line ends of the platform; null where that fails. The caller
/// closes it.
std::FILE* OpenForWriting(const QString& path);
} // namespace vek::Platform
