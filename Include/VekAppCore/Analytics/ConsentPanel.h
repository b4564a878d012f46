#pragma once
#include "VekAppCoreWidgets/Export.h"
#include "VekBase/Signal.h"
#include <QWidget>
#include <functional>
#include <memory>

namespace vek::Analytics
{
/// Tells the user in plain words what the usage statistics are, shows what has been sent, as it went, and
/// lets him agree or not. For a dialog of settings. It follows changes of language. Main thread only.
class VEKAPPCOREWIDGETS_EXPORT ConsentPanel : public QWidget
{
public:
    /// @throws NullptrException  there is no AnalyticsService.
    explicit ConsentPanel(QWidget* parent = nullptr);
    ~ConsentPanel() override;

    /// Calls @p callback when the user has switched, after it has taken effect, while the connection is kept:
    /// for the application to keep the choice.
    [[nodiscard]] Connection OnSwitched(std::function<void(bool isUsed)> callback);

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct Impl;
    void _Translate();
    void _Refresh();

    std::unique_ptr<Impl> m_impl;
};
} // namespace vek::Analytics
