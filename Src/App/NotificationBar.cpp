#include "VekAppCore/App/NotificationBar.h"
#include "App/VerbosityLook.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekBase/ScopeBase.h"
#include <QDeadlineTimer>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <deque>

namespace vek::App
{
namespace
{
constexpr std::size_t mostMessages = 100;
constexpr int distanceFromEdge = 8;
constexpr int widestBar = 760;
constexpr int highestDetails = 160;

struct Entry
{
    NotifierMessage message;
    QDeadlineTimer deadline;
};

/// A rounded frame that is tinted by level.
class TintedFrame : public QFrame
{
public:
    using QFrame::QFrame;
    void SetVerbosity(Log::Verbosity verbosity)
    {
        m_verbosity = verbosity;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        constexpr double radius = 6.0;
        const QColor tint = VerbosityLook::GetColor(m_verbosity, palette());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(tint, 1.5));
        painter.setBrush(VerbosityLook::Mix(palette().color(QPalette::Base), tint, 0.12));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    }

private:
    Log::Verbosity m_verbosity = Log::Verbosity::Info;
};

NotificationBar& GetBar(QWidget& window)
{
    for (QObject* const child : window.children())
        if (auto* const bar = dynamic_cast<NotificationBar*>(child))
            return *bar;
    return *new NotificationBar(&window);
}
} // namespace

/// A QObject so that its connections end with it, before the widgets die.
struct NotificationBar::Impl : QObject
{
    Impl(NotificationBar& owner, QWidget* shownIn);
    void Add(const NotifierMessage& message);
    void Close();
    /// Drops what has had its time.
    void Update();
    /// Shows the first message, in the present language, palette and style.
    void Render();
    void Place();

    NotificationBar& bar;
    QWidget& window;
    TintedFrame& frame;
    QLabel& icon;
    QLabel& source;
    QLabel& text;
    QLabel& waiting;
    QToolButton& detailsButton;
    QToolButton& closeButton;
    QPlainTextEdit& details;
    QTimer& timer;
    std::deque<Entry> entries; ///< The newest, which is shown, first; at most mostMessages.
    std::chrono::milliseconds lifetime = std::chrono::seconds(6);
};

NotificationBar::Impl::Impl(NotificationBar& owner, QWidget* shownIn)
    : bar(owner),
      window(*shownIn),
      frame(*new TintedFrame(&bar)),
      icon(*new QLabel(&frame)),
      source(*new QLabel(&frame)),
      text(*new QLabel(&frame)),
      waiting(*new QLabel(&frame)),
      detailsButton(*new QToolButton(&frame)),
      closeButton(*new QToolButton(&frame)),
      details(*new QPlainTextEdit(&frame)),
      timer(*new QTimer(&bar))
{
    for (QLabel* const label : {&source, &text, &waiting})
        label->setTextFormat(Qt::PlainText); // a message may hold what looks like a tag
    text.setWordWrap(true);
    QFont bold = source.font();
    bold.setBold(true);
    source.setFont(bold);
    waiting.setForegroundRole(QPalette::PlaceholderText);
    detailsButton.setCheckable(true);
    detailsButton.setAutoRaise(true);
    closeButton.setAutoRaise(true);
    details.setReadOnly(true);
    details.setMaximumHeight(highestDetails);
    timer.setSingleShot(true);

    auto* const outer = new QVBoxLayout(&bar);
    outer->setContentsMargins({});
    outer->addWidget(&frame);
    auto* const grid = new QGridLayout(&frame);
    auto* const texts = new QVBoxLayout;
    texts->addStretch();
    texts->addWidget(&source);
    texts->addWidget(&text);
    texts->addStretch();
    grid->setColumnStretch(1, 1);
    grid->addWidget(&icon, 0, 0, Qt::AlignTop);
    grid->addLayout(texts, 0, 1);
    grid->addWidget(&waiting, 0, 2, Qt::AlignTop);
    grid->addWidget(&detailsButton, 0, 3, Qt::AlignTop);
    grid->addWidget(&closeButton, 0, 4, Qt::AlignTop);
    grid->addWidget(&details, 1, 0, 1, 5);

    connect(&closeButton, &QToolButton::clicked, this, SafeCallable([this] { Close(); }));
    connect(&detailsButton, &QToolButton::toggled, this, SafeCallable([this] { Update(); }));
    connect(&timer, &QTimer::timeout, this, SafeCallable([this] { Update(); }));
    window.installEventFilter(&bar);
    bar.hide();
}

void NotificationBar::Impl::Add(const NotifierMessage& message)
{
    const bool stays = message.verbosity <= Log::Verbosity::Warning;
    entries.push_front({message, stays ? QDeadlineTimer(QDeadlineTimer::Forever) : QDeadlineTimer(lifetime)});
    if (entries.size() > mostMessages)
        entries.pop_back();
    const QSignalBlocker blocker(detailsButton);
    detailsButton.setChecked(false);
    Update();
}

void NotificationBar::Impl::Close()
{
    entries.pop_front();
    const QSignalBlocker blocker(detailsButton);
    detailsButton.setChecked(false);
    Update();
}

void NotificationBar::Impl::Update()
{
    const auto mayGo = entries.begin() + (detailsButton.isChecked() ? 1 : 0);
    const auto hasExpired = [](const Entry& entry) { return entry.deadline.hasExpired(); };
    entries.erase(std::remove_if(mayGo, entries.end(), hasExpired), entries.end());

    QDeadlineTimer next(QDeadlineTimer::Forever);
    for (auto entry = entries.begin() + (detailsButton.isChecked() ? 1 : 0); entry != entries.end(); ++entry)
        next = std::min(next, entry->deadline);
    timer.stop();
    if (!next.isForever())
        timer.start(std::chrono::ceil<std::chrono::milliseconds>(next.remainingTimeAsDuration()));
    Render();
}

void NotificationBar::Impl::Render()
{
    if (entries.empty())
    {
        text.clear();
        return bar.hide();
    }
    const NotifierMessage& message = entries.front().message;
    const QStyle& style = *bar.style();
    const int iconSize = style.pixelMetric(QStyle::PM_LargeIconSize);
    frame.SetVerbosity(message.verbosity);
    icon.setPixmap(VerbosityLook::GetIcon(message.verbosity, style).pixmap(iconSize));
    source.setText(message.source.ToString());
    source.setVisible(!source.text().isEmpty());
    text.setText(message.text.ToString());
    const auto count = static_cast<int>(entries.size()) - 1;
    waiting.setText(TrString::translate("NotificationBar", "%1 more").Arg(count).ToString());
    waiting.setVisible(count > 0);
    detailsButton.setText(TrString::translate("NotificationBar", "Details").ToString());
    detailsButton.setVisible(!message.details.isEmpty());
    closeButton.setIcon(style.standardIcon(QStyle::SP_TitleBarCloseButton));
    closeButton.setToolTip(TrString::translate("NotificationBar", "Close this message").ToString());
    if (details.toPlainText() != message.details)
        details.setPlainText(message.details);
    details.setVisible(detailsButton.isChecked());
    Place();
    bar.show();
    bar.raise();
}

void NotificationBar::Impl::Place()
{
    const auto* const mainWindow = qobject_cast<QMainWindow*>(&window);
    const QWidget* const menu = mainWindow ? mainWindow->menuWidget() : nullptr; // it must stay in reach
    const int top = (menu && menu->isVisible() ? menu->geometry().bottom() + 1 : 0) + distanceFromEdge;
    const int width = std::clamp(window.width() - 2 * distanceFromEdge, 0, widestBar);
    const int room = std::max(window.height() - top - distanceFromEdge, 0);
    frame.layout()->activate();
    bar.layout()->activate();
    bar.setGeometry((window.width() - width) / 2, top, width, std::min(bar.heightForWidth(width), room));
}

NotificationBar::NotificationBar(QWidget* window)
    : QWidget(window), m_impl(std::make_unique<Impl>(*this, window))
{}

NotificationBar::~NotificationBar() = default;

void NotificationBar::Show(const NotifierMessage& message) { m_impl->Add(message); }

void NotificationBar::SetLifetime(std::chrono::milliseconds lifetime) { m_impl->lifetime = lifetime; }

int NotificationBar::GetMessageCount() const { return static_cast<int>(m_impl->entries.size()); }

QString NotificationBar::GetShownText() const { return m_impl->text.text(); }

void NotificationBar::Install()
{
    // Installed twice, the callbacks lie in one chain, and the inner one must not show the same message
    // again.
    static const NotifierMessage* passedOn = nullptr;

    SetNotifierCallback([former = SetNotifierCallback({})](const NotifierMessage& message) mutable {
        const NotifierMessage* const before = std::exchange(passedOn, &message);
        const ScopeBase restore([before] { passedOn = before; });
        const RawPtr<QWidget> window = GetMainWidget();
        if (window && before != &message)
            GetBar(*window).Show(message);
        if (former)
            former(message);
    });
}

bool NotificationBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && watched == parent())
        m_impl->Place();
    return QWidget::eventFilter(watched, event);
}

void NotificationBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    const auto type = event->type();
    if (m_impl && !m_impl->entries.empty() &&
        (type == QEvent::LanguageChange || type == QEvent::PaletteChange || type == QEvent::StyleChange))
        m_impl->Render();
}
} // namespace vek::App
