#pragma once
#include "VekAppCore/Export.h"
#include <QString>
#include <QUrl>
#include <exception>
#include <string>

namespace vek::Network
{
/// Why a request got no answer; what() is the text, UTF-8.
class VEKAPPCORE_EXPORT HttpException : public std::exception
{
public:
    /// @param text  of the network; not translated.
    /// @param statusCode  of HTTP; 0 where no answer came.
    /// @param errorCode  a QNetworkReply::NetworkError.
    explicit HttpException(QString text, QUrl url = {}, int statusCode = 0, int errorCode = 0);
    ~HttpException() override;
    HttpException(const HttpException&) = default;
    HttpException& operator=(const HttpException&) = default;

    [[nodiscard]] const char* what() const noexcept override { return m_what.c_str(); }
    /// As it was given to the constructor.
    [[nodiscard]] const QString& GetText() const noexcept { return m_text; }
    /// After redirections.
    [[nodiscard]] const QUrl& GetUrl() const noexcept { return m_url; }
    /// Of HTTP; 0 where no answer came.
    [[nodiscard]] int GetStatusCode() const noexcept { return m_statusCode; }
    /// A QNetworkReply::NetworkError.
    [[nodiscard]] int GetErrorCode() const noexcept { return m_errorCode; }

private:
    QString m_text;
    QUrl m_url;
    int m_statusCode;
    int m_errorCode;
    std::string m_what;
};
} // namespace vek::Network
