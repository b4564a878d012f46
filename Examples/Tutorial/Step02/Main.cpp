#include <QFile>
#include <VekAppCore/VekAppCore.h>
#include <VekAppCore/Widgets.h>
#include <cstdio>

using namespace vek;

namespace
{
using Lengths = std::vector<Unit::Length>;

/// Reads measured lengths from files.
class LengthReader final : public App::IService<LengthReader>
{
public:
    /// Any thread.
    Lengths Read(const QString& path) const
    {
        Lengths lengths;
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            for (const QByteArray& line : file.readAll().trimmed().split('\n'))
                if (Unit::Length length; Convert::FromString(QString::fromUtf8(line), length))
                    lengths.push_back(length);
        return lengths;
    }
};
VEK_DECLARE_SERVICE(LengthReader, LengthReader);
} // namespace

int main(int argc, char** argv)
{
    const App::VekQApplication application(argc, argv);
    App::AppConfiguration configuration;
    configuration.applicationName = "Gauge";
    App::ApplicationFrame frame(configuration);
    frame.Start();

    for (const Unit::Length& length :
         App::Services().Require<LengthReader>().Read(application.arguments().value(1)))
        std::puts(qUtf8Printable(Convert::ToString(length)));
}
