// VariantDump FILE: shows a saved variant, map or list. The exit code is 0, 1 where two files differ, 2 where
// one is broken or cannot be read.
#include "VariantDump/SavedStream.h"
#include "VekAppCore/Data/VariantJson.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDataStream>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <cstdio>

namespace vek::VariantDump
{
namespace
{
constexpr int differs = 1;
constexpr int broken = 2;
constexpr qint64 mostBytes = qint64(1) << 30;

void Print(std::FILE* out, const QString& line) { std::fputs((line + '\n').toLocal8Bit().constData(), out); }

std::optional<QByteArray> ReadFile(const QString& name)
{
    QFile file(name);
    if (!(name == "-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly)))
    {
        Print(stderr, name + ": " + file.errorString());
        return std::nullopt;
    }
    QByteArray bytes = file.read(mostBytes + 1);
    if (bytes.size() > mostBytes)
    {
        Print(stderr, name + ": more than 1 GiB");
        return std::nullopt;
    }
    return bytes;
}

/// What cannot be understood is empty, and said.
std::optional<Reading> GetReading(const QString& kind, const QString& version)
{
    static const std::map<QString, EKind> kinds{
        {"variant", EKind::Variant}, {"map", EKind::Map}, {"list", EKind::List}};
    static const std::map<QString, int> versions{{"qt5", QDataStream::Qt_5_15}, {"qt6", QDataStream::Qt_6_0}};
    Reading reading;
    if (const auto found = kinds.find(kind); found != kinds.end())
        reading.kind = found->second;
    if (const auto found = versions.find(version); found != versions.end())
        reading.streamVersion = found->second;
    if ((!kind.isEmpty() && !reading.kind) || (!version.isEmpty() && !reading.streamVersion))
    {
        Print(stderr, "The kind is variant, map or list, the stream version qt5 or qt6");
        return std::nullopt;
    }
    return reading;
}

void PrintJson(const App::VekQVariant& tree)
{
    const App::VariantJson json = App::ToJson(tree);
    // In an array, since a document of Qt's holds no single value.
    const QByteArray text = QJsonDocument(QJsonArray{json.value}).toJson(QJsonDocument::Compact);
    Print(stdout, QString::fromUtf8(text.sliced(1, text.size() - 2)));
    for (const QString& loss : json.losses)
        Print(stderr, loss);
}

int Run(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Shows a saved variant, map or list.");
    parser.addHelpOption();
    parser.addPositionalArgument("file", "What to show; - for standard input.");
    const QCommandLineOption json("json", "Shows it as JSON; what has no place there is told.");
    const QCommandLineOption compare("compare", "Tells what differs from another file.", "file");
    const QCommandLineOption kind("kind", "variant, map or list; else found out.", "kind");
    const QCommandLineOption version("stream-version", "qt5 or qt6; else found out.", "version");
    parser.addOptions({json, compare, kind, version});
    parser.process(arguments);
    const auto reading = GetReading(parser.value(kind), parser.value(version));
    if (parser.positionalArguments().size() != 1 || !reading)
        parser.showHelp(broken);

    bool isBroken = false;
    const auto read = [&](const QString& name) {
        const auto bytes = ReadFile(name);
        SavedStream saved = bytes ? Read(*bytes, *reading) : SavedStream();
        isBroken = isBroken || !bytes || !saved.problem.isEmpty();
        if (!saved.problem.isEmpty())
            Print(stderr, name + ": " + saved.problem);
        return saved.tree;
    };
    const App::VekQVariant tree = read(parser.positionalArguments().front());
    QStringList lines;
    if (parser.isSet(compare))
        lines = Compare(tree, read(parser.value(compare)));
    else if (parser.isSet(json))
        PrintJson(tree);
    else
        lines = ToLines(tree);
    for (const QString& line : lines)
        Print(stdout, line);
    if (isBroken)
        return broken;
    return parser.isSet(compare) && !lines.isEmpty() ? differs : 0;
}
} // namespace
} // namespace vek::VariantDump

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return vek::VariantDump::Run(QCoreApplication::arguments());
}
