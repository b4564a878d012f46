#include "VekAppCore/App/Exception.h"
#include "Support/TestSupport.h"
#include <gmock/gmock.h>
#include <type_traits>

namespace vek::Exception
{
TEST(AppException, ACopyKeepsMessageTextAndLocation)
{
    const auto where = std::source_location::current();
    const AppException original(TrString::translate("C", "%1 ü").Arg(7), where);
    const AppException copy = original; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.GetMessage(), original.GetMessage());
    EXPECT_STREQ(copy.what(), "7 ü");
    EXPECT_EQ(copy.GetLocation().line(), where.line());
    EXPECT_STREQ(copy.GetLocation().file_name(), where.file_name());
}

TEST(InternalAppException, IsMadeAtTheCallersLineAndStaysUntranslated)
{
    const InternalAppException exception(QStringLiteral("No application instantiated"));
    EXPECT_EQ(exception.GetLocation().line(), std::source_location::current().line() - 1);
    EXPECT_EQ(exception.GetMessage(), TrString::NoTranslate(QStringLiteral("No application instantiated")));
}

static_assert(std::is_base_of_v<InternalAppException, KeyNotFoundException>);
static_assert(std::is_base_of_v<InternalAppException, WrongTypeException>);
static_assert(std::is_base_of_v<InternalAppException, WrongVersionException>);
static_assert(std::is_base_of_v<InternalAppException, OutOfRangeException>);
static_assert(std::is_base_of_v<AppException, InternalAppException>);
static_assert(std::is_base_of_v<CriticalException, E_NotEnoughMemory>);
static_assert(std::is_base_of_v<CriticalException, E_Escape>);
static_assert(std::is_base_of_v<AllocatedObject, ExceptionBase>);
static_assert(!std::is_base_of_v<AppException, CriticalException>);
static_assert(!std::is_base_of_v<AppException, NullptrException>);
} // namespace vek::Exception
