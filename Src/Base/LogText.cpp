#include "VekBase/LogText.h"
#include <QDebug>
#include <ostream>

namespace vek::Details
{
void WriteLogText(QDebug& debug, const std::string& text)
{
    const QDebugStateSaver saver(debug);
    debug.noquote() << QString::fromStdString(text);
}

void WriteLogText(std::ostream& stream, const std::string& text) { stream << text; }
} // namespace vek::Details
