#include "VekAppCore/Analytics/ConsentPanel.h"
#include "VekAppCore/Analytics/AnalyticsService.h"
#include "VekAppCore/App/IAppFeatureService.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/App/ServiceManager.h"
#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace vek::Analytics
{
namespace
{
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr auto refreshInterval = 500ms; // while it is visible
} // namespace

struct ConsentPanel::Impl
{
    QLabel* explanation = new QLabel;
    QCheckBox* isUsed = new QCheckBox;
    QLabel* title = new QLabel;
    QPlainTextEdit* sent = new QPlainTextEdit;
    QTimer timer;
    quint64 shownCount = 0; ///< What had been sent when the list was filled.
    Signal<void(bool)> switched;
};

ConsentPanel::ConsentPanel(QWidget* parent) : QWidget(parent), m_impl(std::make_unique<Impl>())
{
    m_impl->explanation->setWordWrap(true);
    m_impl->sent->setReadOnly(true);
    m_impl->sent->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* const layout = new QVBoxLayout(this);
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{m_impl->explanation, m_impl->isUsed, m_impl->title, m_impl->sent})
        layout->addWidget(widget);
    connect(m_impl->isUsed, &QCheckBox::clicked, this, App::SafeCallable([this](bool isUsed) {
                GetAnalyticsService().SetServiceUsed(isUsed);
                _Refresh();
                m_impl->switched.Emit(isUsed); // last: the panel may be deleted
            }));
    connect(&m_impl->timer, &QTimer::timeout, this, App::SafeCallable([this] {
        if (isVisible())
            _Refresh();
        else
            m_impl->timer.stop();
    }));
    _Translate();
}

ConsentPanel::~ConsentPanel() = default;

Connection ConsentPanel::OnSwitched(std::function<void(bool)> callback)
{
    return m_impl->switched.Connect(std::move(callback));
}

void ConsentPanel::_Translate()
{
    const auto set = [](auto* widget, const TrString& text) { widget->setText(text.ToString()); };
    set(m_impl->explanation,
        TrString::translate(
            "ConsentPanel",
            "With your consent, this program tells its makers how it is used: which pages and dialogs are opened, which "
            "commands are used, when, and how long they take. With it go the version, edition and language of the "
            "program, your country, the size of the screen, the kind of processor and graphics card, the size of the "
            "memory, and a random number that stands for this installation. It sends no files and no measurements. You "
            "may change your mind at any time: what has not been sent by then is dropped."));
    set(m_impl->isUsed, TrString::translate("ConsentPanel", "Send usage statistics"));
    set(m_impl->title, TrString::translate("ConsentPanel",
                                           "What has been sent, as it went (the newest first, 50 at most):"));
    _Refresh();
}

void ConsentPanel::_Refresh()
{
    const auto features = App::Services().Get<App::IAppFeatureService>();
    const bool isDecided = features && features->IsOverridden(u"AnalyticsService/UsedService"_s);
    m_impl->isUsed->setEnabled(!isDecided);
    m_impl->isUsed->setToolTip(
        isDecided ? TrString::translate("ConsentPanel", "The settings of this computer decide.").ToString()
                  : QString());
    m_impl->isUsed->setChecked(AnalyticsService::IsServiceUsed());

    const GoogleAnalyticsService* const backEnd = GetAnalyticsService().GetBackEnd();
    const quint64 count = backEnd ? backEnd->GetSentCount() : 0;
    if (count == m_impl->shownCount)
        return;
    // What is being read or copied stays in its place.
    if (m_impl->sent->textCursor().hasSelection() || m_impl->sent->verticalScrollBar()->value() > 0)
        return;
    m_impl->shownCount = count;
    QString text;
    const auto sent = backEnd->GetSent();
    for (auto entry = sent.rbegin(); entry != sent.rend(); ++entry)
        text += u"%1  %2\n%3\n\n"_s.arg(locale().toString(entry->time, u"HH:mm:ss"_s), entry->path,
                                        entry->payload);
    m_impl->sent->setPlainText(text);
}

void ConsentPanel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        _Translate();
    QWidget::changeEvent(event);
}

void ConsentPanel::showEvent(QShowEvent* event)
{
    _Refresh();
    m_impl->timer.start(refreshInterval);
    QWidget::showEvent(event);
}
} // namespace vek::Analytics
