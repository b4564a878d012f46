#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/LogText.h"
#include <QColor>
#include <QString>
#include <QStringList>
#include <array>

namespace vek::App
{
/// The flavour of a build; any other value is a build without one.
enum class EAppType : int
{
    Development = 0,
    Nightly = 1,
    Beta = 2
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(EAppType type);
using vek::PrintTo;

/// Four numbers, the most significant one first.
using VersionNumber = std::array<int, 4>;

/// Where usage analytics are sent.
struct GoogleAnalytics4DataStream
{
    QString measurementId; ///< "G-..."; without it nothing is sent to the stream.
    QString apiSecret;     ///< Of the stream, not of the user.
};

/// What an application tells the library about itself when it starts. Texts are not translated.
struct AppConfiguration
{
    QString applicationName;  ///< Short name: folders, logs, analytics.
    QString applicationTitle; ///< As shown in the title of the main window.
    QString companyName;      ///< As shown in the about box.
    QString copyright;        ///< As shown in the about box.

    QString splashImage = QStringLiteral("SPLASHIMAGE"); ///< Name of the image's resource.
    QString splashImageFormat = QStringLiteral("PNG");   ///< As QImageReader names it.
    int splashTextTop = 196;                             ///< Of the text on the splash image, in pixels.
    QColor splashTextColor = QColor(150, 150, 150, 255); ///< Of that text.

    QString organizationName = QStringLiteral("Ostrafel"); ///< Qt's organisation name: standard folders.
    /// For settings that the program keeps by itself; GetAppSettings has them under organizationName.
    QString settingsOrganizationName = QStringLiteral("Ostrafel");
    QString organizationDomain; ///< Qt's organisation domain; part of the place of the settings on macOS.

    QStringList fileExtensions; ///< Of the documents that the application opens, without dot.
    QStringList languages;      ///< It is translated into, as "fr" or "pt_BR".
    QStringList sampleFiles;    ///< Offered on the welcome page.

    /// @{
    /// What the program does, which it asks itself; all off unless they are set.
    bool hasSplashScreen = false;
    bool isSingleInstance = false;
    bool acceptsDroppedFiles = false;
    bool restoresWindows = false; ///< Size and place of its windows.
    bool checksForUpdates = false;
    bool sendsUsageStatistics = false;
    bool showsWelcomePage = false;
    bool showsLogPanel = false;
    /// @}

    bool isDevFeatureAllowed = false; ///< Features for developers are on.

    QStringList documentationFiles; ///< Offered in the help menu.
    int shownVersionNumbers = 3;    ///< How many of the four version numbers users see.

    bool isInTouchMode = false; ///< At start.

    QString applicationFile; ///< See GetApplicationPath.
    /// @{
    /// Resources, files and addresses that windows show; empty where there is none.
    QString iconResource;
    QString styleResource;
    QString websiteAddress;
    QString supportAddress;
    /// @}

    QString updateAddress;       ///< Asked for a newer version.
    QString licenseFile;         ///< Shown in the about box.
    QString releaseNotesFile;    ///< Shown after an update.
    QString analyticsTrackingId; ///< Of the Universal Analytics property.
    /// Of the collection host of Google Analytics: scheme, host and, where it is an unusual one, port.
    QString analyticsAddress = QStringLiteral("https://www.google-analytics.com");

    EAppType appType = static_cast<EAppType>(-1); ///< A build without flavour unless it is set.
    VersionNumber version{};                      ///< Of the application.
    VersionNumber secondVersion{};                ///< Of what it is built on: a suite or an installer.
    GoogleAnalytics4DataStream analyticsStream;   ///< Of the GA4 property.
};
} // namespace vek::App
