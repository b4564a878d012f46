#include "VekAppCore/Text/LanguageChange.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Translations.h"
#include <QCoreApplication>
#include <QEvent>
#include <QLocale>
#include <gtest/gtest.h>
#include <memory>

namespace vek::StringUtility
{
static void Send(QObject& object, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(&object, &event);
}

TEST(LanguageChange, CallsBackOncePerEventOfThatTypeUntilItsScopeEnds)
{
    auto object = std::make_unique<QObject>();
    const auto append = [](std::string& trace, char mark) { return [&trace, mark] { trace += mark; }; };
    std::string calls;
    OnLanguageChanged(object.get(), append(calls, 'a'), false);
    OnLanguageChanged(object.get(), append(calls, 'b'), true);
    EXPECT_EQ(calls, "b");
    std::string scopeCalls;
    ScopeBase scope;
    scope = OnLanguageChangedScope(object.get(), [&] {
        if ((scopeCalls += 'c').size() == 2)
            scope.Release(); // from inside
    });
    const ScopeBase longer = OnLanguageChangedScope(object.get(), [] {});
    for (const auto type : {QEvent::LanguageChange, QEvent::FontChange, QEvent::LanguageChange})
        Send(*object, type);
    EXPECT_EQ(std::ranges::count(calls, 'a'), 2);
    EXPECT_EQ(std::ranges::count(calls, 'b'), 3);
    EXPECT_EQ(scopeCalls, "cc");
    object.reset(); // before its scope
}

TEST(LanguageChange, ACallbackThatThrowsIsReported)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    QObject object;
    const auto fail = [] { throw Exception::InternalAppException(QStringLiteral("no text")); };
    OnLanguageChanged(&object, fail, false);
    Send(object, QEvent::LanguageChange);
    ASSERT_EQ(notifications.messages.size(), 1U);
    EXPECT_EQ(notifications.messages[0].text.ToString(), QStringLiteral("no text"));
}

TEST(LanguageChange, TheLibrarySpeaksFrench)
{
    QObject object;
    QString shown;
    OnLanguageChanged(&object, ToTrString(true), [&shown](const QString& now) { shown = now; });
    EXPECT_EQ(shown, QStringLiteral("Yes"));
    EXPECT_EQ(App::InstallTranslations(QLocale(QLocale::French)), 1);
    Send(object, QEvent::LanguageChange);
    EXPECT_EQ(shown, QStringLiteral("Oui"));
    EXPECT_EQ(App::InstallTranslations(QLocale(QLocale::German)), 0);
    EXPECT_EQ(ToTrString(true).ToString(), QStringLiteral("Yes"));
}
} // namespace vek::StringUtility
