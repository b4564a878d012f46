#pragma once
#include "VekAppCoreWidgets/Export.h"
#include "VekBase/RawPtr.h"

namespace vek::App
{
/// The central widget of a main widget (GetMainWidget) that is a QMainWindow; else null.
[[nodiscard]] VEKAPPCOREWIDGETS_EXPORT RawPtr<QWidget> GetCentralWidget();
} // namespace vek::App
