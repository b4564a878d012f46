#include "VekAppCore/App/NotificationBar.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/Translations.h"
#include <QLocale>
#include <QPlainTextEdit>
#include <QToolButton>

namespace vek::App
{
using Log::Verbosity;

static NotifierMessage Make(const QString& text, Verbosity verbosity = Verbosity::Error,
                            const QString& details = {})
{
    return {TrString::NoTranslate(text), verbosity, TrString::NoTranslate("Test"), details};
}

class NotificationBarTest : public testing::Test
{
protected:
    NotificationBarTest() { m_window.show(); }

    QWidget m_window;
    NotificationBar& m_bar = *new NotificationBar(&m_window);
    QToolButton& m_detailsButton = *m_bar.findChildren<QToolButton*>().at(0);
    QToolButton& m_closeButton = *m_bar.findChildren<QToolButton*>().at(1);
};

TEST_F(NotificationBarTest, ShowsTheNewestFirstAndFollowsTheSizeOfTheWindow)
{
    for (int number = 1; number <= 102; ++number)
        m_bar.Show(Make(QString::number(number).repeated(100)));
    m_window.resize(200, 60);
    EXPECT_TRUE(m_bar.isVisible() && m_window.rect().contains(m_bar.geometry()));
    for (int number = 102; number > 2; --number, m_closeButton.click())
        EXPECT_EQ(m_bar.GetShownText(), QString::number(number).repeated(100));
    EXPECT_EQ(m_bar.GetMessageCount(), 0);
    EXPECT_FALSE(m_bar.isVisible());
}

TEST_F(NotificationBarTest, OnlyErrorsWarningsAndWhatIsBeingReadStay)
{
    m_bar.SetLifetime(std::chrono::milliseconds(1));
    for (const int verbosity : {3, 2, 4, 1, 5})
        m_bar.Show(Make(QString::number(verbosity), static_cast<Verbosity>(verbosity), "<b>why</b>"));
    const auto& details = *m_bar.findChild<QPlainTextEdit*>();
    EXPECT_FALSE(details.isVisible()) << "nobody asked for them";
    m_detailsButton.click();
    EXPECT_TRUE(TestSupport::WaitFor([this] { return m_bar.GetMessageCount() == 3; }));
    EXPECT_EQ(m_bar.GetShownText(), "5");
    EXPECT_TRUE(details.isVisible() && details.toPlainText() == "<b>why</b>");
    m_detailsButton.click();
    EXPECT_TRUE(TestSupport::WaitFor([this] { return m_bar.GetShownText() == "1"; }));
    m_closeButton.click();
    EXPECT_EQ(m_bar.GetShownText(), "2");
    m_bar.Show({TrString::translate("QObject", "Not enough memory."), Verbosity::Error, {}, {}});
    EXPECT_FALSE(m_detailsButton.isVisible()) << "there are none";
    InstallTranslations(QLocale::French);
    EXPECT_TRUE(TestSupport::WaitFor([this] { return m_bar.GetShownText() == "Mémoire insuffisante."; }));
}

TEST(InstalledNotificationBar, IsTheOnlyOneOfTheMainWidget)
{
    const TestSupport::NotificationRecorder former;
    ApplicationFrame application{AppConfiguration()};
    NotificationBar::Install();
    NotificationBar::Install(); // shows no message twice
    {
        QWidget window;
        application.SetMainWidget(&window);
        Notifier(Make("one"));
        Notifier(Make("two"));
        ASSERT_EQ(window.children().size(), 1);
        EXPECT_EQ(dynamic_cast<NotificationBar&>(*window.children().constFirst()).GetMessageCount(), 2);
    }
    Notifier(Make("nowhere to show")); // the window has died
    EXPECT_EQ(former.messages.size(), 3U);
}
} // namespace vek::App
