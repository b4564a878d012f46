#include "InspectionDesk/InspectionDocument.h"
#include "InspectionDesk/DeskFixture.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QDataStream>
#include <QIODevice>

namespace vek::Desk
{
class InspectionDocumentTest : public DeskFixture
{
protected:
    /// The file as it is meant to be, of a plate of 2 x 2 that lies 5 above the origin.
    static App::VekQVariantMap MakeMap()
    {
        const double points[] = {-1, -1, 0.25, 1, -1, -0.25, 1, 1, 0.25, -1, 1, -0.25};
        App::VekQVariantMap map;
        map.SetValue("{type}", "InspectionDesk.Inspection");
        map.SetValue("Title", "Plate.xyz");
        map.SetValue("Unit", "mm");
        map.SetValue("Centre", QVariantList{0.0, 0.0, 5.0});
        map.SetValue("Normal", QVariantList{0.0, 0.0, 1.0});
        map.SetValue("Points", QByteArray(reinterpret_cast<const char*>(points), sizeof points));
        return map;
    }

    static QByteArray ToBytes(const App::VekQVariant& tree)
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_6_0);
        stream << tree;
        return bytes;
    }

    std::string Refuse(const QByteArray& content) const
    {
        const QString path = Write("a.vekdoc", content);
        return GetRefusal(path, [&] { static_cast<void>(ReadDocument(path, m_progress)); });
    }

    const QByteArray m_golden = ToBytes(App::VekQVariant::From(MakeMap()));
};

TEST_F(InspectionDocumentTest, IsReadAndWrittenAsItIsMeantToBe)
{
    const InspectionDocument document = ReadDocument(Write("a.vekdoc", m_golden), m_progress);
    EXPECT_EQ(document.inspection->centre, Eigen::Vector3d(0, 0, 5));
    EXPECT_EQ(document.inspection->flat.col(1), Eigen::Vector3d(1, -1, -0.25));
    EXPECT_EQ(document.report.GetFigures()[1].second, "0.5000 mm");
    EXPECT_EQ(document.report.GetFigures(Unit::LengthUnit::Inch)[1].second, "0.019685 in");
    {
        const ScopeBase french = StringUtility::ChangeQSystemLocale(QLocale("fr_FR"));
        EXPECT_EQ(document.report.GetFigures(Unit::LengthUnit::Micrometer)[1].second,
                  QStringLiteral(u"500,0 \u00b5m"));
    }
    EXPECT_EQ(document.report.GetFigures()[2].second, "0.2500 mm");

    WriteDocument(m_folder.GetPath() + "/b.vekdoc", document, m_progress);
    EXPECT_EQ(TestSupport::ReadFile(m_folder.GetPath() + "/b.vekdoc"), m_golden);

    App::VekQVariantMap inches = MakeMap();
    inches.SetValue("Unit", "in");
    const auto path = Write("c.vekdoc", ToBytes(App::VekQVariant::From(inches)));
    EXPECT_EQ(ReadDocument(path, m_progress).inspection->flat(2, 0), 25.4 * 0.25);
}

TEST_F(InspectionDocumentTest, BrokenOrForeignFileIsRefused)
{
    const char* const damaged = "the document is cut off or damaged";
    for (qsizetype size = 0; size < m_golden.size(); ++size)
        EXPECT_EQ(Refuse(m_golden.left(size)), damaged) << size;
    EXPECT_EQ(Refuse(m_golden + '\0'), damaged);
    EXPECT_EQ(Refuse("ply\nformat ascii 1.0\n"), "this is no document, or one of a newer version");
    for (const App::VekQVariant& tree : {App::VekQVariant(), App::VekQVariant::From(App::VekQVariantMap())})
        EXPECT_EQ(Refuse(ToBytes(tree)), "this is no document of an inspection");

    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const auto repeat = [](double value) {
        return QByteArray(reinterpret_cast<const char*>(&value), sizeof value).repeated(6);
    };
    const std::tuple<const char*, QVariant, const char*> rows[] = {
        {"{type}", "InspectionDesk.Other", "this is no document of an inspection"},
        {"Title", 1.5, "the document has no valid value \"Title\""},
        {"Unit", "parsec", "the document has no valid value \"Unit\""},
        {"Unit", "END", "the document has no valid value \"Unit\""},
        {"Centre", QVariantList{0.0, 0.0}, "the document has values of a wrong size"},
        {"Normal", QVariantList{0.0, 0.0, "up"}, "the document has no valid value \"Normal\""},
        {"Normal", QVariantList{0.0, 0.0, 0.0}, "the document has points that do not span a plane"},
        {"Centre", QVariantList{notANumber, 0.0, 0.0}, "the document has points that do not span a plane"},
        {"Points", QByteArray(), "the document has values of a wrong size"},
        {"Points", QByteArray(95, '\0'), "the document has values of a wrong size"},
        {"Points", repeat(1.0), "the document has points that do not span a plane"},
        {"Points", repeat(notANumber), "the document has points that do not span a plane"},
        {"Points", repeat(1e200), "the document has points that do not span a plane"}};
    for (const auto& [key, value, reason] : rows)
    {
        App::VekQVariantMap map = MakeMap();
        map.SetValue(QLatin1String(key), value);
        EXPECT_EQ(Refuse(ToBytes(App::VekQVariant::From(map))), reason) << key;
    }
}

TEST_F(InspectionDocumentTest, DocumentOfBeforeStaysWhereWritingFails)
{
    const QString path = Write("a.vekdoc", m_golden);
    InspectionDocument document = ReadDocument(path, m_progress);
    document.title = "Other";
    m_progress.isCanceled = true;
    EXPECT_THROW(WriteDocument(path, document, m_progress), Exception::E_Escape);
    m_progress.isCanceled = false;
    EXPECT_EQ(ReadDocument(path, m_progress).title, "Plate.xyz");
}
} // namespace vek::Desk
