#include "VekAppCore/App/VekQApplication.h"
#include "Support/TestSupport.h"
#include <QKeyEvent>
#include <QWidget>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>

namespace vek::App
{
namespace
{
VekQApplication& GetApplication() { return *static_cast<VekQApplication*>(qApp); }

class Filter final : public QObject
{
public:
    explicit Filter(std::function<bool(QObject*)> function) : m_function(std::move(function))
    {
        GetApplication().AddTopLevelEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent*) override { return m_function(watched); }

private:
    std::function<bool(QObject*)> m_function;
};

bool SendKey(QObject& receiver, QEvent::Type type = QEvent::KeyPress)
{
    QKeyEvent event(type, Qt::Key_A, Qt::NoModifier);
    return GetApplication().eventFilter(&receiver, &event);
}
} // namespace

TEST(VekQApplication, OffersKeysOfWindowsToTheTopLevelFiltersInOrder)
{
    QWidget window;
    auto* const child = new QWidget(&window);
    QObject object;
    std::vector<int> asked;
    const Filter first([&](QObject* watched) {
        EXPECT_EQ(watched, &window);
        asked.push_back(1);
        return false;
    });
    const Filter second([&](QObject*) {
        asked.push_back(2);
        return true;
    });
    const Filter third([&](QObject*) {
        asked.push_back(3);
        return true;
    });
    EXPECT_TRUE(SendKey(window));
    EXPECT_TRUE(SendKey(window, QEvent::KeyRelease));
    EXPECT_FALSE(SendKey(*child));
    EXPECT_FALSE(SendKey(object));
    EXPECT_FALSE(SendKey(window, QEvent::ShortcutOverride));
    EXPECT_THAT(asked, testing::ElementsAre(1, 2, 1, 2));
}

TEST(VekQApplication, AFilterMayThrowDieAddAndDestroyTheWindow)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    QWidget window;
    auto throwing = std::make_unique<Filter>([](QObject*) -> bool { throw std::runtime_error("filter"); });
    EXPECT_TRUE(SendKey(window));
    EXPECT_EQ(notifications.messages.size(), 1U);
    throwing.reset();
    EXPECT_FALSE(SendKey(window));

    std::vector<std::unique_ptr<Filter>> added;
    auto mortal = std::make_unique<QWidget>();
    const Filter last([&](QObject*) {
        for (int i = 0; i < 100; ++i)
            added.push_back(std::make_unique<Filter>([](QObject*) { return true; }));
        mortal.reset();
        return false;
    });
    EXPECT_FALSE(SendKey(*mortal));
}

TEST(VekQApplication, WhatLeavesAHandlerIsReportedAlsoWhenTheReceiverDiedInIt)
{
    struct Suicidal final : QObject
    {
        bool event(QEvent*) override
        {
            delete this;
            throw std::runtime_error("handler");
        }
    };
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    QEvent event(QEvent::User);
    EXPECT_TRUE(QCoreApplication::sendEvent(new Suicidal(), &event));

    struct Throwing final : QObject
    {
        bool event(QEvent*) override { throw 7; }
    };
    Throwing throwing;
    QCoreApplication::postEvent(&throwing, new QEvent(QEvent::User));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(notifications.messages.size(), 2U);
    EXPECT_EQ(log.GetLines().size(), 4U);
}
} // namespace vek::App
