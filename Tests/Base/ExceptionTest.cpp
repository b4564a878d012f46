#include "VekBase/Exception.h"
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace vek::Exception
{
namespace
{
template <typename T>
class ExceptionMadeFromNothing : public testing::Test
{};
using Exceptions =
    testing::Types<ExceptionBase, NullptrException, CriticalException, E_Escape, E_NotEnoughMemory>;
TYPED_TEST_SUITE(ExceptionMadeFromNothing, Exceptions, );

TYPED_TEST(ExceptionMadeFromNothing, CarriesTheLineOfTheThrow) // not the line of its class
{
    const auto here = std::source_location::current();
    try
    {
        throw TypeParam();
    }
    catch (const ExceptionBase& caught)
    {
        EXPECT_EQ(caught.GetLocation().line(), here.line() + 3);
        EXPECT_STREQ(caught.GetLocation().file_name(), here.file_name());
    }
}

template <typename Fail>
std::string Report(Fail fail)
{
    testing::internal::CaptureStderr();
    try
    {
        fail();
        HandleException();
    }
    catch (...)
    {
        HandleException();
    }
    return testing::internal::GetCapturedStderr();
}

TEST(HandleException, ReportsAnythingToStandardErrorOrTheHandler)
{
    const ExceptionHandler before = SetExceptionHandler(nullptr);
    EXPECT_EQ(Report([] { throw std::runtime_error("It failed"); }).find("It failed (source: "), 0U);
    EXPECT_EQ(Report([] { throw 5; }).find("A general exception has been caught. (source: "), 0U);
    EXPECT_EQ(Report([] {}).find("No exception (source: "), 0U);

    static std::string report; // of the handler: what it rethrows, and the function that reported
    const ExceptionHandler handler = [](const std::source_location& where) noexcept {
        try
        {
            throw;
        }
        catch (const std::exception& caught)
        {
            report = std::string(caught.what()) + " in " + where.function_name();
        }
    };
    SetExceptionHandler(handler);
    EXPECT_EQ(Report([] { throw std::runtime_error("It failed"); }), "");
    EXPECT_EQ(report.find("It failed in "), 0U);
    EXPECT_NE(report.find("Report("), std::string::npos);
    EXPECT_EQ(SetExceptionHandler(before), handler);
}
} // namespace
} // namespace vek::Exception
