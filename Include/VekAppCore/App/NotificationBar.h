#pragma once
#include "VekAppCore/App/Notifier.h"
#include "VekAppCoreWidgets/Export.h"
#include <QWidget>
#include <chrono>
#include <memory>

namespace vek::App
{
/// Shows notifications on top of a window without blocking it: the newest in front, with its level, a button
/// for the details when there are any, and a button that goes on to the next. Errors and warnings stay until
/// they are closed, other messages go by themselves. Texts follow a change of language. Main thread only.
class VEKAPPCOREWIDGETS_EXPORT NotificationBar : public QWidget
{
public:
    /// Lies over the upper edge of @p window and follows its size.
    explicit NotificationBar(QWidget* window);
    ~NotificationBar() override;

    /// In front of those that wait.
    void Show(const NotifierMessage& message);

    /// How long messages that are no errors or warnings stay, from Show on, for those shown after this call;
    /// 6 seconds unless set. One whose details are open stays until they are closed.
    void SetLifetime(std::chrono::milliseconds lifetime);

    /// Messages that wait, the shown one included; at most 100, the oldest are dropped first.
    [[nodiscard]] int GetMessageCount() const;
    /// The text that is shown; empty when there is no message.
    [[nodiscard]] QString GetShownText() const;

    /// Shows notifications in the application's main widget (App::GetMainWidget) from now on, in front of the
    /// present notifier callback; without a main widget only that one gets them.
    static void Install();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
} // namespace vek::App
