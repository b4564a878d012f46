#include "VekAppCore/Text/LanguageChange.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Translations.h"
#include "VekAppCore/QtUtility/EventFilter.h"
#include <QCoreApplication>
#include <QEvent>
#include <QLocale>
#include <gmock/gmock.h>
#include <memory>

namespace vek::StringUtility
{
namespace
{
void Send(QObject& object, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(&object, &event);
}
} // namespace

TEST(LanguageChange, CallsBackOncePerEventOfThatType)
{
    QObject object;
    int calls = 0;
    OnLanguageChanged(
        &object, [&calls] { ++calls; }, false);
    EXPECT_EQ(calls, 0);
    Send(object, QEvent::LanguageChange);
    Send(object, QEvent::FontChange);
    Send(object, QEvent::LanguageChange);
    EXPECT_EQ(calls, 2);
    OnLanguageChanged(
        &object, [&calls] { calls = 100; }, true);
    EXPECT_EQ(calls, 100);
}

TEST(LanguageChange, AScopeEndsTheCallsEvenFromInsideTheCallback)
{
    QObject object;
    int calls = 0;
    ScopeBase scope;
    scope = OnLanguageChangedScope(&object, [&] {
        if (++calls == 2)
            scope.Release();
    });
    EXPECT_EQ(calls, 1);
    Send(object, QEvent::LanguageChange);
    Send(object, QEvent::LanguageChange);
    EXPECT_EQ(calls, 2);

    auto mortal = std::make_unique<QObject>();
    const ScopeBase longer = OnLanguageChangedScope(mortal.get(), [] {});
    mortal.reset(); // before its scope
}

TEST(LanguageChange, ACallbackThatThrowsIsReported)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    QObject object;
    bool mayThrow = false;
    OnLanguageChanged(
        &object,
        [&mayThrow] {
            if (mayThrow)
                throw Exception::InternalAppException(QStringLiteral("no text"));
        },
        true);
    mayThrow = true;
    Send(object, QEvent::LanguageChange);
    ASSERT_EQ(notifications.messages.size(), 1U);
    EXPECT_EQ(notifications.messages[0].text.ToString(), QStringLiteral("no text"));
}

TEST(LanguageChange, TheLibrarySpeaksFrenchCompletely)
{
    QObject object;
    QString shown;
    const TrString text = ToTrString(true);
    OnLanguageChanged(&object, text, [&shown](const QString& now) { shown = now; });
    EXPECT_EQ(shown, QStringLiteral("Yes"));

    EXPECT_EQ(App::InstallTranslations(QLocale(QLocale::French)), 1);
    Send(object, QEvent::LanguageChange);
    EXPECT_EQ(shown, QStringLiteral("Oui"));
    EXPECT_EQ(TrString::translate("QObject", "Not enough memory.").ToString(),
              QStringLiteral("Mémoire insuffisante."));

    App::InstallTranslations(QLocale(QLocale::English));
    EXPECT_EQ(text.ToString(), QStringLiteral("Yes"));
    EXPECT_EQ(App::InstallTranslations(QLocale(QLocale::German)), 0);
}
} // namespace vek::StringUtility
