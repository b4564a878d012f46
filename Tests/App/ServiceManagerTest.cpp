#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/FactoryService.h"
#include <functional>
#include <gmock/gmock.h>

namespace vek::App
{
using Exception::InternalAppException;

class IProbe : public IService<IProbe>
{};

struct Probe final : IProbe
{
    explicit Probe(std::function<void()> toCall = [] {}) : function(std::move(toCall)) {}
    ~Probe() override { function(); }
    void OnNotify() override { function(); }
    std::function<void()> function;
};

static void ExpectNoManager()
{
    EXPECT_EQ(ServicesPtr(), nullptr);
    EXPECT_THAT([] { static_cast<void>(Services()); },
                testing::ThrowsMessage<InternalAppException>("No application instantiated"));
}

TEST(ServiceManager, TheNewestIsCurrentUntilItDies)
{
    ExpectNoManager();
    auto first = CreateServiceManager(true);
    EXPECT_EQ(ServicesPtr().Get(), first.get());
    auto second = CreateServiceManager(false);
    EXPECT_EQ(second->Get<IFactoryService>(), nullptr);
    EXPECT_NE(first->Get<IFactoryService>(), nullptr);
    first.reset();
    EXPECT_EQ(&Services(), second.get());
    second.reset();
    ExpectNoManager();
}

TEST(ServiceManager, TheFirstServiceUnderAKeyStaysUntilItIsRemoved)
{
    const auto manager = CreateServiceManager(false);
    EXPECT_FALSE(manager->AddService(typeid(IProbe), nullptr));
    EXPECT_FALSE(manager->RemoveService(typeid(IProbe)));
    EXPECT_TRUE(manager->AddService(typeid(IProbe), std::make_unique<Probe>()));
    const RawPtr<IProbe> first = manager->Get<IProbe>();
    int deaths = 0;
    EXPECT_FALSE(manager->AddService(typeid(IProbe), std::make_unique<Probe>([&deaths] { ++deaths; })));
    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(manager->AddService(typeid(Probe), std::make_unique<Probe>())) << "keyed by the type named";
    EXPECT_EQ(&manager->Require<IProbe>(), first.Get());

    EXPECT_TRUE(manager->RemoveService(typeid(IProbe)));
    EXPECT_EQ(first, nullptr);
    EXPECT_EQ(manager->Get<IProbe>(), nullptr);
    EXPECT_THAT(([&] { static_cast<void>(manager->Require<IProbe>()); }),
                testing::ThrowsMessage<InternalAppException>(testing::HasSubstr("IProbe")));
}

TEST(ServiceManager, AServiceMayChangeTheRegistryWhileItIsNotifiedOrDies)
{
    auto manager = CreateServiceManager(true);
    int calls = 0;
    const auto change = [&calls, &registry = *manager] {
        registry.RemoveService(typeid(IFactoryService));
        registry.AddService(typeid(int), std::make_unique<Probe>());
        EXPECT_EQ(ServicesPtr() == nullptr, ++calls > 2) << "known only until the services die";
    };
    manager->AddService(typeid(IProbe), std::make_unique<Probe>(change));
    manager->AddService(typeid(Probe), std::make_unique<Probe>(change));
    manager->NotifyServices();
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(manager->Get<IFactoryService>(), nullptr);
    manager.reset();
    EXPECT_EQ(calls, 4);
}

TEST(FactoryService, MakesANewObjectOfTheFirstFactoryEachTime)
{
    const auto manager = CreateServiceManager(true);
    auto& factories = manager->Require<IFactoryService>();
    EXPECT_EQ(factories.Create<IProbe>(), nullptr);
    EXPECT_TRUE((factories.Add<IProbe, Probe>()));
    EXPECT_FALSE((factories.Add<IProbe, IProbe>()));
    const auto object = factories.Create<IProbe>();
    EXPECT_NE(dynamic_cast<Probe*>(object.get()), nullptr);
    EXPECT_NE(factories.Create<IProbe>(), object);
}
} // namespace vek::App
