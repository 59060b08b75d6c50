#include "ai/nodes/BTSubtreeLookup.h"

#include "ai/trees/BTLib.h"

#include "engine/entities/Entity.h"

StatusCode BTSubtreeLookup::run()
{
    if (children.empty())
    {
        const StatusCode taken = takeTree();
        if (taken != SC_Success)
            return taken;
    }
    BTTask *const tree = resolve(children, 0);
    if (!tree)
        return reportMissingChild(0);
    // Another name set by the tree itself stands for the next copy.
    const BTType behavior = subtreeType;
    const TreeUnderWay here(behavior);
    return tree->tick();
}

StatusCode BTSubtreeLookup::takeTree()
{
    if (TreeUnderWay::isUnderWay(subtreeType))
    {
        complain(String::format("the tree '%s' may not stand within itself (%s > %s)", subtreeType.toCString(),
                                TreeUnderWay::describe().toCString(), subtreeType.toCString()));
        return SC_Failure;
    }
    const auto library = getSystem<BTLib>().lookup();
    if (!library)
        return SC_InvalidHandle;
    const ErrorReturn<Handle<BTTask>> found = library->BTLookUp(subtreeType);
    if (!found.succeeded())
    {
        complain(String::format("there is no tree '%s' yet", subtreeType.toCString()));
        return SC_Failure;
    }
    const auto tree = found.value.lookup();
    if (!tree)
        return SC_InvalidHandle;
    tree->setTreeParent(handle_cast<Entity>(getParent()));
    addChild(found.value);
    return SC_Success;
}

void BTSubtreeLookup::terminate()
{
    terminateChildren();
}

ErrorReturn<Handle<BTTask>> BTSubtreeLookup::clone()
{
    const Handle<BTTask> copy = makeNode(getType());
    const auto node = unchecked_handle_cast<BTSubtreeLookup>(copy).lookup();
    if (!node)
        return ErrorCode(ErrorCode::BT_FAILURE);
    node->setBehvaior(subtreeType);
    return copy;
}

bool TreeUnderWay::isUnderWay(const BTType &behavior)
{
    for (const TreeUnderWay *tree = innermost; tree; tree = tree->outer)
        if (tree->behavior == behavior)
            return true;
    return false;
}

String TreeUnderWay::describe()
{
    String text;
    for (const TreeUnderWay *tree = innermost; tree; tree = tree->outer)
        text = text.empty() ? tree->behavior : tree->behavior + SCS(" > ") + text;
    return text;
}
