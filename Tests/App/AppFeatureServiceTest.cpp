#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/IAppFeatureService.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/Settings/AppSettings.h"
#include "VekAppCore/Settings/VekQSettings.h"
#include "VekBase/ScopedTempFolder.h"

namespace vek::App
{
TEST(AppFeatureService, MachineDecidesAboutWhatModulesDeclare)
{
    const ScopedTempFolder folder;
    TestSupport::SetSettingsFolder(folder.GetPath());
    DeclarationSystem::GetInstance().Append<IAppFeatureService>([](IAppFeatureService& declaring) {
        declaring.Declare("Probe/On", true);
        declaring.Declare("Probe/Broken", true);
        declaring.Declare("Probe/Number", 5);
        declaring.Declare("Probe/Number", 6); // the first one stays
    });
    AppConfiguration configuration;
    configuration.applicationName = "Features";
    ApplicationFrame frame(configuration);
    GetAllUsersSettings()->SetValue("AppFeatures/Probe/On", QString("0"));
    GetAllUsersSettings()->SetValue("AppFeatures/Probe/Broken", QString("no"));
    const TestSupport::LogRecorder log;
    frame.Start();
    auto& features = Services().Require<IAppFeatureService>();
    std::vector<QString> changed;
    const Connection connection = features.OnChanged([&](const QString& name) { changed.push_back(name); });
    EXPECT_EQ(features.GetValue<bool>("Probe/On"), false);
    EXPECT_TRUE(features.IsOverridden("Probe/On"));
    EXPECT_EQ(features.GetValue<bool>("Probe/Broken"), false); // to Qt, "no" is true
    EXPECT_THAT(log.GetLines(), testing::Contains(TestSupport::LogLine{
                                    Log::Verbosity::Warning,
                                    "The settings of the machine have no valid feature \"Probe/Broken\""}));
    features.SetValue("Probe/On", true);
    EXPECT_EQ(features.GetValue<bool>("Probe/On"), false);

    EXPECT_EQ(features.GetValue<int>("Probe/Number"), 5);
    EXPECT_EQ(features.GetValue<bool>("Probe/Number"), std::nullopt);
    EXPECT_FALSE(features.IsOverridden("Probe/Number"));
    features.SetValue("Probe/Number", 7);
    features.SetValue("Probe/Number", 7);
    EXPECT_EQ(features.GetValue<int>("Probe/Number"), 7);
    EXPECT_THROW(features.SetValue("Probe/Number", "7"), Exception::WrongTypeException);
    EXPECT_THROW(features.SetValue("Probe/None", 7), Exception::KeyNotFoundException);
    EXPECT_FALSE(features.GetVariant("Probe/None").isValid());
    features.Declare("Probe/New", 1);
    EXPECT_THAT(changed, testing::ElementsAre("Probe/Number", "Probe/New"));
}
} // namespace vek::App
