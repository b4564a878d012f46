#pragma once
#include <QByteArray>
#include <QString>
#include <VekAppCore/App/ServiceBase.h>
#include <VekAppCore/Text/Unit.h>
#include <VekAppCore/Threading/IProgression.h>
#include <functional>
#include <vector>

using Lengths = std::vector<vek::Unit::Length>;

/// Reads measured lengths from files, in formats that modules add.
class ILengthReader : public vek::App::IService<ILengthReader>
{
public:
    /// Reads the content of a file. Called on any thread.
    using Format =
        std::function<Lengths(const QByteArray& content, vek::Threading::IProgression& progression)>;

    /// @param suffix  of the files, without dot.
    virtual void AddFormat(const QString& suffix, Format format) = 0;

    /// Any thread.
    [[nodiscard]] virtual Lengths Read(const QString& path,
                                       vek::Threading::IProgression& progression) const = 0;
};
