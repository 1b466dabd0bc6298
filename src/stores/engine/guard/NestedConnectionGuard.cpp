// A provider plug-in of Firebird, the only one in firebird.conf. A database is a program: the body of a procedure may
// connect to another file ("execute statement … on external"), in the same process, as SYSDBA and without a password.
// Firebird marks such a nested connection in its parameters, and here it ends. All else goes on to the engine.

#include <firebird/Interface.h>

#include <atomic>
#include <initializer_list>

namespace {

using Status = Firebird::CheckStatusWrapper;

Firebird::IMaster *master = nullptr;

/// Firebird keeps it for as long as the module is loaded; see IPluginModule in its interface.
class Module : public Firebird::IPluginModuleImpl<Module, Status>
{
public:
    void doClean() override { m_isRegistered = false; }
    void threadDetach() override {}
    void Register()
    {
        master->getPluginManager()->registerModule(this);
        m_isRegistered = true;
    }
    ~Module() override
    {
        if (m_isRegistered)
            master->getPluginManager()->unregisterModule(this);
    }

private:
    bool m_isRegistered = false;
};

/// The engine, taken for one call: an engine that is kept makes the process hang at its end.
class Engine
{
public:
    explicit Engine(Status *status)
    {
        Firebird::IPluginManager *plugins = master->getPluginManager();
        Firebird::IPluginSet *found =
            plugins->getPlugins(status, Firebird::IPluginManager::TYPE_PROVIDER, "Engine12", nullptr);
        if (found) {
            m_provider = static_cast<Firebird::IProvider *>(found->getPlugin(status));
            found->release();
        }
    }
    ~Engine()
    {
        if (m_provider)
            master->getPluginManager()->releasePlugin(m_provider);
    }
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;

    explicit operator bool() const { return m_provider != nullptr; }
    Firebird::IProvider *operator->() const { return m_provider; }
    Firebird::IProvider *Provider() const { return m_provider; }

private:
    Firebird::IProvider *m_provider = nullptr;
};

bool IsNested(Status *status, unsigned length, const unsigned char *parameters)
{
    Firebird::IXpbBuilder *block =
        master->getUtilInterface()->getXpbBuilder(status, Firebird::IXpbBuilder::DPB, parameters, length);
    if (!block)
        return true; // cannot be read
    const bool nested = block->findFirst(status, isc_dpb_ext_call_depth);
    block->dispose();
    return nested;
}

void Refuse(Status *status)
{
    const ISC_STATUS refusal[] = {isc_arg_gds, isc_random, isc_arg_string,
                                  reinterpret_cast<ISC_STATUS>("a database may not connect to another one"),
                                  isc_arg_end};
    status->setErrors(refusal);
}

class Guard : public Firebird::IProviderImpl<Guard, Status>
{
public:
    void addRef() override { ++m_references; }
    int release() override
    {
        const int left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }
    void setOwner(Firebird::IReferenceCounted *owner) override { m_owner = owner; }
    Firebird::IReferenceCounted *getOwner() override { return m_owner; }

    Firebird::IAttachment *attachDatabase(Status *status, const char *file, unsigned length,
                                          const unsigned char *parameters) override
    {
        return Connect(&Firebird::IProvider::attachDatabase<Status>, status, file, length, parameters);
    }
    Firebird::IAttachment *createDatabase(Status *status, const char *file, unsigned length,
                                          const unsigned char *parameters) override
    {
        return Connect(&Firebird::IProvider::createDatabase<Status>, status, file, length, parameters);
    }
    Firebird::IService *attachServiceManager(Status *status, const char *service, unsigned length,
                                             const unsigned char *parameters) override
    {
        const Engine engine(status);
        return engine ? engine->attachServiceManager(status, service, length, parameters) : nullptr;
    }
    void shutdown(Status *status, unsigned timeout, int reason) override
    {
        if (const Engine engine(status); engine)
            engine->shutdown(status, timeout, reason);
    }
    // There is no encrypted database here, so nobody sets one.
    void setDbCryptCallback(Status *, Firebird::ICryptKeyCallback *) override {}

private:
    using Call = Firebird::IAttachment *(Firebird::IProvider::*)(Status *, const char *, unsigned,
                                                                 const unsigned char *);
    static Firebird::IAttachment *Connect(Call call, Status *status, const char *file, unsigned length,
                                          const unsigned char *parameters)
    {
        if (IsNested(status, length, parameters)) {
            Refuse(status);
            return nullptr;
        }
        const Engine engine(status);
        return engine ? (engine.Provider()->*call)(status, file, length, parameters) : nullptr;
    }

    std::atomic<int> m_references{0};
    Firebird::IReferenceCounted *m_owner = nullptr;
};

class Factory : public Firebird::IPluginFactoryImpl<Factory, Status>
{
public:
    Firebird::IPluginBase *createPlugin(Status *, Firebird::IPluginConfig *) override
    {
        auto *guard = new Guard;
        guard->addRef();
        return guard;
    }
};

} // namespace

extern "C" [[gnu::visibility("default")]] void firebird_plugin(Firebird::IMaster *firebirdMaster)
{
    static Module module;
    static Factory factory;
    master = firebirdMaster;
    module.Register();
    master->getPluginManager()->registerPluginFactory(Firebird::IPluginManager::TYPE_PROVIDER, "NestedConnectionGuard",
                                                      &factory);
}
