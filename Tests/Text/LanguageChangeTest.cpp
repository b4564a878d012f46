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
static void Send(QObject& object, QEvent::Type type = QEvent::LanguageChange)
{
    QEvent event(type);
    QCoreApplication::sendEvent(&object, &event);
}

TEST(LanguageChange, CallsBackOncePerEventOfThatTypeUntilItsScopeEnds)
{
    auto object = std::make_unique<QObject>();
    std::string calls;
    OnLanguageChanged(
        object.get(), [&calls] { calls += 'a'; }, false);
    OnLanguageChanged(
        object.get(), [&calls] { calls += 'b'; }, true);
    EXPECT_EQ(calls, "b");
    ScopeBase scope;
    scope = OnLanguageChangedScope(object.get(), [&] {
        calls += 'c';
        if (std::ranges::count(calls, 'c') == 2)
            scope.Release(); // from inside
    });
    const ScopeBase longer = OnLanguageChangedScope(object.get(), [] {});
    for (const auto type : {QEvent::LanguageChange, QEvent::FontChange, QEvent::LanguageChange})
        Send(*object, type);
    std::ranges::sort(calls);
    EXPECT_EQ(calls, "aabbbcc");
    object.reset(); // before its scope
}

TEST(LanguageChange, ACallbackThatThrowsIsReported)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    QObject object;
    const auto fail = [] { throw Exception::InternalAppException(QStringLiteral("no text")); };
    OnLanguageChanged(&object, fail, false);
    Send(object);
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
    Send(object);
    EXPECT_EQ(shown, QStringLiteral("Oui"));
    EXPECT_EQ(App::InstallTranslations(QLocale(QLocale::German)), 0);
    EXPECT_EQ(ToTrString(true).ToString(), QStringLiteral("Yes"));
}
} // namespace vek::StringUtility
