#include "VekAppCore/App/DeclarationSystem.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/FactoryService.h"
#include "VekAppCore/App/RegisterService.h"
#include <stdexcept>

namespace vek::App
{
class IGreeter : public IService<IGreeter>
{};

struct Greeter final : IGreeter
{
    Greeter() { EXPECT_NE(Services().Get<IFactoryService>(), nullptr); }
    void PostRegistration() { registered += Services().Get<IGreeter>().Get() == this ? 1 : 100; }
    static inline int registered = 0;
};
VEK_DECLARE_SERVICE(IGreeter, Greeter);
const unsigned greeterLine = std::source_location::current().line() - 1;

static void CreateServices(IServiceManager* manager)
{
    DynamicServicesCreationCtx context{manager};
    DeclarationSystem::GetInstance().RunAll(context);
}

TEST(DeclarationSystem, ListsAndCreatesTheDeclaredServicesAndTellsThoseThatWereAdded)
{
    const auto getInfo = [] { return DeclarationSystem::GetInstance().List().end()[-2]; };
    EXPECT_EQ(getInfo().context, "vek::App::DynamicServicesCreationCtx");
    EXPECT_THAT(getInfo().declared, testing::EndsWith("::Greeter"));
    EXPECT_EQ(getInfo().by.line(), greeterLine);
    EXPECT_FALSE(getInfo().duration);
    const auto manager = CreateServiceManager(true);
    CreateServices(manager.get());
    CreateServices(manager.get()); // adds nothing
    EXPECT_NE(dynamic_cast<Greeter*>(manager->GetService(typeid(IGreeter))), nullptr);
    EXPECT_EQ(Greeter::registered, 1);
    EXPECT_TRUE(getInfo().duration);
}

TEST(DeclarationSystem, AServiceThatCannotBeMadeIsNamedAndItsExceptionPasses)
{
    struct Faulty final : IService<Faulty>
    {
        Faulty() { throw std::runtime_error("no licence"); }
    };
    Declaration::RegisterService<Faulty, Faulty>(nullptr);
    const TestSupport::LogRecorder log;
    EXPECT_THROW(CreateServices(nullptr), Exception::NullptrException);
    const auto manager = CreateServiceManager(true);
    EXPECT_THROW(CreateServices(manager.get()), std::runtime_error);
    EXPECT_NE(manager->Get<IGreeter>(), nullptr) << "those before it stay";
    ASSERT_EQ(log.GetLines().size(), 1U);
    EXPECT_EQ(log.GetLines()[0].verbosity, Log::Verbosity::Error);
    EXPECT_THAT(log.GetLines()[0].message.toStdString(),
                testing::ContainsRegex("Faulty.*DeclarationSystemTest.cpp:[0-9]+: no licence"));
}

TEST(DeclarationSystem, DeclaringTwiceLeavesOneExtensionPerInterfaceUntilAllAreDeleted)
{
    DeclarationSystem& system = DeclarationSystem::GetInstance();
    DynamicServicesDeclarationCtx context;
    system.RunAll(context);
    const auto kept = std::make_shared<int>();
    system.Append<IGreeter>([kept](IGreeter&) {});
    const auto extension = system.FindExtension<IGreeter>();
    const std::size_t count = system.GetExtensionCount();
    system.RunAll(context);
    EXPECT_EQ(system.FindExtension<IGreeter>(), extension);
    EXPECT_EQ(system.GetExtensionCount(), count);

    system.DeleteAllExtensions();
    EXPECT_EQ(extension, nullptr);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(DeclarationSystem, RunsCallbacksInOrderAndTheNewOnesAlone)
{
    DeclarationSystem& system = DeclarationSystem::GetInstance();
    std::string order;
    system.RunAll(order); // nothing declared
    const auto append = [&](char name) { system.Append<std::string>([name](auto& text) { text += name; }); };
    system.Append<std::string>([&](std::string& text) {
        if ((text += 'a') == "a")
            append('c');
    });
    append('b');
    system.RunAll(order);
    EXPECT_EQ(order, "abc");
    append('d');
    system.RunNew(order);
    EXPECT_EQ(order, "abcd");
    system.RunAll(order);
    EXPECT_EQ(order, "abcdabcd");
}
} // namespace vek::App
