#include "Network/Servers.h"
#include <QDeadlineTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace vek::TestSupport
{
ScriptedServer::ScriptedServer() : m_server(new QTcpServer)
{
    m_server->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_server, &QObject::deleteLater);
    QObject::connect(m_server, &QTcpServer::newConnection, m_server, [this] {
        while (QTcpSocket* const socket = m_server->nextPendingConnection())
        {
            const std::scoped_lock lock(m_mutex);
            m_requests.emplace_back();
            const std::size_t connection = m_requests.size() - 1;
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [this, socket, connection] { _Serve(*socket, connection); });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    m_thread.start();
    QMetaObject::invokeMethod(
        m_server, [this] { m_port = m_server->listen(QHostAddress::LocalHost) ? m_server->serverPort() : 0; },
        Qt::BlockingQueuedConnection);
}

ScriptedServer::~ScriptedServer()
{
    m_thread.quit();
    m_thread.wait();
}

QUrl ScriptedServer::GetUrl(const QString& path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_port) + path);
}

std::vector<QByteArray> ScriptedServer::GetRequests() const
{
    const std::scoped_lock lock(m_mutex);
    return m_requests;
}

void ScriptedServer::_Serve(QTcpSocket& socket, std::size_t connection)
{
    const QByteArray unread = socket.property("unread").toByteArray() + socket.readAll();
    const qsizetype bodyBegin = unread.indexOf("\r\n\r\n") + 4;
    const qsizetype lengthBegin = unread.toLower().indexOf("content-length: ");
    const qsizetype length = lengthBegin < 0 || lengthBegin > bodyBegin
                                 ? 0
                                 : unread.sliced(lengthBegin + 16).split('\r').front().toLongLong();
    const bool isWhole = bodyBegin > 3 && unread.size() >= bodyBegin + length;
    socket.setProperty("unread", isWhole ? QByteArray() : unread);
    if (!isWhole)
        return;
    if (!m_isForgetful)
    {
        const std::scoped_lock lock(m_mutex);
        m_requests[connection] += unread + '\0';
    }
    if (!m_isHanging)
        _Answer(socket, unread);
}

void ScriptedServer::_Answer(QTcpSocket& socket, const QByteArray& request)
{
    const QByteArray path = request.split(' ').at(1).split('?').front();
    const auto write = [&socket](const QByteArray& status, const QByteArray& body) {
        socket.write("HTTP/1.1 " + status + " Any\r\nContent-Length: " + QByteArray::number(body.size()) +
                     "\r\n\r\n" + body);
    };
    if (path == "/echo")
        write("200", request);
    else if (path.startsWith("/status/"))
        write(path.sliced(8), {});
    else if (path.startsWith("/bytes/"))
        write("200", QByteArray::fromHex(path.sliced(7)));
    else if (path == "/late")
        QTimer::singleShot(20, &socket, [write] { write("200", "late"); });
    else if (path == "/close")
        socket.abort();
    else if (path == "/endless")
    {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        const auto fill = [&socket] { socket.write(QByteArray(1 << 16, 'x')); };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, fill);
        fill();
    }
    else if (path != "/hang")
        write("200", "ok");
}

namespace
{
quint16 FindFreePort()
{
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : 0;
}

bool CanConnect(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    return socket.waitForConnected(1000);
}

QString FindProgram(const QString& name)
{
    const QString found = QStandardPaths::findExecutable(name);
    return found.isEmpty() ? QStandardPaths::findExecutable(name, {"/usr/sbin", "/usr/local/sbin"}) : found;
}
} // namespace

Nginx::Nginx()
{
    QProcess openssl;
    openssl.setWorkingDirectory(m_folder.GetPath());
    openssl.start(
        FindProgram("openssl"),
        QStringLiteral(
            "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -keyout key.pem -out "
            "certificate.pem -days 2 -subj /CN=localhost -addext subjectAltName=IP:127.0.0.1")
            .split(' '));
    openssl.waitForFinished();
    // A port that was free may be taken by another test before nginx has it.
    for (int attempts = 0; attempts < 5; ++attempts)
        if (_Start())
            return;
    throw std::runtime_error("nginx does not start: " + m_process.readAllStandardError().toStdString());
}

bool Nginx::_Start()
{
    m_port = FindFreePort();
    m_tlsPort = FindFreePort();
    QString configuration = QStringLiteral(R"(
daemon off; pid %1/pid; error_log stderr; worker_processes 1;
events {}
http {
    access_log off; default_type text/plain;
    client_body_temp_path %1/a; proxy_temp_path %1/b; fastcgi_temp_path %1/c; uwsgi_temp_path %1/d; scgi_temp_path %1/e;
    keepalive_requests 1000000;
    server {
        listen 127.0.0.1:%2; listen 127.0.0.1:%3 ssl;
        ssl_certificate %1/certificate.pem; ssl_certificate_key %1/key.pem;
        location = /text { return 200 "a text of thirty-two characters."; }
        location = /empty { return 200 ""; }
        location = /none { return 204; }
        location = /bad { return 500; }
        location = /zipped { gzip on; gzip_types text/plain; gzip_min_length 1; return 200 "%4"; }
        location = /redirect { return 302 /text; }
        location = /loop { return 302 /loop; }
        location = /insecure { return 302 http://127.0.0.1:%2/text; }
    }
}
)");
    configuration = configuration.arg(m_folder.GetPath()).arg(m_port).arg(m_tlsPort).arg(QString(1000, 'z'));
    QFile file(m_folder.GetPath() + "/nginx.conf");
    if (!file.open(QIODevice::WriteOnly) || file.write(configuration.toUtf8()) < 0 || !file.flush())
        return false;
    m_process.start(FindProgram("nginx"), {"-p", m_folder.GetPath(), "-e", "stderr", "-c", file.fileName()});
    if (!m_process.waitForStarted())
        return false;
    const QDeadlineTimer deadline(std::chrono::seconds(20));
    while (m_process.state() == QProcess::Running && !deadline.hasExpired())
        if (CanConnect(m_port) && CanConnect(m_tlsPort))
            return true;
        else
            m_process.waitForFinished(1); // takes notice of its end
    return false;
}

Nginx::~Nginx()
{
    m_process.terminate();
    m_process.waitForFinished();
}

QUrl Nginx::GetUrl(const QString& scheme, const QString& path) const
{
    return QUrl(QStringLiteral("%1://127.0.0.1:%2%3")
                    .arg(scheme)
                    .arg(scheme == "https" ? m_tlsPort : m_port)
                    .arg(path));
}
} // namespace vek::TestSupport
