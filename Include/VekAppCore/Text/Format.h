#pragma once
#include "VekAppCore/Text/UnitConvert.h"
#include <fmt/format.h>
#include <string>

/// Lets fmt print quantities, as Convert::ToString writes them in the C locale: "{:>10}" and the like. For
/// programs that have fmt.
template <vek::Unit::AnyQuantity Q>
struct fmt::formatter<Q> : fmt::formatter<std::string>
{
    template <typename Context>
    auto format(const Q& quantity, Context& context) const
    {
        return fmt::formatter<std::string>::format(vek::Convert::ToString(quantity).toStdString(), context);
    }
};
