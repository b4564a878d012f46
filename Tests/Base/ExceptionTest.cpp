#include "VekBase/Exception.h"
#include <cstdint>
#include <functional>
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
    const std::uint_least32_t line = std::source_location::current().line() + 3;
    try
    {
        throw TypeParam();
    }
    catch (const ExceptionBase& caught)
    {
        EXPECT_EQ(caught.GetLocation().line(), line);
        EXPECT_STREQ(caught.GetLocation().file_name(), std::source_location::current().file_name());
    }
}

struct ReportCase
{
    const char* fault;
    std::function<void()> fail;
    std::string text;
};
void PrintTo(const ReportCase& row, std::ostream* out) { *out << row.fault; }
class HandleExceptionReport : public testing::TestWithParam<ReportCase>
{};

TEST_P(HandleExceptionReport, IsALineOnStandardErrorWithTheCaller)
{
    const ExceptionHandler before = SetExceptionHandler(nullptr);
    testing::internal::CaptureStderr();
    try
    {
        GetParam().fail();
        HandleException();
    }
    catch (...)
    {
        HandleException();
    }
    const std::string expected =
        GetParam().text + " (source: " + std::source_location::current().function_name() + ")\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), expected);
    SetExceptionHandler(before);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, HandleExceptionReport,
    testing::Values(ReportCase{"text lost", [] { throw std::runtime_error("It failed"); }, "It failed"},
                    ReportCase{"program ended by a type it does not know", [] { throw 5; },
                               "A general exception has been caught."},
                    ReportCase{"program ended without an exception", [] {}, "No exception"}));

TEST(HandleException, CallsTheHandlerInsideTheCatchBlock)
{
    static std::string report;
    const ExceptionHandler handler = [](const std::source_location& where) noexcept {
        try
        {
            throw;
        }
        catch (const std::exception& caught)
        {
            report = std::string(caught.what()) + std::to_string(where.line());
        }
    };
    const ExceptionHandler before = SetExceptionHandler(handler);
    std::uint_least32_t line = 0;
    try
    {
        throw std::runtime_error("Line ");
    }
    catch (...)
    {
        line = std::source_location::current().line() + 1;
        HandleException();
    }
    EXPECT_EQ(SetExceptionHandler(before), handler);
    EXPECT_EQ(report, "Line " + std::to_string(line));
}
} // namespace
} // namespace vek::Exception
