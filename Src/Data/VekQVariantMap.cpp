#include "VekAppCore/Data/VekQVariantMap.h"
#include "VekAppCore/App/Exception.h"
#include <utility>

namespace vek::App
{
namespace
{
const QString& TypeKey()
{
    static const QString key = QStringLiteral("{type}");
    return key;
}
} // namespace

IVariantMap::~IVariantMap() = default;

EVariantStoreFormat IVariantMap::PreferedStoreFormat() const { return EVariantStoreFormat::Typed; }

void IVariantMap::Append(const IVariantMap& other)
{
    for (const QString& key : other.AllKeys(QString()))
        SetValueAsVariant(key, other.GetValueAsVariant(key));
}

bool IVariantMap::Contains(const QString& group, const QString& key) const
{
    return Contains(QStringLiteral("%1/%2").arg(group, key));
}

void IVariantMap::RemoveValues(const QString& prefix)
{
    for (const QString& key : AllKeys(prefix))
        RemoveValue(key);
}

ScopeBase IVariantMap::ScopeGroup(const QString& name)
{
    BeginGroup(name);
    return ScopeBase([this] { EndGroup(); });
}

VekQVariantMap::VekQVariantMap() noexcept = default;
VekQVariantMap::VekQVariantMap(const VekQVariantMap&) noexcept = default;
VekQVariantMap::VekQVariantMap(VekQVariantMap&&) noexcept = default;
VekQVariantMap& VekQVariantMap::operator=(const VekQVariantMap& other) noexcept
{
    return *this = VekQVariantMap(other);
}
VekQVariantMap& VekQVariantMap::operator=(VekQVariantMap&& other) noexcept
{
    VekQVariantMap taken(std::move(other)); // which may lie below this one, and die with its entries
    m_entries.swap(taken.m_entries);
    m_state.swap(taken.m_state);
    return *this;
}
VekQVariantMap::~VekQVariantMap() = default;

bool VekQVariantMap::Contains(const QString& key) const { return Find(_FormatWithPrefix(key)) != nullptr; }

QList<QString> VekQVariantMap::AllKeys(const QString& prefix) const
{
    const QString fullPrefix = prefix.isEmpty() ? prefix : _FormatWithPrefix(prefix);
    const Entries& entries = _Entries();
    QList<QString> keys;
    for (auto entry = entries.lower_bound(fullPrefix);
         entry != entries.end() && (fullPrefix.isEmpty() || entry->first.startsWith(fullPrefix)); ++entry)
        keys.push_back(entry->first);
    return keys;
}

bool VekQVariantMap::RemoveValue(const QString& key)
{
    const QString fullKey = _FormatWithPrefix(key);
    return std::as_const(*this).Find(fullKey) != nullptr && _Entries().erase(fullKey) > 0;
}

void VekQVariantMap::ClearValues() { m_entries.reset(); }

void VekQVariantMap::BeginGroup(const QString& name) { _State().groups.push_back(name); }

void VekQVariantMap::EndGroup()
{
    if (!GetGroups().isEmpty())
        _State().groups.pop_back();
}

EVariantStoreFormat VekQVariantMap::PreferedStoreFormat() const
{
    return m_state ? m_state->format : EVariantStoreFormat::Typed;
}

VekQVariant VekQVariantMap::GetValueAsVariant(const QString& key) const
{
    const VekQVariant* const value = Find(_FormatWithPrefix(key));
    return value ? *value : VekQVariant();
}

void VekQVariantMap::SetValueAsVariant(const QString& key, VekQVariant value)
{
    _Entries().insert_or_assign(_FormatWithPrefix(key), std::move(value));
}

VekQVariant& VekQVariantMap::operator[](const QString& key) { return _Entries()[key]; }

VekQVariant& VekQVariantMap::At(const QString& key, const std::source_location& where)
{
    static_cast<void>(std::as_const(*this).At(key, where));
    return *Find(key);
}

const VekQVariant& VekQVariantMap::At(const QString& key, const std::source_location& where) const
{
    const VekQVariant* const value = Find(key);
    if (!value)
        throw Exception::KeyNotFoundException(QStringLiteral("Key not found: %1").arg(key), where);
    return *value;
}

VekQVariant* VekQVariantMap::Find(QStringView key)
{
    // Where another map has the same entries, they are copied only when there is something to be changed.
    if (!m_entries || (m_entries.constData()->ref.loadRelaxed() > 1 && !std::as_const(*this).Find(key)))
        return nullptr;
    Entries& entries = m_entries->entries;
    const auto entry = entries.find(key);
    return entry == entries.end() ? nullptr : &entry->second;
}

const VekQVariant* VekQVariantMap::Find(QStringView key) const
{
    const Entries& entries = _Entries();
    const auto entry = entries.find(key);
    return entry == entries.end() ? nullptr : &entry->second;
}

std::size_t VekQVariantMap::Size() const noexcept { return _Entries().size(); }

VekQVariantMap::iterator VekQVariantMap::begin() { return _Entries().begin(); }
VekQVariantMap::iterator VekQVariantMap::end() { return _Entries().end(); }
VekQVariantMap::const_iterator VekQVariantMap::begin() const noexcept { return _Entries().begin(); }
VekQVariantMap::const_iterator VekQVariantMap::end() const noexcept { return _Entries().end(); }

QString VekQVariantMap::GetType() const
{
    const VekQVariant* const type = Find(TypeKey());
    return type && type->Is<QString>() ? type->AsConst<QString>() : QString();
}

void VekQVariantMap::SetType(const QString& type) { _Entries()[TypeKey()] = VekQVariant::From(type); }

void VekQVariantMap::SetPreferedStoreFormat(EVariantStoreFormat format) { _State().format = format; }

bool operator==(const VekQVariantMap& a, const VekQVariantMap& b)
{
    return a._Entries() == b._Entries() && a.GetGroups() == b.GetGroups();
}

QString VekQVariantMap::_FormatWithPrefix(const QString& key) const
{
    const QList<QString>& groups = GetGroups();
    return groups.isEmpty() ? key : groups.join(u'/') + u'/' + key;
}

VekQVariantMap::Entries& VekQVariantMap::_Entries()
{
    if (!m_entries)
        m_entries = new EntryData;
    return m_entries->entries;
}

const VekQVariantMap::Entries& VekQVariantMap::_Entries() const noexcept
{
    if (m_entries) [[likely]]
        return m_entries->entries;
    static const Entries none;
    return none;
}

VekQVariantMap::StateData& VekQVariantMap::_State()
{
    if (!m_state)
        m_state = new StateData;
    return *m_state;
}

const QList<QString>& VekQVariantMap::GetGroups() const noexcept
{
    static const QList<QString> none;
    return m_state ? m_state->groups : none;
}

std::string ToLogText(const VekQVariantMap& map)
{
    return '{' + Convert::ToString(QVariant::fromValue(map)).toStdString() + '}';
}

std::string ToLogText(const VekQVariantList& list)
{
    return '[' + Convert::ToString(QVariant::fromValue(list)).toStdString() + ']';
}
} // namespace vek::App
