#include "VekAppCore/Xml/XmlDescription.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/Xml/IXmlValidatorService.h"
#include <QColor>
#include <gmock/gmock.h>

namespace vek
{
namespace
{
[[maybe_unused]] const bool isDeclared = [] {
    App::DeclarationSystem::GetInstance().Append<IXmlValidatorService>([](IXmlValidatorService& validator) {
        validator.Declare(XmlDescription("wrong"));
        validator.Declare(XmlDescription("plate")
                              .Attribute<int>("number")
                              .OptionalAttribute<Unit::Length>("width")
                              .OptionalAttribute<QVariant>("any")
                              .Child(XmlDescription("title").Value<QString>())
                              .Child(XmlDescription("remark").OptionalValue<int>(), 0)
                              .Child(XmlDescription("note").Value<int>(), 0)
                              .Child(XmlDescription("colour").Value<QColor>().Attribute<bool>("on"), 1, 2)
                              .Child(XmlDescription("point").Value<Triplet>(), 3, XmlDescription::anyNumber));
    });
    return true;
}();
} // namespace

TEST(XmlValidatorService, ReportsAllThatIsNotAsDescribed)
{
    App::ApplicationFrame frame{App::AppConfiguration()};
    frame.Start();
    const auto& validator = App::Services().Require<IXmlValidatorService>();
    const auto validate = [&validator](const QString& text) {
        std::vector<std::string> messages;
        for (const XmlFinding& finding : validator.Validate(XmlDocument::FromString(text), "plate"))
        {
            messages.push_back(finding.message.toStdString());
            EXPECT_EQ(finding.line, finding.message.startsWith("Line ")
                                        ? finding.message.section(' ', 1, 1).chopped(1).toInt()
                                        : 0);
        }
        return messages;
    };
    const QString points = QString("<point x='1' y='2' z='3' unit='mm'/>").repeated(3);
    const QString title = "<title>t</title>";
    const QString colour = "<colour r='1' g='2' b='3' on='1'/>";
    EXPECT_THAT(validate("<plate number='1' any='1' Type='int'>" + points + colour + title + "</plate>"),
                testing::IsEmpty());
    EXPECT_THAT(validate("<plate number='1' width='1 mm'>" + colour.repeated(2) + title +
                         "<note>1</note><remark/>" + points.repeated(9) + "</plate>"),
                testing::IsEmpty());
    EXPECT_THAT(validate("<other/>"),
                testing::ElementsAre("Xml document does not contain the root element: <plate>"));
    EXPECT_THAT(
        validate(
            "<plate number='x' width='1' more=''>\n" + colour + "\n<note>x</note><note>1</note>\n" + colour +
            "<new/>\n" + colour +
            "\n<colour r='1' on='1' x='1'>t</colour><title/>\n<point x='1' y='2' z='3'><a/></point>text</plate>"),
        testing::ElementsAre(
            "Line 1: <plate> wrong attribute cast <number>", "Line 1: <plate> wrong attribute cast <width>",
            "Line 1: <plate>: the attribute <more> is not expected", "Line 1: <plate>: no text is expected",
            "Line 1: <plate>: it has 1 <point>; at least 3 expected", "Line 3: <note> bad cast",
            "Line 3: <note>: one too many: at most 1 expected", "Line 4: <new>: this element is not expected",
            "Line 5: <colour>: one too many: at most 2 expected",
            "Line 6: <colour>: the attribute <x> is not expected",
            "Line 6: <colour> unable to retrieve the value", "Line 6: <colour>: no text is expected",
            "Line 6: <title> doesn't contain value", "Line 7: <a>: this element is not expected"));
    EXPECT_THAT(validate("<plate>\n</plate>"),
                testing::ElementsAre("Line 1: <plate> does not contain the attribute <number>",
                                     "Line 1: <plate> does contain the child <title>",
                                     "Line 1: <plate> does contain the child <colour>",
                                     "Line 1: <plate> does contain any child <point>"));
    EXPECT_THAT(validate("<plate number='1'>text" + points + colour + title + "</plate>"),
                testing::ElementsAre("Line 1: <plate>: no text is expected"));
    EXPECT_THAT(
        validate("<plate number='1'><remark>x</remark>" + points + colour + title + "</plate><plate/>"),
        testing::ElementsAre("Line 1: <remark> bad cast", "Line 1: <plate>: this element is not expected"));
    EXPECT_THROW(static_cast<void>(validator.Validate(XmlDocument(), "none")),
                 Exception::KeyNotFoundException);
}
} // namespace vek
