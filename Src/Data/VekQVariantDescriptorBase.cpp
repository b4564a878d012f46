#include "VekAppCore/Data/VekQVariantDescriptorBase.h"
#include "VekAppCore/Data/VekQVariantMap.h"

namespace vek::App
{
VekQVariantDescriptorBase::VekQVariantDescriptorBase(VekQVariant& value, const QString& type)
    : m_value(value), m_type(type)
{
    _InitValueType();
}

VekQVariantDescriptorBase::VekQVariantDescriptorBase(const VekQVariant& value)
    : m_value(const_cast<VekQVariant&>(value))
{}

VekQVariantDescriptorBase::VekQVariantDescriptorBase(const VekQVariant& value, const QString& type)
    : m_value(const_cast<VekQVariant&>(value)), m_type(type)
{
    _CheckValueType();
}

VekQVariantDescriptorBase::~VekQVariantDescriptorBase() = default;

TrString VekQVariantDescriptorBase::DisplayName(TrString name) { return name; }

void VekQVariantDescriptorBase::_InitValueType()
{
    if (m_value.Is<VekQVariantMap>() && _GetType() == m_type)
        return;
    VekQVariantMap map;
    if (!m_type.isEmpty())
        map.SetType(m_type);
    VekQVariant replacement = VekQVariant::From(map);
    m_value.Swap(replacement);
}

void VekQVariantDescriptorBase::_CheckValueType() const
{
    if (_GetType() != m_type)
        throw Exception::WrongTypeException(QStringLiteral("Wrong type"));
}

QString VekQVariantDescriptorBase::_GetType() const
{
    return std::as_const(m_value).AsConst<VekQVariantMap>().GetType();
}
} // namespace vek::App
