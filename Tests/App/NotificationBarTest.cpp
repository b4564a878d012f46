#include "VekAppCore/App/NotificationBar.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QTranslator>
#include <gmock/gmock.h>

namespace vek::App
{
namespace
{
using namespace std::chrono_literals;
using Log::Verbosity;
using vek::Test::WaitFor;

NotifierMessage Make(const QString& text, Verbosity verbosity = Verbosity::Error, const QString& details = {})
{
    return {TrString::NoTranslate(text), verbosity, TrString::NoTranslate("Test"), details};
}

class NotificationBarTest : public testing::Test
{
protected:
    NotificationBarTest()
    {
        m_window.resize(600, 400);
        m_window.show();
        for (auto* const button : m_bar.findChildren<QToolButton*>())
            (button->isCheckable() ? m_detailsButton : m_closeButton) = button;
    }

    QWidget m_window;
    NotificationBar& m_bar = *new NotificationBar(&m_window);
    QToolButton* m_detailsButton = nullptr;
    QToolButton* m_closeButton = nullptr;
    QPlainTextEdit& m_details = *m_bar.findChild<QPlainTextEdit*>();
};

TEST_F(NotificationBarTest, ShowsTheNewestFirstAndClosesTowardsTheOldest)
{
    EXPECT_FALSE(m_bar.isVisible());
    for (int number = 1; number <= 102; ++number)
        m_bar.Show(Make(QString::number(number)));
    EXPECT_TRUE(m_bar.isVisible());
    for (int number = 102; number > 2; --number)
    {
        EXPECT_EQ(m_bar.GetShownText(), QString::number(number));
        EXPECT_EQ(m_bar.GetMessageCount(), number - 2);
        m_closeButton->click();
    }
    EXPECT_EQ(m_bar.GetShownText(), "");
    EXPECT_FALSE(m_bar.isVisible());
}

TEST_F(NotificationBarTest, OnlyErrorsAndWarningsStay)
{
    m_bar.SetLifetime(1ms);
    for (const int verbosity : {3, 2, 4, 1, 5})
        m_bar.Show(Make(QString::number(verbosity), static_cast<Verbosity>(verbosity)));
    EXPECT_TRUE(WaitFor([this] { return m_bar.GetMessageCount() == 2; }));
    EXPECT_EQ(m_bar.GetShownText(), "1");
    m_closeButton->click();
    EXPECT_EQ(m_bar.GetShownText(), "2");
}

TEST_F(NotificationBarTest, StaysWhileDetailsAreRead)
{
    m_bar.SetLifetime(1h);
    m_bar.Show(Make("older", Verbosity::Info));
    m_bar.SetLifetime(1ms);
    m_bar.Show(Make("beneath", Verbosity::Info));
    m_bar.Show(Make("front", Verbosity::Info, "why"));
    m_detailsButton->click();
    EXPECT_TRUE(WaitFor([this] { return m_bar.GetMessageCount() == 2; }));
    EXPECT_EQ(m_bar.GetShownText(), "front");
    m_detailsButton->click();
    EXPECT_TRUE(WaitFor([this] { return m_bar.GetShownText() == "older"; }));
}

TEST_F(NotificationBarTest, OffersDetailsWhereThereAreAny)
{
    m_bar.Show(Make("without"));
    EXPECT_FALSE(m_detailsButton->isVisible());
    m_bar.Show(Make("with", Verbosity::Error, "<b>why</b>"));
    const int heightBefore = m_bar.height();
    m_detailsButton->click();
    EXPECT_TRUE(m_detailsButton->isVisible() && m_details.isVisible());
    EXPECT_GT(m_bar.height(), heightBefore);
    EXPECT_EQ(m_details.toPlainText(), "<b>why</b>");
    m_bar.Show(Make("with others", Verbosity::Error, "because"));
    EXPECT_FALSE(m_details.isVisible()); // nobody asked for these
}

TEST_F(NotificationBarTest, FollowsTheSizeOfTheWindow)
{
    m_bar.Show(Make(QStringLiteral("A text that needs several lines in a narrow window. ").repeated(4)));
    const int heightBefore = m_bar.height();
    for (const QSize size : {QSize(300, 400), QSize(200, 60)})
    {
        m_window.resize(size);
        EXPECT_TRUE(m_window.rect().contains(m_bar.geometry()));
        EXPECT_GT(m_bar.width(), size.width() - 50);
    }
    m_window.resize(300, 400);
    EXPECT_GT(m_bar.height(), heightBefore);
}

class GermanTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char*, const char*, int) const override
    {
        return qstrcmp(context, "NotificationBarTest") == 0 ? "Taster verloren" : QString();
    }
};

TEST_F(NotificationBarTest, FollowsTheLanguageWithDetailsOpen)
{
    m_bar.Show({TrString::translate("NotificationBarTest", "Probe lost"), Verbosity::Error, {}, "why"});
    m_detailsButton->click();
    GermanTranslator translator;
    QCoreApplication::installTranslator(&translator);
    EXPECT_TRUE(WaitFor([this] { return m_bar.GetShownText() == "Taster verloren"; }));
    EXPECT_TRUE(m_details.isVisible());
}

TEST(InstalledNotificationBar, IsTheOnlyOneOfEachMainWidget)
{
    const vek::Test::NotificationRecorder former;
    ApplicationFrame application{AppConfiguration()};
    NotificationBar::Install();
    NotificationBar::Install(); // shows no message twice
    Notifier(Make("nowhere to show"));
    for (int round = 0; round < 2; ++round)
    {
        QWidget window;
        application.SetMainWidget(&window);
        Notifier(Make("one", Verbosity::Info));
        Notifier(Make("two"));
        ASSERT_EQ(window.children().size(), 1);
        EXPECT_EQ(dynamic_cast<NotificationBar&>(*window.children().constFirst()).GetMessageCount(), 2);
    }
    Notifier(Make("nowhere again"));
    EXPECT_EQ(former.messages.size(), 6u);
}
} // namespace
} // namespace vek::App
