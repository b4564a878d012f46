#include "Platform/Platform.h"
#include <QDir>
#include <QRegularExpression>
#include <QSettings>
#include <array>
#include <cfloat>
#include <memory>
#include <windows.h>
// windows.h comes first
#include <knownfolders.h>
#include <shellapi.h>
#include <shlobj.h>

namespace vek::Platform
{
std::vector<std::string> GetArguments()
{
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> arguments(
        CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
    std::vector<std::string> result;
    for (int i = 0; arguments && i < count; ++i)
        result.push_back(QString::fromWCharArray(arguments.get()[i]).toStdString());
    return result;
}

std::filesystem::path GetExecutableFile()
{
    std::wstring file(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length = GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size()));
        if (length < file.size()) // equal means that the name was cut off
        {
            file.resize(length);
            return file;
        }
        file.resize(2 * file.size());
    }
}

std::uint32_t GetThreadId() { return GetCurrentThreadId(); }

void SetThreadName(const std::string& name)
{
    SetThreadDescription(GetCurrentThread(), QString::fromStdString(name).toStdWString().c_str());
}

std::string GetReadableTypeName(const char* name)
{
    // Also inside: "class A<struct B>".
    static const QRegularExpression kind(QStringLiteral("\\b(?:class|struct|union|enum) "));
    return QString::fromUtf8(name).remove(kind).toStdString();
}

unsigned DisableFloatingPointTraps()
{
    unsigned before = 0;
    unsigned now = 0;
    _controlfp_s(&before, 0, 0);
    _controlfp_s(&now, _MCW_EM, _MCW_EM);
    return before & _MCW_EM;
}

void RestoreFloatingPointTraps(unsigned traps)
{
    _clearfp(); // a flag raised meanwhile would trap at once
    unsigned now = 0;
    _controlfp_s(&now, traps, _MCW_EM);
}

QString GetPublicFolder()
{
    PWSTR folder = nullptr;
    const HRESULT result = SHGetKnownFolderPath(FOLDERID_Public, 0, nullptr, &folder);
    const std::unique_ptr<wchar_t, decltype(&CoTaskMemFree)> owner(folder, &CoTaskMemFree);
    return SUCCEEDED(result) ? QDir::fromNativeSeparators(QString::fromWCharArray(folder)) : QString();
}

QString GetListSeparator()
{
    std::array<wchar_t, 4> separator{}; // the longest there is
    GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SLIST, separator.data(),
                    static_cast<int>(separator.size()));
    return QString::fromWCharArray(separator.data());
}

QString GetProcessorName()
{
    const QSettings key(
        QStringLiteral(R"(HKEY_LOCAL_MACHINE\HARDWARE\DESCRIPTION\System\CentralProcessor\0)"),
        QSettings::NativeFormat);
    return key.value(QStringLiteral("ProcessorNameString")).toString().simplified();
}

std::uint64_t GetMemorySize()
{
    ULONGLONG kibibytes = 0;
    return GetPhysicallyInstalledSystemMemory(&kibibytes) ? kibibytes * 1024 : 0;
}

std::FILE* OpenForWriting(const QString& path) { return _wfopen(path.toStdWString().c_str(), L"w"); }
} // namespace vek::Platform
