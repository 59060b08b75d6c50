// Reflection: the list of providers that names are asked of.
#pragma once

#include "object/reflection/IReflectionProvider.h"

#include <vector>

/// All providers of reflected things, asked in the order they were added.
///
/// The static table is the first, so that a native class hides a script class of the same name. Borrows the providers:
/// they live as long as the process.
class Reflection_
{
public:
    using ProviderList = std::vector<IReflectionProvider *>;

    /// The thing of this qualified name from the first provider that knows it; null if none does.
    ReflectorPtr getType(const String &name) const;
    /// Adds a provider behind the present ones.
    void addProvider(IReflectionProvider *provider);

private:
    friend Reflection_ &Reflection();
    Reflection_();

    ProviderList providers;
};

/// The one list of providers, made at first use with the static table as its first entry.
Reflection_ &Reflection();
