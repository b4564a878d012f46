#pragma once
#include <QByteArray>
#include <clocale>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace vek::TestSupport
{
/// The process has decimal commas for its lifetime, as Qt gives it to users in most of the world.
class CommaLocale
{
public:
    CommaLocale() : m_before(std::setlocale(LC_NUMERIC, nullptr))
    {
        constexpr std::string_view madeForTests = VEK_TEST_LOCALES;
        if (!madeForTests.empty())
            qputenv("LOCPATH", madeForTests.data());
        EXPECT_TRUE(std::setlocale(LC_NUMERIC, "de_DE.UTF-8"));
    }
    ~CommaLocale() { std::setlocale(LC_NUMERIC, m_before.c_str()); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

private:
    const std::string m_before;
};
} // namespace vek::TestSupport
