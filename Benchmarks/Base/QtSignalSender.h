#pragma once
#include <QObject>

namespace vek
{
/// The peer of vek::Signal. In a header that includes Qt only: moc 6.4 does not understand concepts.
class QtSignalSender : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void Changed(int value);
};
} // namespace vek
