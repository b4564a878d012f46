#include "VekBase/ScopedTempFolder.h"
#include "VekBase/Exception.h"
#include <QDir>
#include <QTemporaryDir>
#include <algorithm>
#include <mutex>
#include <vector>

namespace vek
{
namespace
{
std::mutex g_mutex;            // guards g_living
std::vector<QString> g_living; // in order of making
} // namespace

ScopedTempFolder::ScopedTempFolder()
{
    QTemporaryDir folder;
    if (!folder.isValid())
        throw Exception::CriticalException("Impossible to create the temporary folder " +
                                           folder.path().toStdString() + ": " +
                                           folder.errorString().toStdString());
    m_path = folder.path();
    const std::lock_guard lock(g_mutex);
    g_living.push_back(m_path);
    folder.setAutoRemove(false); // from here on removed by the destructor below
}

ScopedTempFolder::~ScopedTempFolder()
{
    {
        const std::lock_guard lock(g_mutex);
        std::erase(g_living, m_path);
    }
    QDir(m_path).removeRecursively();
}

QString ScopedTempFolder::GetActivePath()
{
    const std::lock_guard lock(g_mutex);
    return g_living.empty() ? QString() : g_living.back();
}
} // namespace vek
