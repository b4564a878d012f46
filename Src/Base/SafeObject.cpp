#include "VekBase/SafeObject.h"

namespace vek
{
// Not inline: the compiler would warn of uses behind a deletion that another reference keeps from happening.
void Details::ControlBlock::_Delete() noexcept { delete this; }

SafeObject::~SafeObject()
{
    if (Details::ControlBlock* const block = m_block.exchange(nullptr))
    {
        block->Clear();
        block->ReleaseReference();
    }
}

Details::ControlBlock& SafeObject::_InstallControlBlock() const
{
    auto* const made = new Details::ControlBlock(this);
    made->AddReference();
    Details::ControlBlock* installed = nullptr;
    if (m_block.compare_exchange_strong(installed, made))
        return *made;
    delete made; // another thread was first
    return *installed;
}

IObject::~IObject() = default;
} // namespace vek
