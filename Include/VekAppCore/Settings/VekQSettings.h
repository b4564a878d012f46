#pragma once
#include "VekAppCore/Data/IVariantMap.h"
#include <QSettings>
#include <utility>

namespace vek::App
{
/// A persistent store of settings: a QSettings that never looks anywhere but in its own place. Several may be
/// open on the same place, also in several processes; each sees what the others have written. What is set is
/// written when the store dies, when the event loop gets to it, or by Sync. Errors of the storage are not
/// thrown: see Status. Reentrant.
class VEKAPPCORE_EXPORT VekQSettings : public IVariantMap
{
public:
    /// Where Qt keeps the settings of an application that has said nothing.
    VekQSettings();
    /// The user's, in the native format.
    VekQSettings(const QString& organisation, const QString& application);
    /// Elsewhere, as QSettings takes it.
    VekQSettings(QSettings::Format format, QSettings::Scope scope, const QString& organisation,
                 const QString& application);
    VekQSettings(const VekQSettings&) = delete;
    VekQSettings& operator=(const VekQSettings&) = delete;
    ~VekQSettings() override;

    [[nodiscard]] bool Contains(const QString& key) const override;
    using IVariantMap::Contains;
    /// Relative to the open group, also those below it.
    [[nodiscard]] QList<QString> AllKeys(const QString& prefix) const override;
    bool RemoveValue(const QString& key) override;
    void ClearValues() override;
    void BeginGroup(const QString& name) override;
    void EndGroup() override;
    /// Readable.
    [[nodiscard]] EVariantStoreFormat PreferedStoreFormat() const override;
    [[nodiscard]] VekQVariant GetValueAsVariant(const QString& key) const override;
    void SetValueAsVariant(const QString& key, VekQVariant value) override;

    /// The application.
    [[nodiscard]] QString ApplicationName() const;
    /// The organisation.
    [[nodiscard]] QString CompanyName() const;
    /// @{
    /// As given to the constructor.
    [[nodiscard]] QSettings::Format Format() const;
    [[nodiscard]] QSettings::Scope Scope() const;
    /// @}

    /// Of the file; in the Windows registry the path of the key.
    [[nodiscard]] QString GetFileName() const;
    /// @{
    /// Of the open group.
    [[nodiscard]] QList<QString> ChildGroups() const;
    [[nodiscard]] QList<QString> ChildKeys() const;
    /// @}

    /// The first problem of the storage since the store was opened: no access, or a file that is none of
    /// settings.
    [[nodiscard]] QSettings::Status Status() const;
    /// False where what is set cannot be written.
    [[nodiscard]] bool IsWritable() const;
    /// Writes what was set and reads what others have written.
    void Sync();

    /// @return the number of elements, whose keys are relative to SetArrayIndex.
    int BeginReadArray(const QString& name);
    /// @param size  -1 to take it from the greatest index that is set.
    void BeginWriteArray(const QString& name, int size);
    /// From 0.
    void SetArrayIndex(int index);
    /// Of the array begun last.
    void EndArray();

    /// @{
    /// BeginReadArray until the scope ends, which this store outlives.
    [[nodiscard]] std::pair<int, ScopeBase> ScopeReadArray(const QString& name);
    [[nodiscard]] ScopeBase ScopeWriteArray(const QString& name, int size);
    /// @}

protected:
    /// For derived stores; its groups are those of the store.
    QSettings m_settings;
};

/// A scratch store: what is written into it goes with it.
class VEKAPPCORE_EXPORT VekQSettingsScopped : public VekQSettings
{
public:
    using VekQSettings::VekQSettings;
    ~VekQSettingsScopped() override;
};
} // namespace vek::App
