#include "VekAppCore/App/CentralWidget.h"
#include "VekAppCore/App/Application.h"
#include <QMainWindow>

namespace vek::App
{
RawPtr<QWidget> GetCentralWidget()
{
    const RawPtr<QWidget> widget = GetMainWidget();
    auto* const window = dynamic_cast<QMainWindow*>(widget.Get());
    return window ? window->centralWidget() : nullptr;
}
} // namespace vek::App
