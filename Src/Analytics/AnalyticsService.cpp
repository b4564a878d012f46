#include "VekAppCore/Analytics/AnalyticsService.h"
#include "Base/EnumText.h"
#include "Platform/Platform.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/IAppFeatureService.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/RegisterService.h"
#include "VekBase/RawPtr.h"
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QScreen>
#include <algorithm>
#include <thread>
#include <utility>

namespace vek::Analytics
{
namespace
{
using namespace Qt::StringLiterals;
using enum EApplicationParameter;

const QString& UsedService()
{
    static const QString name = u"AnalyticsService/UsedService"_s;
    return name;
}

QString ToText(const App::VersionNumber& version)
{
    return u"%1.%2.%3.%4"_s.arg(version[0]).arg(version[1]).arg(version[2]).arg(version[3]);
}

/// "%1 (Core: %2 | RAM: %3Go)", without what the system does not tell.
QString DescribeProcessor()
{
    const std::uint64_t memory = Platform::GetMemorySize();
    const QString memoryText = memory == 0 ? QString() : u" | RAM: %1Go"_s.arg(memory >> 30);
    return u"%1 (Core: %2%3)"_s.arg(Platform::GetProcessorName())
        .arg(std::thread::hardware_concurrency())
        .arg(memoryText)
        .trimmed();
}

/// Name and version of OpenGL; empty where nothing is drawn with it now: to ask otherwise would take long.
QString DescribeGraphicsCard()
{
    const QOpenGLContext* const context = QOpenGLContext::currentContext();
    if (!context)
        return {};
    const auto get = [context](GLenum name) {
        return QString::fromLatin1(reinterpret_cast<const char*>(context->functions()->glGetString(name)));
    };
    return u"%1 (%2)"_s.arg(get(GL_RENDERER), get(GL_VERSION));
}

QString ToPage(const QString& page) { return page.startsWith(u'/') ? page : u'/' + page; }

/// What GA4 calls a page.
QString ToTitle(const QString& page) { return page == u"/" ? u"MainWindow"_s : page.sliced(1); }

VEK_DECLARE_SERVICE(AnalyticsService, AnalyticsService);
} // namespace

AnalyticsService::AnalyticsService() = default;
AnalyticsService::~AnalyticsService() { Stop(); }

void AnalyticsService::PostRegistration()
{
    m_backEnd = std::make_unique<GoogleAnalyticsService>();
    m_backEnd->SetSuppressing(true); // until it is known that the user agrees
    Start();
    // Services die in no order: what is pending is sent while all are there.
    if (qApp)
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp,
                         [service = RawPtr<AnalyticsService>(this)] {
                             if (service)
                                 service->Stop();
                         });
}

void AnalyticsService::OnNotify()
{
    if (!m_backEnd)
        return;
    if (const auto http = App::Services().Get<Network::HttpService>())
    {
        m_backEnd->SetHttp(http->GetSender());
        const QUrl address(App::GetAppConfig().analyticsAddress);
        m_backEnd->SetAddress(address);
        m_canSend = !address.isEmpty();
    }
    if (const auto features = App::Services().Get<App::IAppFeatureService>())
        m_featureChanged = features->OnChanged([this](const QString& name) {
            if (name == UsedService())
                _FollowConsent();
        });
    _FollowConsent();
}

void AnalyticsService::_FollowConsent()
{
    m_backEnd->SetSuppressing(!m_canSend || !IsServiceUsed());
    _TakeEngagement(); // what was before is nobody's business
}

void AnalyticsService::InitializeService(const App::GoogleAnalytics4DataStream& stream,
                                         const QString& trackingId, const QString& language,
                                         const QString& country, const QString& edition,
                                         const QString& clientId)
{
    if (!m_backEnd)
        throw Exception::NullptrException();
    const auto set = [this](EApplicationParameter parameter, const QString& value) {
        m_backEnd->SetApplicationParameter(parameter, value);
    };
    set(TrackingId, trackingId);
    set(MeasurementId, stream.measurementId);
    set(ApiSecret, stream.apiSecret);
    set(ClientId, clientId);
    set(ApplicationName, App::GetAppConfig().applicationName);
    set(DataSource, u"app"_s);
    set(Language, language);
    if (const auto app = App::GetAppPtr())
    {
        const App::VersionNumber version = app->GetVersion();
        set(ApplicationVersion, u"%1.%2"_s.arg(version[0]).arg(version[1]));
        set(FullVersion, ToText(version));
        set(ApplicationId, ToText(app->GetSecondVersion()));
    }
    if (const QScreen* const screen = QGuiApplication::primaryScreen())
    {
        const QSize pixels = (QSizeF(screen->size()) * screen->devicePixelRatio()).toSize();
        set(ScreenSize, u"%1x%2"_s.arg(pixels.width()).arg(pixels.height()));
    }
    set(Processor, DescribeProcessor());
    if (const QString card = DescribeGraphicsCard(); !card.isEmpty())
        set(GraphicsCard, card);
    if (!country.isEmpty())
        m_backEnd->SetCustomDimension({1, country});
    if (!edition.isEmpty())
        m_backEnd->SetCustomDimension({2, edition});
}

ScopeBase AnalyticsService::OpenPage(const QString& page, const QString& title)
{
    _SendPageView(page, title);
    const int number = ++m_lastNumber;
    m_openPages.push_back({number, m_currentPage});
    return ScopeBase([service = RawPtr<AnalyticsService>(this), number] {
        if (service)
            service->_ClosePage(number);
    });
}

void AnalyticsService::_ClosePage(int number)
{
    const auto closed = std::ranges::find(m_openPages, number, &OpenedPage::number);
    if (closed == m_openPages.end())
        return;
    const bool isCurrent = closed->page == m_currentPage && closed + 1 == m_openPages.end();
    m_openPages.erase(closed);
    if (isCurrent && !m_openPages.empty())
        _SendPageView(m_openPages.back().page);
}

void AnalyticsService::_SendPageView(const QString& page, const QString& title)
{
    m_pageScope.Release();
    m_currentPage = ToPage(page);
    if (_IsSending())
    {
        UAPageviewQuery query(m_currentPage);
        if (!title.isEmpty())
            query.AddQueryItem(u"dt"_s, title);
        m_backEnd->BatchQuery(query, true);
        m_backEnd->SendEvent(PageViewEvent(ToTitle(m_currentPage)));
        _TakeEngagement();
    }
    m_pageScope = ScopeBase([opened = m_currentPage, begin = std::chrono::steady_clock::now()] {
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        App::Log(Log::Verbosity::Info, u"Page %1 left after %2 s"_s.arg(opened).arg(time.count(), 0, 'f', 1));
    });
}

void AnalyticsService::SendEvent(const QString& category, const QString& action, const QString& label,
                                 int value) const
{
    if (!_IsSending())
        return;
    UAEventQuery query(category, action);
    if (!m_currentPage.isEmpty())
        query.SetPage(m_currentPage);
    if (!label.isEmpty())
        query.SetEventLabel(label);
    if (value >= 0)
        query.SetEventValue(value);
    m_backEnd->BatchQuery(query, false);
    OldEvent event(category, action, label, value);
    event.SetEngagement(_TakeEngagement());
    m_backEnd->SendEvent(event);
}

void AnalyticsService::SendTiming(const QString& category, const QString& name,
                                  std::chrono::duration<double, std::milli> duration,
                                  const QString& label) const
{
    if (!_IsSending())
        return;
    UATimingQuery query(category, name, TimingEvent::Truncate(duration.count()));
    if (!label.isEmpty())
        query.SetTimingLabel(label);
    m_backEnd->BatchQuery(query, false);
    m_backEnd->SendEvent(TimingEvent(category, name, duration.count(), label));
    _TakeEngagement();
}

void AnalyticsService::SendCrash() const
{
    if (!_IsSending())
        return;
    const QString page = u"/Crash"_s;
    m_backEnd->BatchQuery(UAPageviewQuery(page), true);
    m_backEnd->SendEvent(PageViewEvent(ToTitle(page)));
    _TakeEngagement();
}

void AnalyticsService::ResetCurrentPage(const QString& page)
{
    m_pageScope.Release();
    m_currentPage = ToPage(page);
    m_openPages.clear();
}

void AnalyticsService::SetDebug(bool isDebug)
{
    if (m_backEnd)
        m_backEnd->SetDebug(isDebug);
}

bool AnalyticsService::IsDebug() const { return m_backEnd && m_backEnd->IsDebug(); }

void AnalyticsService::SetApplicationMode(ApplicationMode mode)
{
    if (!m_backEnd)
        return;
    static constexpr const char* names[] = {"desktop", "touch", "demonstration"};
    const QString name = QLatin1String(names[static_cast<int>(mode)]);
    m_backEnd->SetCustomDimension({3, name});
    m_backEnd->SetUserProperty(u"application_mode"_s, name);
}

void AnalyticsService::Start()
{
    if (m_backEnd)
        m_backEnd->Start();
}

void AnalyticsService::Stop()
{
    if (m_backEnd)
        m_backEnd->Stop();
}

bool AnalyticsService::IsServiceUsed()
{
    const auto services = App::ServicesPtr();
    const auto features = services ? services->Get<App::IAppFeatureService>() : nullptr;
    return features && features->GetValue<bool>(UsedService()).value_or(false);
}

void AnalyticsService::SetServiceUsed(bool isUsed)
{
    auto& features = App::Services().Require<App::IAppFeatureService>();
    features.Declare(UsedService(), false);
    features.SetValue(UsedService(), isUsed);
}

double AnalyticsService::_TakeEngagement() const
{
    const auto now = std::chrono::steady_clock::now();
    return std::chrono::duration<double, std::milli>(now - std::exchange(m_lastReport, now)).count();
}

bool AnalyticsService::_IsSending() const { return m_backEnd && m_canSend && IsServiceUsed(); }

AnalyticsService& GetAnalyticsService()
{
    const auto services = App::ServicesPtr();
    const auto service = services ? services->Get<AnalyticsService>() : nullptr;
    return *service;
}

std::string ToLogText(ApplicationMode mode)
{
    return Details::ToEnumText(mode, ApplicationMode::Desktop, {"Desktop", "Touch", "Demonstration"});
}
} // namespace vek::Analytics
