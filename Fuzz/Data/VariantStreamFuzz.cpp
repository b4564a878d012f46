// Reads any bytes as a saved variant, map or list. What could be read can be written and read again.
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>
#include <cstdint>
#include <cstdlib>

namespace
{
template <typename T>
QByteArray Write(const T& value, int version)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream << value;
    return bytes;
}

template <typename T>
bool Read(T& value, const QByteArray& bytes, int version)
{
    QDataStream stream(bytes);
    stream.setVersion(version);
    try
    {
        stream >> value;
    }
    catch (const vek::Exception::WrongVersionException&)
    {
        return false;
    }
    return stream.status() == QDataStream::Ok;
}

template <typename T>
void Check(const QByteArray& bytes, int version)
{
    T value;
    T back;
    // Not with the same bytes: Qt does not write every date as it has read it.
    if (Read(value, bytes, version) && !Read(back, Write(value, version), version))
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(*argc, *argv); // some types need one
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const int version = data[0] % 2 == 0 ? QDataStream::Qt_5_15 : QDataStream::Qt_6_0;
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size) - 1);
    switch (data[0] / 2 % 3)
    {
    case 0: Check<vek::App::VekQVariant>(bytes, version); break;
    case 1: Check<vek::App::VekQVariantMap>(bytes, version); break;
    default: Check<vek::App::VekQVariantList>(bytes, version); break;
    }
    return 0;
}
