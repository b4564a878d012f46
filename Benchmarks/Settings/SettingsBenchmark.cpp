#include "Support/Pair.h"
#include "VekAppCore/Settings/VekQSettings.h"
#include <QFile>
#include <QTemporaryDir>

namespace vek::App
{
namespace
{
using Benchmark::Check;

constexpr int valueCount = 1000;

QString GetKey(int i) { return QStringLiteral("group%1/key%2").arg(i / 50).arg(i % 50); }

/// A folder for the stores of a measurement.
struct Place
{
    Place() { QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path()); }
    QTemporaryDir folder;
};

struct Vek
{
    VekQSettings store{QSettings::IniFormat, QSettings::UserScope, "Benchmark", "Vek"};
    void Set(const QString& key, double value) { store.SetValue(key, value); }
    double Get(const QString& key) { return store.GetValue(key, -1.0); }
};

struct Qt
{
    QSettings store{QSettings::IniFormat, QSettings::UserScope, "Benchmark", "Qt"};
    void Set(const QString& key, double value) { store.setValue(key, value); }
    double Get(const QString& key) { return store.value(key, -1.0).toDouble(); }
};

template <typename Store>
void WriteAll(double first)
{
    Store store;
    for (int i = 0; i < valueCount; ++i)
        store.Set(GetKey(i), first + i * 0.5);
}

template <typename Store>
double ReadAll()
{
    Store store;
    double sum = 0;
    for (int i = 0; i < valueCount; ++i)
        sum += store.Get(GetKey(i));
    return sum;
}

constexpr double sumOfHalves = valueCount * (valueCount - 1) / 4.0;

/// A round: a store is opened, its values set and written to the file.
template <typename Store>
void Write1000(benchmark::State& state)
{
    const Place place;
    double first = 0;
    for ([[maybe_unused]] auto _ : state)
        WriteAll<Store>(++first);
    Check(state, ReadAll<Store>() == sumOfHalves + valueCount * first, "A value is wrong");
}

/// A round: a store is opened and its values read.
template <typename Store>
void Read1000(benchmark::State& state)
{
    const Place place;
    WriteAll<Store>(0);
    double sum = 0;
    for ([[maybe_unused]] auto _ : state)
        sum = ReadAll<Store>();
    Check(state, sum == sumOfHalves, "A value is wrong");
}

const Benchmark::Pairs pairs{{"Settings/Write1000", "QSettings", 0.9, &Write1000<Vek>, &Write1000<Qt>},
                             {"Settings/Read1000", "QSettings", 0.9, &Read1000<Vek>, &Read1000<Qt>}};
} // namespace
} // namespace vek::App
