#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrlQuery>
#include <cstdio>

/// Shows the usage statistics that a program sends, so that one can watch them; it keeps nothing.
namespace
{
using namespace Qt::StringLiterals;

constexpr qint64 mostBytes = 16 * 1024 * 1024; // of a request: nobody is trusted

void Print(const QString& text)
{
    std::fputs(qUtf8Printable(text + u'\n'), stdout);
    std::fflush(stdout);
}

void ShowItems(const QUrlQuery& query, const QString& indent)
{
    for (const auto& [key, value] : query.queryItems(QUrl::FullyDecoded))
        Print(u"%1%2 = %3"_s.arg(indent, key, value));
}

void ShowRequest(const QByteArray& target, const QByteArray& body)
{
    const QUrl url(QString::fromLatin1(target));
    Print(u"%1 (%2 bytes)"_s.arg(url.path()).arg(body.size()));
    if (url.path().endsWith(u"/mp/collect"))
    {
        ShowItems(QUrlQuery(url), u"  "_s);
        Print(QString::fromUtf8(QJsonDocument::fromJson(body).toJson()));
        return;
    }
    for (const QByteArray& line : body.split('\n'))
    {
        ShowItems(QUrlQuery(QString::fromLatin1(line)), u"  "_s);
        Print({});
    }
}

/// Takes what is whole from the front of @p unread and answers it.
/// @return false for what is no request that can be read.
bool Serve(QTcpSocket& socket, QByteArray& unread)
{
    for (;;)
    {
        const qsizetype headEnd = unread.indexOf("\r\n\r\n");
        if (headEnd < 0)
            return unread.size() < mostBytes;
        const QByteArrayList lines = unread.first(headEnd).split('\n');
        const QByteArrayList words = lines.front().split(' ');
        qint64 length = 0;
        for (const QByteArray& line : lines)
            if (line.toLower().startsWith("content-length:"))
                length = line.sliced(15).trimmed().toLongLong();
        if (words.size() < 3 || length < 0 || length > mostBytes)
            return false;
        const qsizetype end = headEnd + 4 + length;
        if (unread.size() < end)
            return true;
        ShowRequest(words[1], unread.sliced(headEnd + 4, length));
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
        unread.remove(0, end);
    }
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        u"Shows the usage statistics that are sent to it, on this computer only."_s);
    arguments.addOption(
        {u"port"_s, u"Listen on <port>; 8080 unless given, 0 for any free one."_s, u"port"_s, u"8080"_s});
    arguments.addHelpOption();
    arguments.process(application);

    QTcpServer server;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&server] {
        while (QTcpSocket* const socket = server.nextPendingConnection())
        {
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [socket, unread = QByteArray()]() mutable {
                                 unread += socket->readAll();
                                 if (!Serve(*socket, unread))
                                     socket->abort();
                             });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    if (!server.listen(QHostAddress::LocalHost, arguments.value(u"port"_s).toUShort()))
    {
        std::fprintf(stderr, "Port %s: %s\n", qPrintable(arguments.value(u"port"_s)),
                     qPrintable(server.errorString()));
        return 1;
    }
    Print(u"Listening on http://127.0.0.1:%1"_s.arg(server.serverPort()));
    return QCoreApplication::exec();
}
