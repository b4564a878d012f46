#pragma once
#include "VekBase/ScopedTempFolder.h"
#include <QProcess>
#include <QThread>
#include <QUrl>
#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

class QTcpServer;
class QTcpSocket;

/// Servers on loopback, which live as long as these objects.
namespace vek::TestSupport
{
/// Ours, for what a good server does not do. What it answers is in the path: "/echo" gives the bytes of the
/// request, "/status/204" that status, "/hang" nothing, "/close" the end of the connection, "/endless" a body
/// without end, "/late" an answer after a while, "/bytes/e4" these bytes, all others "ok".
class ScriptedServer
{
public:
    ScriptedServer();
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    [[nodiscard]] QUrl GetUrl(const QString& path) const;
    /// The requests as they came over the wire, each with a null character behind it, by connection, in the
    /// order of opening.
    [[nodiscard]] std::vector<QByteArray> GetRequests() const;

    /// From now on no requests are kept.
    void Forget() { m_isForgetful = true; }
    /// From now on nothing is answered.
    void Hang() { m_isHanging = true; }

private:
    void _Serve(QTcpSocket& socket, std::size_t connection);
    void _Answer(QTcpSocket& socket, const QByteArray& request);

    QThread m_thread;
    QTcpServer* m_server; ///< Lives on the thread.
    quint16 m_port = 0;
    std::atomic<bool> m_isHanging = false;
    std::atomic<bool> m_isForgetful = false;
    mutable std::mutex m_mutex;
    std::vector<QByteArray> m_requests; ///< One a connection.
};

/// nginx, with TLS by a certificate made on the spot: "/text", "/empty", "/none" (204), "/bad" (500),
/// "/zipped",
/// "/redirect" to the text, "/loop" to itself, "/insecure" to the text without TLS.
class Nginx
{
public:
    Nginx();
    ~Nginx();
    Nginx(const Nginx&) = delete;
    Nginx& operator=(const Nginx&) = delete;

    /// @param scheme  http or https.
    [[nodiscard]] QUrl GetUrl(const QString& scheme, const QString& path) const;
    /// PEM; of the server and of its authority alike.
    [[nodiscard]] QString GetCertificateFile() const { return m_folder.GetPath() + "/certificate.pem"; }

private:
    [[nodiscard]] bool _Start();

    ScopedTempFolder m_folder;
    QProcess m_process;
    quint16 m_port = 0;
    quint16 m_tlsPort = 0;
};
} // namespace vek::TestSupport
