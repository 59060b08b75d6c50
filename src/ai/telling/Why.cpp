#include "ai/telling/Why.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "object/reflection/Variant.h"
#include "object/reflection/SavedArguments.h"

#include <algorithm>
#include <string>
#include <vector>

namespace
{
using Components = std::vector<Handle<Object>>;

/// The components of a creature: first those that make up a mind, in the order of a sentence about it.
Components inOrderOfTelling(Entity &creature)
{
    Components ordered;
    for (const String &key :
         {ComponentKeys::behaviors, ComponentKeys::perception, ComponentKeys::path, ComponentKeys::pathFollower})
        ordered.push_back(creature.getComponent(key));
    for (auto child = creature.children_begin(); child != creature.children_end(); ++child)
        if (isHandleOfType(*child, AbstractComponent::staticType) &&
            std::find(ordered.begin(), ordered.end(), *child) == ordered.end())
            ordered.push_back(*child);
    return ordered;
}

/// What a component has to say; "" for one that says nothing.
String told(const Handle<Object> &component)
{
    static const String member = SCS("tell");
    const auto teller = component.lookup();
    const ReflectorPtr tell = teller ? teller->getType()->getMember(member) : nullptr;
    return tell ? tell->call(component).value.get<String>().value : String();
}
} // namespace

String why(Handle<Entity> creature)
{
    const auto entity = creature.lookup();
    if (!entity)
        return String();
    std::string text;
    for (const Handle<Object> &component : inOrderOfTelling(*entity))
    {
        const String part = told(component);
        if (!part.empty())
            text.append(text.empty() ? ": " : "; ").append(part.toCString());
    }
    return entity->getName() + (text.empty() ? SCS(" does nothing.") : String::copyFrom(text) + SCS("."));
}
