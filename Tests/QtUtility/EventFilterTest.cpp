#include "VekAppCore/QtUtility/EventFilter.h"
#include <QCoreApplication>
#include <QEvent>
#include <gmock/gmock.h>
#include <vector>

namespace vek::QtUtility
{
namespace
{
class Receiver final : public QObject
{
public:
    std::vector<QEvent::Type> received;

protected:
    bool event(QEvent* event) override
    {
        received.push_back(event->type());
        return QObject::event(event);
    }
};
} // namespace

TEST(EventFilter, SeesEveryEventAndConsumesNone)
{
    Receiver receiver;
    std::vector<QEvent::Type> seen;
    auto* const filter =
        new EventFilter(&receiver, [&seen](QEvent* event) { seen.push_back(event->type()); });
    QEvent first(QEvent::User);
    QEvent second(QEvent::FontChange);
    QCoreApplication::sendEvent(&receiver, &first);
    QCoreApplication::sendEvent(&receiver, &second);
    filter->Stop();
    filter->Stop();
    QCoreApplication::sendEvent(&receiver, &first);
    EXPECT_THAT(seen, testing::ElementsAre(QEvent::User, QEvent::FontChange));
    EXPECT_THAT(receiver.received, testing::IsSupersetOf({QEvent::User, QEvent::FontChange, QEvent::User}));
}

TEST(EventFilter, SeesNoOthersEventsWhereItsObjectIsTheApplication)
{
    QEvent event(QEvent::User);
    QObject other;
    int seen = 0;
    auto* const filter = new EventFilter(QCoreApplication::instance(),
                                         [&seen](QEvent* each) { seen += each->type() == QEvent::User; });
    QCoreApplication::sendEvent(&other, &event);
    EXPECT_EQ(seen, 0);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &event);
    EXPECT_EQ(seen, 1);
    filter->Stop();
}
} // namespace vek::QtUtility
