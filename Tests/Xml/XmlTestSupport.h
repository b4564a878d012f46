#pragma once
#include "VekAppCore/Xml/XmlException.h"
#include <QFileInfo>
#include <functional>
#include <gtest/gtest.h>

namespace vek::TestSupport
{
/// What @p function throws: "message @line element file"; empty for nothing. It must carry the caller's file.
inline std::string GetFailure(const std::function<void()>& function,
                              const std::source_location& caller = std::source_location::current())
{
    try
    {
        function();
        return {};
    }
    catch (const XmlException& exception)
    {
        EXPECT_STREQ(exception.GetLocation().file_name(), caller.file_name());
        const auto& [line, element, path] = exception.GetPlace();
        QStringList parts{exception.what(), u'@' + QString::number(line), element,
                          QFileInfo(path).fileName()};
        parts.removeAll(QString());
        return parts.join(u' ').toStdString();
    }
}
} // namespace vek::TestSupport
