#include "VekAppCore/App/Exception.h"
#include <gtest/gtest.h>

namespace vek::Exception
{
TEST(InternalAppException, ACopyKeepsUntranslatedMessageTextAndTheCallersLine)
{
    const OutOfRangeException original(QStringLiteral("%1 ü"));
    const AppException copy = original;
    EXPECT_EQ(copy.GetMessage(), TrString::NoTranslate(QStringLiteral("%1 ü")));
    EXPECT_STREQ(copy.what(), "%1 ü");
    EXPECT_EQ(copy.GetLocation().line(), std::source_location::current().line() - 4);
}
} // namespace vek::Exception
