#include "VekAppCore/App/DeclarationSystem.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/FactoryService.h"
#include "VekAppCore/App/RegisterService.h"
#include <gmock/gmock.h>
#include <stdexcept>
#include <vector>

namespace vek::App
{
namespace
{
class IGreeter : public IService<IGreeter>
{};

class Greeter final : public IGreeter
{
public:
    Greeter() { EXPECT_NE(Services().GetService(typeid(IFactoryService)), nullptr); }
    void PostRegistration() { registered += Services().GetService(typeid(IGreeter)) == this ? 1 : 100; }
    static inline int registered = 0;
};
VEK_DECLARE_SERVICE(IGreeter, Greeter);
const unsigned greeterLine = std::source_location::current().line() - 1;

class Faulty final : public IService<Faulty>
{
public:
    Faulty()
    {
        if (isFaulty)
            throw std::runtime_error("no licence");
    }
    static inline bool isFaulty = false;
};
VEK_DECLARE_SERVICE(Faulty, Faulty);

void CreateServices(IServiceManager* manager)
{
    DynamicServicesCreationCtx context{manager};
    DeclarationSystem::GetInstance().RunAll(context);
}
} // namespace

TEST(DeclarationSystem, CreatesTheDeclaredServicesAndTellsThoseThatWereAdded)
{
    const auto manager = CreateServiceManager(true);
    CreateServices(manager.get());
    EXPECT_NE(dynamic_cast<Greeter*>(manager->GetService(typeid(IGreeter))), nullptr);
    EXPECT_EQ(Greeter::registered, 1);
    const IServiceBase* const first = manager->GetService(typeid(IGreeter));
    CreateServices(manager.get());
    EXPECT_EQ(manager->GetService(typeid(IGreeter)), first);
    EXPECT_EQ(Greeter::registered, 1) << "told though it was not added";
}

TEST(DeclarationSystem, AServiceThatCannotBeMadeIsNamedAndItsExceptionPasses)
{
    const TestSupport::LogRecorder log;
    const auto manager = CreateServiceManager(true);
    Faulty::isFaulty = true;
    EXPECT_THROW(CreateServices(manager.get()), std::runtime_error);
    Faulty::isFaulty = false;
    EXPECT_NE(manager->GetService(typeid(IGreeter)), nullptr) << "those before it stay";
    ASSERT_EQ(log.GetLines().size(), 1U);
    EXPECT_EQ(log.GetLines()[0].verbosity, Log::Verbosity::Error);
    EXPECT_THAT(log.GetLines()[0].message.toStdString(),
                testing::AllOf(testing::HasSubstr("Faulty"), testing::HasSubstr("no licence"),
                               testing::HasSubstr("DeclarationSystemTest.cpp")));
}

TEST(DeclarationSystem, WithoutAManagerCreationFails)
{
    EXPECT_THROW(CreateServices(nullptr), Exception::NullptrException);
}

TEST(DeclarationSystem, DeclaringTwiceLeavesOneExtensionPerInterface)
{
    DeclarationSystem& system = DeclarationSystem::GetInstance();
    EXPECT_EQ(system.FindExtension<IGreeter>(), nullptr);
    DynamicServicesDeclarationCtx context;
    system.RunAll(context);
    const RawPtr<DeclarationSystemExtension<IGreeter>> extension = system.FindExtension<IGreeter>();
    const std::size_t count = system.GetExtensionCount();
    ASSERT_NE(extension, nullptr);
    system.RunAll(context);
    EXPECT_EQ(system.FindExtension<IGreeter>(), extension);
    EXPECT_EQ(system.GetExtensionCount(), count);
}

TEST(DeclarationSystem, RunsCallbacksInOrderAndTheNewOnesAlone)
{
    struct Context
    {
        std::vector<int> order;
    };
    DeclarationSystem& system = DeclarationSystem::GetInstance();
    Context context;
    system.RunAll(context);
    system.Append<Context>([&system](Context& running) {
        running.order.push_back(1);
        if (running.order.size() == 1)
            system.Append<Context>([](Context& later) { later.order.push_back(3); });
    });
    system.Append<Context>([](Context& running) { running.order.push_back(2); });
    system.RunAll(context);
    EXPECT_THAT(context.order, testing::ElementsAre(1, 2, 3));
    system.RunNew(context);
    system.Append<Context>([](Context& running) { running.order.push_back(4); });
    system.RunNew(context);
    EXPECT_THAT(context.order, testing::ElementsAre(1, 2, 3, 4));
    system.RunAll(context);
    EXPECT_THAT(context.order, testing::ElementsAre(1, 2, 3, 4, 1, 2, 3, 4));
}

TEST(DeclarationSystem, ListsWhatIsDeclaredByWhomAndHowLongItTook)
{
    const auto find = [](const std::string& context) {
        for (const DeclarationInfo& info : DeclarationSystem::GetInstance().List())
            if (info.context == context && info.declared.ends_with("::Greeter"))
                return info;
        return DeclarationInfo();
    };
    const std::string creation = "vek::App::DynamicServicesCreationCtx";
    EXPECT_THAT(find(creation).by.file_name(), testing::EndsWith("DeclarationSystemTest.cpp"));
    EXPECT_EQ(find(creation).by.line(), greeterLine);
    EXPECT_FALSE(find(creation).duration);
    const auto manager = CreateServiceManager(true);
    CreateServices(manager.get());
    EXPECT_TRUE(find(creation).duration);
}

TEST(DeclarationSystem, DeletesAllExtensionsWithTheirCallbacks)
{
    struct Context
    {};
    const auto kept = std::make_shared<int>();
    DeclarationSystem& system = DeclarationSystem::GetInstance();
    system.Append<Context>([kept](Context&) {});
    system.DeleteAllExtensions();
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_EQ(system.GetExtensionCount(), 0U);
}
} // namespace vek::App
