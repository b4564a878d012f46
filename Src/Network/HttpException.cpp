#include "VekAppCore/Network/HttpException.h"
#include <utility>

namespace vek::Network
{
HttpException::HttpException(QString text, QUrl url, int statusCode, int errorCode)
    : m_text(std::move(text)),
      m_url(std::move(url)),
      m_statusCode(statusCode),
      m_errorCode(errorCode),
      m_what(m_text.toStdString())
{}

HttpException::~HttpException() = default;
} // namespace vek::Network
