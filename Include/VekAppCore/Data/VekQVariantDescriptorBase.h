#pragma once
#include "VekAppCore/Data/VekQVariant.h"
#include "VekAppCore/Text/TrString.h"

namespace vek::App
{
/// A view of a node that is a map of a certain type, as SetType writes it. The base of classes that name the
/// children of such a map. The node outlives it. Reentrant.
class VEKAPPCORE_EXPORT VekQVariantDescriptorBase
{
public:
    /// Makes the node an empty map of this type, unless it is a map of it. A value of before is lost, for all
    /// copies of a shared node.
    /// @param type  empty for none.
    VekQVariantDescriptorBase(VekQVariant& value, const QString& type);

    /// To be read only: call nothing on the view that changes the node.
    explicit VekQVariantDescriptorBase(const VekQVariant& value);

    /// As above.
    /// @throws Exception::WrongTypeException  the node is no map, or one of another type.
    VekQVariantDescriptorBase(const VekQVariant& value, const QString& type);

    VekQVariantDescriptorBase(const VekQVariantDescriptorBase&) = default;
    VekQVariantDescriptorBase& operator=(const VekQVariantDescriptorBase&) = delete;
    virtual ~VekQVariantDescriptorBase();

    /// @{
    /// The node that is described.
    [[nodiscard]] VekQVariant& GetValueRef() noexcept { return m_value; }
    [[nodiscard]] const VekQVariant& GetValueRef() const noexcept { return m_value; }
    /// @}

    /// @p name itself, for descriptors that name themselves.
    [[nodiscard]] static TrString DisplayName(TrString name);

private:
    void _InitValueType();
    void _CheckValueType() const;
    [[nodiscard]] QString _GetType() const;

    VekQVariant& m_value;
    const QString m_type; ///< Empty for any.
};
} // namespace vek::App
