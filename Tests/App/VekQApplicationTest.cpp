#include "VekAppCore/App/VekQApplication.h"
#include "Support/TestSupport.h"
#include <QKeyEvent>
#include <QWidget>
#include <stdexcept>

namespace vek::App
{
static VekQApplication& GetApplication() { return *static_cast<VekQApplication*>(qApp); }

struct Filter final : QObject
{
    explicit Filter(std::function<bool(QObject*)> toCall) : function(std::move(toCall))
    {
        GetApplication().AddTopLevelEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent*) override { return function(watched); }
    std::function<bool(QObject*)> function;
};

static bool SendKey(QObject& receiver, QEvent::Type type = QEvent::KeyPress)
{
    QKeyEvent event(type, Qt::Key_A, Qt::NoModifier);
    return GetApplication().eventFilter(&receiver, &event);
}

TEST(VekQApplication, OffersKeysOfWindowsToTheTopLevelFiltersInOrder)
{
    QWidget window;
    QWidget child(&window);
    std::string asked;
    const Filter first([&](QObject* watched) { return (asked += '1').empty() || watched != &window; });
    const Filter second([&](QObject*) { return !(asked += '2').empty(); });
    const Filter third([&](QObject*) { return !(asked += '3').empty(); });
    EXPECT_TRUE(SendKey(window));
    EXPECT_TRUE(SendKey(window, QEvent::KeyRelease));
    EXPECT_FALSE(SendKey(child));
    EXPECT_FALSE(SendKey(GetApplication()));
    EXPECT_FALSE(SendKey(window, QEvent::ShortcutOverride));
    EXPECT_EQ(asked, "1212");
}

TEST(VekQApplication, AFilterMayThrowDieSendKeysAndDestroyTheWindow)
{
    const TestSupport::LogRecorder log;
    auto window = std::make_unique<QWidget>();
    auto throwing = std::make_unique<Filter>([](QObject*) -> bool { throw std::runtime_error("filter"); });
    EXPECT_TRUE(SendKey(*window));
    EXPECT_TRUE(log.GetLines().at(0).message.contains("interrupted the treatment"));
    EXPECT_THAT(log.GetLines().at(1).message.toStdString(),
                testing::MatchesRegex("filter During event: QKeyEvent.*on object: QWidget.*::eventFilter.*"));
    throwing.reset();

    // Removes the dead one, which stands in front of this one.
    const Filter busy([](QObject*) { return SendKey(GetApplication()); });
    const Filter last([&window](QObject*) { return window.reset(), false; });
    EXPECT_FALSE(SendKey(*window));
    EXPECT_EQ(window, nullptr);
}

TEST(VekQApplication, WhatLeavesAHandlerIsReportedAlsoWhenTheReceiverDiedInIt)
{
    struct Throwing final : QObject
    {
        bool event(QEvent*) override
        {
            delete this;
            throw 7;
        }
    };
    const TestSupport::LogRecorder log;
    QEvent event(QEvent::User);
    EXPECT_TRUE(QCoreApplication::sendEvent(new Throwing(), &event));
    EXPECT_TRUE(log.GetLines().at(1).message.contains("VekQApplication::notify"));
}
} // namespace vek::App
