#include "VekAppCore/Threading/TaskProgressWidget.h"
#include "VekAppCore/App/SafeCallable.h"
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QStyle>
#include <QToolButton>
#include <optional>

namespace vek::Threading
{
namespace
{
constexpr int titleWidth = 260;
constexpr int barWidth = 160;

TrString FormatRemaining(std::chrono::steady_clock::duration time)
{
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(time).count();
    return seconds < 60 ? TrString::translate("TaskProgressWidget", "%1 s left").Arg(seconds)
                        : TrString::translate("TaskProgressWidget", "%1 min left").Arg((seconds + 59) / 60);
}
} // namespace

struct TaskProgressWidget::Impl
{
    Impl(TaskProgressWidget& owner, const TaskListener& shown, Clock time);
    void OnProgression(int value);
    void Finish();
    /// Shows what there is, in the present language.
    void Render();

    TaskProgressWidget& widget;
    const TaskListener task;
    const Clock clock;
    QLabel& titleLabel;
    QProgressBar& bar;
    QLabel& remainingLabel;
    QToolButton& cancelButton;
    TrString title;
    std::optional<TrString> remaining; ///< Empty while it cannot be told.
    int firstPercent = 0;
    std::optional<std::chrono::steady_clock::time_point> firstTime; ///< Of the first progress.
    Connection titleChanged;
    Connection progressionChanged;
    Connection finished;
};

TaskProgressWidget::Impl::Impl(TaskProgressWidget& owner, const TaskListener& shown, Clock time)
    : widget(owner),
      task(shown),
      clock(std::move(time)),
      titleLabel(*new QLabel),
      bar(*new QProgressBar),
      remainingLabel(*new QLabel),
      cancelButton(*new QToolButton),
      title(task.GetTitle())
{
    auto* const layout = new QHBoxLayout(&widget);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* const part :
         std::initializer_list<QWidget*>{&titleLabel, &bar, &remainingLabel, &cancelButton})
        layout->addWidget(part);
    bar.setRange(0, 0);
    bar.setFixedWidth(barWidth);
    titleLabel.setMaximumWidth(titleWidth);
    titleLabel.setTextFormat(Qt::PlainText); // a file name may hold what looks like a tag
    cancelButton.setAutoRaise(true);
    cancelButton.setIcon(widget.style()->standardIcon(QStyle::SP_DialogCancelButton));
    connect(&cancelButton, &QToolButton::clicked, &widget, App::SafeCallable([this] {
        cancelButton.setEnabled(false);
        task.Cancel();
    }));
    titleChanged = task.OnTitleChanged([this](const TrString& text) {
        title = text;
        Render();
    });
    progressionChanged = task.OnProgressionChanged([this](int value) { OnProgression(value); });
    finished = task.OnTaskFinished([this] { Finish(); });
    if (task.IsTaskFinished())
        Finish();
    Render();
}

void TaskProgressWidget::Impl::OnProgression(int value)
{
    const auto now = clock();
    if (!firstTime)
    {
        firstTime = now;
        firstPercent = value;
        bar.setRange(0, 100);
    }
    bar.setValue(value);
    const int done = bar.value() - firstPercent;
    remaining.reset();
    if (done > 0 && bar.value() < bar.maximum())
        remaining = FormatRemaining((now - *firstTime) * (100 - bar.value()) / done);
    Render();
}

void TaskProgressWidget::Impl::Finish()
{
    if (bar.maximum() == 0)
        bar.setRange(0, 100); // no longer busy
    remaining.reset();
    cancelButton.setEnabled(false);
    Render();
}

void TaskProgressWidget::Impl::Render()
{
    const QString text = title.ToString();
    titleLabel.setText(titleLabel.fontMetrics().elidedText(text, Qt::ElideMiddle, titleWidth));
    titleLabel.setToolTip(QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()));
    remainingLabel.setText(remaining ? remaining->ToString() : QString());
    cancelButton.setToolTip(TrString::translate("TaskProgressWidget", "Cancel").ToString());
}

TaskProgressWidget::TaskProgressWidget(const TaskListener& task, QWidget* parent, Clock clock)
    : QWidget(parent), m_impl(std::make_unique<Impl>(*this, task, std::move(clock)))
{}

TaskProgressWidget::~TaskProgressWidget() = default;

const TaskListener& TaskProgressWidget::GetTask() const noexcept { return m_impl->task; }

void TaskProgressWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        m_impl->Render();
}
} // namespace vek::Threading
