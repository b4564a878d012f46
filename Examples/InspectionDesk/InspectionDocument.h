#pragma once
#include "InspectionDesk/IPlaneFitter.h"
#include <memory>

/// Results kept in files: the stream of one tree, a map of the type "InspectionDesk.Inspection". Any thread.
namespace vek::Desk
{
struct InspectionDocument
{
    QString title;
    std::shared_ptr<const Inspection> inspection; ///< Null for what was read from a report.
    InspectionReport report;
};

/// With the report of the inspection, but for its legend.
[[nodiscard]] InspectionDocument MakeDocument(const QString& title, Inspection inspection);

/// Without dot.
constexpr QLatin1String documentExtension("vekdoc");

/// The file is one of these, by its extension.
[[nodiscard]] bool IsDocument(const QString& path);

/// What was in the file stays unless all of the document has been written.
/// @param document  with an inspection.
/// @throws Exception::AppException  it cannot be written; the message names the file.
void WriteDocument(const QString& path, const InspectionDocument& document,
                   Threading::IProgression& progression);

/// @throws Exception::AppException  it cannot be read, or what is in it is no whole result; the message names
/// the file.
[[nodiscard]] InspectionDocument ReadDocument(const QString& path, Threading::IProgression& progression);
} // namespace vek::Desk
