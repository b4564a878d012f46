#include "VekAppCore/QtUtility/EventFilter.h"
#include <QCoreApplication>
#include <QEvent>
#include <gmock/gmock.h>

namespace vek::QtUtility
{
namespace
{
struct Receiver final : QObject
{
    std::vector<QEvent::Type> received;
    bool event(QEvent* event) override
    {
        received.push_back(event->type());
        return QObject::event(event);
    }
};

void Send(QObject* object, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(object, &event);
}
} // namespace

TEST(EventFilter, SeesEveryEventAndConsumesNone)
{
    Receiver receiver;
    std::vector<QEvent::Type> seen;
    auto* const filter =
        new EventFilter(&receiver, [&seen](QEvent* event) { seen.push_back(event->type()); });
    Send(&receiver, QEvent::User);
    Send(&receiver, QEvent::FontChange);
    filter->Stop();
    filter->Stop();
    Send(&receiver, QEvent::User);
    EXPECT_THAT(seen, testing::ElementsAre(QEvent::User, QEvent::FontChange));
    EXPECT_THAT(receiver.received, testing::IsSupersetOf({QEvent::User, QEvent::FontChange, QEvent::User}));
}

TEST(EventFilter, SeesNoOthersEventsWhereItsObjectIsTheApplication)
{
    QObject other;
    int seen = 0;
    auto* const filter = new EventFilter(QCoreApplication::instance(),
                                         [&seen](QEvent* each) { seen += each->type() == QEvent::User; });
    Send(&other, QEvent::User);
    EXPECT_EQ(seen, 0);
    Send(QCoreApplication::instance(), QEvent::User);
    EXPECT_EQ(seen, 1);
    filter->Stop();
}
} // namespace vek::QtUtility
