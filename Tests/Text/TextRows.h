#pragma once
#include "Support/TestSupport.h"
#include <gtest/gtest.h>

namespace vek::TestSupport
{
/// @param rows  "text -> result": what @p function makes of the text.
void ExpectRows(const auto& function, std::initializer_list<const char*> rows)
{
    for (const QString row : rows)
    {
        const QString text = row.section(" -> ", 0, 0);
        EXPECT_EQ(text + " -> " + function(text), row);
    }
}
} // namespace vek::TestSupport
