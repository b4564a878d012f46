#pragma once
#include "VekAppCoreWidgets/Export.h"
#include "VekBase/RawPtr.h"
#include <QApplication>
#include <vector>

namespace vek::App
{
/// The Qt application of a program: an exception that leaves a handler is reported with the event and the
/// object, and the program goes on. Main thread only.
class VEKAPPCOREWIDGETS_EXPORT VekQApplication : public QApplication
{
public:
    /// As those of QApplication: @p argc and @p argv must live as long as the application.
    VekQApplication(int& argc, char** argv);
    ~VekQApplication() override;

    /// Offers key presses and releases to @p filter when they reach a window, before the window gets them;
    /// the filters are asked in order of adding, and the first that returns true consumes the event.
    void AddTopLevelEventFilter(RawPtr<QObject> filter);

    /// Forgets the filters that have died; done after each key that reached them all.
    void CleanUpEventFilters();

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool notify(QObject* receiver, QEvent* event) override;

private:
    bool _OfferToTopLevelFilters(QObject* watched, QEvent* event);

    std::vector<RawPtr<QObject>> m_topLevelEventFilters;
};
} // namespace vek::App
