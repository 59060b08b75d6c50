#include "object/reflection/Reflection.h"

#include "object/reflection/AutoReflector.h"

Reflection_::Reflection_()
{
    addProvider(&getAutoReflector());
}

Reflection_ &Reflection()
{
    static auto *instance = new Reflection_;
    return *instance;
}

ReflectorPtr Reflection_::getType(const String &name) const
{
    for (IReflectionProvider *provider : providers)
    {
        if (ReflectorPtr found = provider->getType(name))
            return found;
    }
    return nullptr;
}

void Reflection_::addProvider(IReflectionProvider *provider)
{
    providers.push_back(provider);
}
