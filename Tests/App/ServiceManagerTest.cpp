#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/FactoryService.h"
#include <gmock/gmock.h>
#include <string>

namespace vek::App
{
namespace
{
class IProbe : public IService<IProbe>
{
public:
    virtual int GetValue() const = 0;
};

class Probe final : public IProbe
{
public:
    explicit Probe(int value, int* deaths = nullptr, std::function<void()> onNotify = {})
        : m_value(value), m_deaths(deaths), m_onNotify(std::move(onNotify))
    {}
    ~Probe() override
    {
        if (m_deaths)
            ++*m_deaths;
    }
    int GetValue() const override { return m_value; }
    void OnNotify() override
    {
        if (m_onNotify)
            m_onNotify();
    }

private:
    int m_value;
    int* m_deaths;
    std::function<void()> m_onNotify;
};

std::string GetMessageWithoutManager()
{
    try
    {
        static_cast<void>(Services());
    }
    catch (const Exception::InternalAppException& exception)
    {
        EXPECT_THAT(exception.GetLocation().file_name(), testing::HasSubstr("ServiceManager"));
        EXPECT_THAT(exception.GetLocation().function_name(), testing::HasSubstr("Services"));
        return exception.what();
    }
    return {};
}
} // namespace

TEST(ServiceManager, WithoutOneServicesThrowsAndServicesPtrIsNull)
{
    EXPECT_EQ(GetMessageWithoutManager(), "No application instantiated");
    EXPECT_EQ(ServicesPtr(), nullptr);
    auto manager = CreateServiceManager(false);
    EXPECT_EQ(&Services(), manager.get());
    const RawPtr<IServiceManager> kept = ServicesPtr();
    EXPECT_EQ(kept.Get(), manager.get());
    manager.reset();
    EXPECT_EQ(kept, nullptr);
    EXPECT_EQ(GetMessageWithoutManager(), "No application instantiated");
}

TEST(ServiceManager, TheFirstRegistrationWins)
{
    const auto manager = CreateServiceManager(false);
    int deaths = 0;
    EXPECT_TRUE(manager->AddService(typeid(IProbe), std::make_unique<Probe>(1)));
    EXPECT_FALSE(manager->AddService(typeid(IProbe), std::make_unique<Probe>(2, &deaths)));
    EXPECT_EQ(deaths, 1);
    EXPECT_FALSE(manager->AddService(typeid(Probe), nullptr));
    EXPECT_EQ(manager->GetService(typeid(Probe)), nullptr);
    EXPECT_TRUE(manager->AddService(typeid(Probe), std::make_unique<Probe>(3)))
        << "the key is the interface named";
    EXPECT_EQ(manager->Require<IProbe>().GetValue(), 1);
    EXPECT_EQ(manager->Require<Probe>().GetValue(), 3);
}

TEST(ServiceManager, ARemovedServiceIsDeadForItsHolders)
{
    const auto manager = CreateServiceManager(false);
    int deaths = 0;
    manager->AddService(typeid(IProbe), std::make_unique<Probe>(1, &deaths));
    const RawPtr<IProbe> probe = manager->Get<IProbe>();
    EXPECT_EQ(probe->GetValue(), 1);
    EXPECT_TRUE(manager->RemoveService(typeid(IProbe)));
    EXPECT_FALSE(manager->RemoveService(typeid(IProbe)));
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(probe, nullptr);
    EXPECT_THROW(static_cast<void>(probe->GetValue()), Exception::NullptrException);
    EXPECT_EQ(manager->Get<IProbe>(), nullptr);
}

TEST(ServiceManager, RequireNamesTheMissingInterfaceAtTheCallersLine)
{
    const auto manager = CreateServiceManager(false);
    const auto line = std::source_location::current().line() + 3;
    try
    {
        static_cast<void>(manager->Require<IProbe>());
        FAIL();
    }
    catch (const Exception::InternalAppException& exception)
    {
        EXPECT_THAT(exception.what(), testing::HasSubstr("IProbe"));
        EXPECT_EQ(exception.GetLocation().line(), line);
    }
}

TEST(ServiceManager, AServiceMayChangeTheRegistryWhileItIsNotifiedOrDies)
{
    auto manager = CreateServiceManager(true);
    int notified = 0;
    const auto notify = [&] {
        ++notified;
        manager->RemoveService(typeid(IFactoryService));
        for (int i = 0; i < 100; ++i) // rehashes
            manager->AddService(typeid(int[1]), std::make_unique<Probe>(i));
    };
    manager->AddService(typeid(IProbe), std::make_unique<Probe>(1, nullptr, notify));
    manager->AddService(typeid(Probe), std::make_unique<Probe>(1, nullptr, notify));
    manager->NotifyServices();
    EXPECT_EQ(notified, 2);
    EXPECT_EQ(manager->Get<IFactoryService>(), nullptr);

    struct LookUpAtDeath final : IService<LookUpAtDeath>
    {
        explicit LookUpAtDeath(IServiceManager& owner) : manager(owner) {}
        ~LookUpAtDeath() override
        {
            EXPECT_EQ(manager.GetService(typeid(LookUpAtDeath)), nullptr);
            EXPECT_FALSE(manager.RemoveService(typeid(LookUpAtDeath)));
        }
        IServiceManager& manager;
    };
    manager->AddService(typeid(LookUpAtDeath), std::make_unique<LookUpAtDeath>(*manager));
    manager->RemoveAllServices();
    EXPECT_EQ(manager->Get<IProbe>(), nullptr);
}

TEST(ServiceManager, ASecondManagerBecomesCurrentAndOutlivesTheFirst)
{
    auto first = CreateServiceManager(true);
    EXPECT_NE(first->GetService(typeid(IFactoryService)), nullptr);
    auto second = CreateServiceManager(false);
    EXPECT_EQ(&Services(), second.get());
    EXPECT_EQ(second->GetService(typeid(IFactoryService)), nullptr);
    EXPECT_NE(first->GetService(typeid(IFactoryService)), nullptr);
    first.reset();
    EXPECT_EQ(&Services(), second.get());
    second.reset();
    EXPECT_EQ(ServicesPtr(), nullptr);
}

TEST(FactoryService, MakesANewObjectOfTheFirstFactoryEachTime)
{
    const auto manager = CreateServiceManager(true);
    auto& factories = manager->Require<IFactoryService>();
    struct One final : IObject
    {};
    EXPECT_EQ(factories.Create<One>(), nullptr);
    EXPECT_FALSE(factories.AddFactory(typeid(One), {}));
    EXPECT_TRUE((factories.Add<IObject, One>()));
    EXPECT_FALSE((factories.Add<IObject, IObject>()));
    const auto object = factories.Create<IObject>();
    EXPECT_NE(dynamic_cast<One*>(object.get()), nullptr);
    EXPECT_NE(factories.Create<IObject>(), object);
    EXPECT_TRUE(factories.RemoveFactory(typeid(IObject)));
    EXPECT_EQ(factories.Create<IObject>(), nullptr);
}
} // namespace vek::App
