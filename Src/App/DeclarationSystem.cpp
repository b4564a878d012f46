#include "VekAppCore/App/DeclarationSystem.h"
#include "VekBase/TypeName.h"
#include <algorithm>

namespace vek::App
{
IDeclarationSystemExtension::~IDeclarationSystemExtension() = default;

void IDeclarationSystemExtension::_AddRecord(std::string declared, const std::source_location& by)
{
    static std::uint64_t count = 0;
    m_records.push_back({std::move(declared), by, count++, std::nullopt});
}

DeclarationSystem::DeclarationSystem() = default;
DeclarationSystem::~DeclarationSystem() = default;

DeclarationSystem& DeclarationSystem::GetInstance()
{
    static DeclarationSystem instance;
    return instance;
}

void DeclarationSystem::Rewind() noexcept
{
    for (const auto& [key, extension] : m_extensions)
        extension->m_firstNew = 0;
}

void DeclarationSystem::DeleteAllExtensions() { m_extensions.clear(); }

std::vector<DeclarationInfo> DeclarationSystem::List() const
{
    std::vector<std::pair<std::uint64_t, DeclarationInfo>> ordered;
    for (const auto& [key, extension] : m_extensions)
        for (const auto& record : extension->m_records)
            ordered.push_back(
                {record.order, {GetTypeName(key), record.declared, record.by, record.duration}});
    std::ranges::sort(ordered, {}, &decltype(ordered)::value_type::first);

    std::vector<DeclarationInfo> list;
    for (auto& [order, info] : ordered)
        list.push_back(std::move(info));
    return list;
}

IDeclarationSystemExtension& DeclarationSystem::_GetOrCreate(std::type_index key, Maker make)
{
    std::unique_ptr<IDeclarationSystemExtension>& extension = m_extensions[key];
    if (!extension)
        extension = make();
    return *extension;
}

IDeclarationSystemExtension* DeclarationSystem::_Find(std::type_index key) const
{
    const auto found = m_extensions.find(key);
    return found == m_extensions.end() ? nullptr : found->second.get();
}

std::string ToLogText(const DeclarationInfo& info)
{
    return info.declared.empty() ? info.context : info.context + ": " + info.declared;
}
} // namespace vek::App
