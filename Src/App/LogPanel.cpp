#include "VekAppCore/App/LogPanel.h"
#include "App/VerbosityLook.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/Text/LanguageChange.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include <QAbstractListModel>
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QDateTime>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <deque>
#include <mutex>
#include <ranges>
#include <vector>

namespace vek::App
{
namespace
{
using namespace std::chrono_literals;

// A flood of lines must leave the main thread time for everything else.
constexpr auto takeInterval = 40ms;

constexpr int wholeTextRole = Qt::UserRole;

struct Line
{
    qint64 time; ///< Milliseconds since the epoch.
    Log::Verbosity verbosity;
    QString message;
};

/// Lines on their way from any thread to the panel, which alone owns it: the callback in the chain outlives
/// the panel.
struct Inbox
{
    const std::size_t mostLines;
    const QPointer<QTimer> timer; ///< Takes the lines. Main thread only.
    std::mutex mutex;             ///< Guards the members below.
    std::deque<Line> lines;
    bool isTimerAwaited = false;

    static void Add(const std::weak_ptr<Inbox>& receiver, Line line)
    {
        const std::shared_ptr<Inbox> inbox = receiver.lock();
        if (!inbox)
            return;
        {
            const std::lock_guard lock(inbox->mutex);
            inbox->lines.push_back(std::move(line));
            if (inbox->lines.size() > inbox->mostLines)
                inbox->lines.pop_front();
            if (std::exchange(inbox->isTimerAwaited, true))
                return;
        }
        if (QCoreApplication* const application = QCoreApplication::instance())
            Threading::VekQFuncEvent::PostEvent(application, [receiver] {
                const std::shared_ptr<Inbox> awaiting = receiver.lock();
                if (awaiting && awaiting->timer)
                    awaiting->timer->start(takeInterval);
            });
    }

    std::deque<Line> TakeAll()
    {
        const std::lock_guard lock(mutex);
        isTimerAwaited = false;
        return std::exchange(lines, {});
    }
};

/// The kept lines; its rows are those that pass the filter.
class LogModel : public QAbstractListModel
{
public:
    LogModel(std::size_t mostLines, QWidget* panel);

    int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
    }

    QVariant data(const QModelIndex& index, int role) const override;

    /// @param lines  no more than are kept.
    /// @return how many rows were dropped.
    int Append(std::deque<Line> lines);

    void Clear();
    void SetMostVerbose(Log::Verbosity verbosity);
    void SetText(const QString& text);

    [[nodiscard]] std::size_t GetMostLines() const { return m_mostLines; }
    [[nodiscard]] std::size_t GetLineCount() const { return m_lines.size(); }

private:
    [[nodiscard]] bool _Passes(const Line& line) const;
    void _Filter();

    const std::size_t m_mostLines;
    const QIcon m_noIcon;   ///< Transparent, so that all texts begin in one column.
    const QWidget& m_panel; ///< The font, the palette and the style are asked of it.
    std::deque<Line> m_lines;
    std::uint64_t m_firstNumber = 0; ///< Of m_lines[0]: a line keeps its number when older ones are dropped.
    std::deque<std::uint64_t> m_shown; ///< Numbers of the lines that pass, ascending.
    Log::Verbosity m_mostVerbose = Log::Verbosity::Trace;
    QString m_text;
};

QIcon MakeTransparentIcon()
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

LogModel::LogModel(std::size_t mostLines, QWidget* panel)
    : QAbstractListModel(panel), m_mostLines(mostLines), m_noIcon(MakeTransparentIcon()), m_panel(*panel)
{}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    const std::uint64_t number = m_shown.at(static_cast<std::size_t>(index.row()));
    const Line& line = m_lines.at(static_cast<std::size_t>(number - m_firstNumber));
    const auto wholeText = [&line] {
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(line.time);
        return time.toString(QStringLiteral("HH:mm:ss.zzz")) + QStringLiteral("  ") + line.message;
    };
    switch (role)
    {
    case Qt::DisplayRole: return wholeText().remove(u'\r').replace(u'\n', u' ');
    case wholeTextRole: return wholeText();
    case Qt::ToolTipRole:
        return QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(line.message.toHtmlEscaped());
    case Qt::DecorationRole:
        return line.verbosity <= Log::Verbosity::Warning
                   ? VerbosityLook::GetIcon(line.verbosity, *m_panel.style())
                   : m_noIcon;
    case Qt::ForegroundRole:
        return line.verbosity == Log::Verbosity::Info
                   ? m_panel.palette().color(QPalette::Text)
                   : VerbosityLook::GetColor(line.verbosity, m_panel.palette());
    // The width is that of the view: what does not fit is elided, and the tool tip shows it.
    case Qt::SizeHintRole: return QSize(1, m_panel.fontMetrics().height() + 5);
    default: return {};
    }
}

int LogModel::Append(std::deque<Line> lines)
{
    const std::size_t all = m_lines.size() + lines.size();
    const std::size_t dropped = all > m_mostLines ? all - m_mostLines : 0;
    const auto firstKept = std::ranges::lower_bound(m_shown, m_firstNumber + dropped);
    const int droppedRows = static_cast<int>(firstKept - m_shown.begin());
    if (droppedRows > 0)
        beginRemoveRows({}, 0, droppedRows - 1);
    m_shown.erase(m_shown.begin(), firstKept);
    m_lines.erase(m_lines.begin(), m_lines.begin() + static_cast<std::ptrdiff_t>(dropped));
    m_firstNumber += dropped;
    if (droppedRows > 0)
        endRemoveRows();

    std::vector<std::uint64_t> added;
    for (std::uint64_t number = m_firstNumber + m_lines.size(); const Line& line : lines)
    {
        if (_Passes(line))
            added.push_back(number);
        ++number;
    }
    if (!added.empty())
        beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(added.size()) - 1);
    std::ranges::move(lines, std::back_inserter(m_lines));
    std::ranges::copy(added, std::back_inserter(m_shown));
    if (!added.empty())
        endInsertRows();
    return droppedRows;
}

void LogModel::Clear()
{
    beginResetModel();
    m_lines.clear();
    m_shown.clear();
    endResetModel();
}

void LogModel::SetMostVerbose(Log::Verbosity verbosity)
{
    m_mostVerbose = verbosity;
    _Filter();
}

void LogModel::SetText(const QString& text)
{
    m_text = text;
    _Filter();
}

bool LogModel::_Passes(const Line& line) const
{
    return line.verbosity <= m_mostVerbose && line.message.contains(m_text, Qt::CaseInsensitive);
}

void LogModel::_Filter()
{
    beginResetModel();
    m_shown.clear();
    for (std::uint64_t number = m_firstNumber; const Line& line : m_lines)
    {
        if (_Passes(line))
            m_shown.push_back(number);
        ++number;
    }
    endResetModel();
}

std::array<TrString, 5> GetLevelNames()
{
    return {TrString::translate("LogPanel", "Error"), TrString::translate("LogPanel", "Warning"),
            TrString::translate("LogPanel", "Info"), TrString::translate("LogPanel", "Debug"),
            TrString::translate("LogPanel", "Trace")};
}

int ToIndex(Log::Verbosity verbosity) { return std::clamp(static_cast<int>(verbosity), 1, 5) - 1; }
} // namespace

/// A QObject so that its connections end with it, before the widgets die.
struct LogPanel::Impl : QObject
{
    Impl(LogPanel& owner, int mostLines);
    void ShowTexts();
    void TakeLines();
    void CopySelectedLines() const;

    LogPanel& panel;
    LogModel& model;
    QListView& view;
    QScrollBar& scrollBar;
    QComboBox& levels;
    QLineEdit& search;
    QPushButton& clear;
    QAction& copy;
    QTimer& timer;
    std::shared_ptr<Inbox> inbox;
    bool followsEnd = true;
};

LogPanel::Impl::Impl(LogPanel& owner, int mostLines)
    : panel(owner),
      model(*new LogModel(static_cast<std::size_t>(std::max(mostLines, 1)), &panel)),
      view(*new QListView(&panel)),
      scrollBar(*view.verticalScrollBar()),
      levels(*new QComboBox(&panel)),
      search(*new QLineEdit(&panel)),
      clear(*new QPushButton(&panel)),
      copy(*new QAction(&view)),
      timer(*new QTimer(&panel))
{
    view.setModel(&model);
    view.setUniformItemSizes(true);
    const int textHeight = panel.fontMetrics().height();
    view.setIconSize({textHeight, textHeight});
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setContextMenuPolicy(Qt::ActionsContextMenu);
    copy.setShortcut(QKeySequence::Copy);
    copy.setShortcutContext(Qt::WidgetShortcut);
    view.addAction(&copy);
    levels.addItems(QStringList(5)); // ShowTexts names them
    levels.setCurrentIndex(ToIndex(Log::Verbosity::Trace));
    search.setClearButtonEnabled(true);
    timer.setSingleShot(true);

    auto* const layout = new QVBoxLayout(&panel);
    auto* const controls = new QHBoxLayout;
    controls->addWidget(&levels);
    controls->addWidget(&search, 1);
    controls->addWidget(&clear);
    layout->addLayout(controls);
    layout->addWidget(&view, 1);

    const auto filterLevel = [this](int index) {
        model.SetMostVerbose(static_cast<Log::Verbosity>(index + 1));
    };
    connect(&levels, &QComboBox::currentIndexChanged, this, SafeCallable(filterLevel));
    connect(&search, &QLineEdit::textChanged, this,
            SafeCallable([this](const QString& text) { model.SetText(text); }));
    connect(&clear, &QPushButton::clicked, this, SafeCallable([this] { panel.Clear(); }));
    connect(&copy, &QAction::triggered, this, SafeCallable([this] { CopySelectedLines(); }));
    connect(&timer, &QTimer::timeout, this, SafeCallable([this] { TakeLines(); }));
    connect(&scrollBar, &QScrollBar::valueChanged, this,
            SafeCallable([this](int value) { followsEnd = value == scrollBar.maximum(); }));
    connect(&scrollBar, &QScrollBar::rangeChanged, this, SafeCallable([this] {
        if (followsEnd)
            scrollBar.setValue(scrollBar.maximum());
    }));
}

void LogPanel::Impl::ShowTexts()
{
    for (int index = 0; const TrString& name : GetLevelNames())
        levels.setItemText(index++, name.ToString());
    levels.setToolTip(
        TrString::translate("LogPanel", "Shows lines of this level and more important ones").ToString());
    search.setPlaceholderText(TrString::translate("LogPanel", "Search").ToString());
    clear.setText(TrString::translate("LogPanel", "Clear").ToString());
    copy.setText(TrString::translate("LogPanel", "Copy").ToString());
}

void LogPanel::Impl::TakeLines()
{
    if (!inbox)
        return;
    const int droppedRows = model.Append(inbox->TakeAll());
    if (!followsEnd)
        scrollBar.setValue(scrollBar.value() - droppedRows); // so that the lines being read stay in place
}

void LogPanel::Impl::CopySelectedLines() const
{
    QModelIndexList rows = view.selectionModel()->selectedIndexes();
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    for (const QModelIndex& row : rows)
        lines.push_back(row.data(wholeTextRole).toString());
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

LogPanel::LogPanel(QWidget* parent, int mostLines)
    : QWidget(parent), m_impl(std::make_unique<Impl>(*this, mostLines))
{
    StringUtility::OnLanguageChanged(
        this, [this] { m_impl->ShowTexts(); }, true);
}

LogPanel::~LogPanel() = default;

void LogPanel::Install()
{
    m_impl->TakeLines();
    // Installed again, it must not see lines twice: the callback of before loses its inbox.
    m_impl->inbox = std::make_shared<Inbox>(m_impl->model.GetMostLines(), &m_impl->timer);
    ChainLogCallback(
        [receiver = std::weak_ptr(m_impl->inbox)](Log::Verbosity verbosity, const QString& message) {
            Inbox::Add(receiver, {QDateTime::currentMSecsSinceEpoch(), verbosity, message});
        });
}

void LogPanel::SetMostVerbose(Log::Verbosity verbosity)
{
    m_impl->levels.setCurrentIndex(ToIndex(verbosity));
}

void LogPanel::SetTextFilter(const QString& text) { m_impl->search.setText(text); }

int LogPanel::GetLineCount() const
{
    m_impl->TakeLines();
    return static_cast<int>(m_impl->model.GetLineCount());
}

QStringList LogPanel::GetShownLines() const
{
    m_impl->TakeLines();
    QStringList lines;
    for (const int row : std::views::iota(0, m_impl->model.rowCount()))
        lines.push_back(m_impl->model.index(row).data().toString());
    return lines;
}

void LogPanel::Clear()
{
    m_impl->TakeLines();
    m_impl->model.Clear();
}
} // namespace vek::App
