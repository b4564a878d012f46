#include "VekAppCore/Settings/VekQSettings.h"

namespace vek::App
{
// A key that is not here must not be found in the files of all users or of the organisation.

VekQSettings::VekQSettings() { m_settings.setFallbacksEnabled(false); }

VekQSettings::VekQSettings(const QString& organisation, const QString& application)
    : m_settings(organisation, application)
{
    m_settings.setFallbacksEnabled(false);
}

VekQSettings::VekQSettings(QSettings::Format format, QSettings::Scope scope, const QString& organisation,
                           const QString& application)
    : m_settings(format, scope, organisation, application)
{
    m_settings.setFallbacksEnabled(false);
}

VekQSettings::~VekQSettings() = default;

bool VekQSettings::Contains(const QString& key) const { return m_settings.contains(key); }

QList<QString> VekQSettings::AllKeys(const QString& prefix) const
{
    QList<QString> keys = m_settings.allKeys();
    if (!prefix.isEmpty())
        keys.removeIf([&prefix](const QString& key) { return !key.startsWith(prefix); });
    return keys;
}

bool VekQSettings::RemoveValue(const QString& key)
{
    if (!Contains(key))
        return false;
    m_settings.remove(key);
    return true;
}

void VekQSettings::ClearValues() { m_settings.clear(); }
void VekQSettings::BeginGroup(const QString& name) { m_settings.beginGroup(name); }
void VekQSettings::EndGroup() { m_settings.endGroup(); }
EVariantStoreFormat VekQSettings::PreferedStoreFormat() const { return EVariantStoreFormat::Readable; }

VekQVariant VekQSettings::GetValueAsVariant(const QString& key) const
{
    return FromQVariant(m_settings.value(key));
}

void VekQSettings::SetValueAsVariant(const QString& key, VekQVariant value)
{
    m_settings.setValue(key, value.ToQVariant());
}

QString VekQSettings::ApplicationName() const { return m_settings.applicationName(); }
QString VekQSettings::CompanyName() const { return m_settings.organizationName(); }
QSettings::Format VekQSettings::Format() const { return m_settings.format(); }
QSettings::Scope VekQSettings::Scope() const { return m_settings.scope(); }
QString VekQSettings::GetFileName() const { return m_settings.fileName(); }
QList<QString> VekQSettings::ChildGroups() const { return m_settings.childGroups(); }
QList<QString> VekQSettings::ChildKeys() const { return m_settings.childKeys(); }

QSettings::Status VekQSettings::Status() const { return m_settings.status(); }
bool VekQSettings::IsWritable() const { return m_settings.isWritable(); }
void VekQSettings::Sync() { m_settings.sync(); }

int VekQSettings::BeginReadArray(const QString& name) { return m_settings.beginReadArray(name); }
void VekQSettings::BeginWriteArray(const QString& name, int size) { m_settings.beginWriteArray(name, size); }
void VekQSettings::SetArrayIndex(int index) { m_settings.setArrayIndex(index); }
void VekQSettings::EndArray() { m_settings.endArray(); }

std::pair<int, ScopeBase> VekQSettings::ScopeReadArray(const QString& name)
{
    const int size = BeginReadArray(name);
    return {size, ScopeBase([this] { EndArray(); })};
}

ScopeBase VekQSettings::ScopeWriteArray(const QString& name, int size)
{
    BeginWriteArray(name, size);
    return ScopeBase([this] { EndArray(); });
}

VekQSettingsScopped::~VekQSettingsScopped() { m_settings.clear(); }
} // namespace vek::App
