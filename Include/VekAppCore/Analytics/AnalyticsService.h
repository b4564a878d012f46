#pragma once
#include "VekAppCore/Analytics/GoogleAnalyticsService.h"
#include "VekAppCore/App/AppConfiguration.h"
#include "VekAppCore/App/ServiceBase.h"
#include "VekBase/LogText.h"
#include "VekBase/ScopeBase.h"
#include "VekBase/Signal.h"
#include <chrono>
#include <memory>
#include <vector>

namespace vek::Analytics
{
/// How the application is run; sent with every report once it is set.
enum class ApplicationMode
{
    Desktop,
    Touch,
    Demonstration,
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(ApplicationMode mode);
using vek::PrintTo;

/// The application's usage statistics: pages, events and timings. Every report goes out twice, as a Universal
/// Analytics query and as a GA4 event. Nothing leaves the machine unless the feature
/// "AnalyticsService/UsedService" is true; see SetServiceUsed. Main thread only.
class VEKAPPCORE_EXPORT AnalyticsService final : public App::IService<AnalyticsService>
{
public:
    AnalyticsService();
    /// As Stop.
    ~AnalyticsService() override;

    /// Makes the back end and starts it.
    void PostRegistration();
    /// Takes the HTTP service and the features.
    void OnNotify() override;

    /// Fills in what is sent with every report. It takes a few milliseconds.
    /// @param language  of the user interface.
    /// @param country  of the user; may be empty.
    /// @param edition  of the application; may be empty.
    /// @param clientId  a random number of this installation.
    /// @throws NullptrException  there is no back end.
    void InitializeService(const App::GoogleAnalytics4DataStream& stream, const QString& trackingId,
                           const QString& language, const QString& country, const QString& edition,
                           const QString& clientId);

    /// Reports that the user is on this page now; "/" is put in front where it is missing.
    /// @param title  for people; may be empty.
    /// @return the page is open while it lives; where it is the current one then, the last one before it that
    /// is still open becomes current again, and is reported.
    [[nodiscard]] ScopeBase OpenPage(const QString& page, const QString& title = {});
    /// @param label  may be empty.
    /// @param value  is left out when it is negative.
    void SendEvent(const QString& category, const QString& action, const QString& label = {},
                   int value = -1) const;
    /// @param label  may be empty.
    void SendTiming(const QString& category, const QString& name,
                    std::chrono::duration<double, std::milli> duration, const QString& label = {}) const;
    /// Opens the page "/Crash" and sends all that is pending.
    void SendCrash() const;

    /// Begins with "/", or is empty before the first page.
    [[nodiscard]] QString CurrentPage() const { return m_currentPage; }
    /// Sets it without a report, and forgets which pages are open.
    void ResetCurrentPage(const QString& page);

    /// @{
    /// As those of GoogleAnalyticsService; nothing, and false, before PostRegistration.
    void SetDebug(bool isDebug);
    [[nodiscard]] bool IsDebug() const;
    /// @}

    /// Goes with every report from now on; dropped before PostRegistration.
    void SetApplicationMode(ApplicationMode mode);

    /// Begins to send; PostRegistration does it.
    void Start();
    /// Sends what is pending; takes 200 ms at most.
    void Stop();

    /// The feature "AnalyticsService/UsedService"; false where it is not defined.
    [[nodiscard]] static bool IsServiceUsed();
    /// The user agrees, or no longer: sets the feature, for this run; the application keeps the choice.
    /// Withdrawing drops what is pending.
    void SetServiceUsed(bool isUsed);

    /// Null before PostRegistration.
    [[nodiscard]] GoogleAnalyticsService* GetBackEnd() const { return m_backEnd.get(); }

private:
    struct OpenedPage
    {
        int number;
        QString page;
    };

    void _ClosePage(int number);
    void _SendPageView(const QString& page, const QString& title = {});
    /// Since the report before this one, in milliseconds.
    double _TakeEngagement() const;
    void _FollowConsent();
    [[nodiscard]] bool _IsSending() const;

    std::unique_ptr<GoogleAnalyticsService> m_backEnd;
    QString m_currentPage;
    std::vector<OpenedPage> m_openPages; ///< The last one opened at the end.
    int m_lastNumber = 0;
    ScopeBase m_pageScope; ///< Runs when the page is left.
    Connection m_featureChanged;
    bool m_canSend = false; ///< There is an HTTP service, and an address.
    mutable std::chrono::steady_clock::time_point m_lastReport = std::chrono::steady_clock::now();
};

/// @throws NullptrException  there is no such service.
[[nodiscard]] VEKAPPCORE_EXPORT AnalyticsService& GetAnalyticsService();
} // namespace vek::Analytics
