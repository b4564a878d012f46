#pragma once
#include "VekAppCoreWidgets/Export.h"
#include "VekBase/Verbosity.h"
#include <QWidget>
#include <memory>

namespace vek::App
{
/// Shows the newest log lines and filters them by level and text. Main thread only, except what Install's
/// callback does: it takes lines from any thread, also after the panel has died.
class VEKAPPCOREWIDGETS_EXPORT LogPanel : public QWidget
{
public:
    /// @param mostLines  kept, 1 or more; the oldest are dropped first.
    explicit LogPanel(QWidget* parent = nullptr, int mostLines = 10'000);
    ~LogPanel() override;

    /// Makes this panel see every log line from now on, in front of the present log callback.
    void Install();

    /// Shows lines of this and more important levels (smaller numbers).
    void SetMostVerbose(Log::Verbosity verbosity);
    /// Shows lines that contain @p text, in whatever case; all when it is empty.
    void SetTextFilter(const QString& text);

    /// Kept, whether or not they pass the filters.
    [[nodiscard]] int GetLineCount() const;
    /// Lines that pass the filters, oldest first, as shown.
    [[nodiscard]] QStringList GetShownLines() const;

    /// Forgets the lines; the filters stay.
    void Clear();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
} // namespace vek::App
