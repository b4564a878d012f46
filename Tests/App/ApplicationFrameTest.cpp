#include "VekAppCore/App/ApplicationFrame.h"
#include "Plugins/IThermometer.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/InitExtension.h"
#include "VekAppCore/App/RegisterService.h"
#include "VekBase/ScopedTempFolder.h"

namespace vek::App
{
TEST(ApplicationFrame, GoesOnWithoutABadPluginAndUnloadsGoodOnesWithoutATrace)
{
    const TestSupport::LogRecorder log;
    const ScopedTempFolder addons;
    TestSupport::WriteFile(addons.GetPath() + "/bad.so", {});
    auto frame = std::make_unique<ApplicationFrame>(AppConfiguration());
    frame->Start(addons.GetPath());
    ASSERT_EQ(log.GetLines().size(), 1U);
    EXPECT_EQ(log.GetLines()[0].verbosity, Log::Verbosity::Warning);
    EXPECT_TRUE(log.GetLines()[0].message.contains("bad.so"));

    frame->LoadPlugin(VEK_FOREIGN_PLUGIN); // no IAppPlugin: there is nothing to initialise
    frame->LoadPlugin(VEK_THERMOMETER_PLUGIN);
    const RawPtr<IThermometer> thermometer = Services().Get<IThermometer>();
    ASSERT_NE(thermometer, nullptr);
    EXPECT_EQ(thermometer->GetManagerSeen(), &Services());
    EXPECT_TRUE(thermometer->IsPluginInitialized());
    EXPECT_NE(DeclarationSystem::GetInstance().FindExtension<IThermometer>(), nullptr);
    frame.reset();
    EXPECT_EQ(thermometer, nullptr);
    EXPECT_EQ(DeclarationSystem::GetInstance().GetExtensionCount(), 0U);
    EXPECT_TRUE(IO::PluginMgr::GetInstance().GetPlugins().empty());
}

TEST(ApplicationFrame, NextOneHasWhatWasDeclaredForTheServicesToo)
{
    struct Shelf final : IService<Shelf>
    {
        void OnNotify() override { DeclarationSystem::GetInstance().RunNew<Shelf>(*this); }
        int books = 0;
    };
    Declaration::RegisterService<Shelf, Shelf>(nullptr);
    DeclarationSystem::GetInstance().Append<Shelf>([](Shelf& shelf) { ++shelf.books; });
    for (const char* frameName : {"first", "second"})
    {
        ApplicationFrame frame{AppConfiguration()};
        frame.Start();
        Services().NotifyServices();
        EXPECT_EQ(Services().Require<Shelf>().books, 1) << frameName;
    }
}
} // namespace vek::App
