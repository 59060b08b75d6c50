// ScriptCall: calls of functions that scripts have given to objects, and the report of those that fail.
#pragma once

#include "object/tree/IReflectedThing.h"

class Object;
class SavedArguments;

/// Says for whom a function is called, as long as it lives, so that the report of an exception can tell it.
///
/// Stands on the stack around one call and borrows what it names. Counts for the next script function alone: what that
/// one calls in its turn is called for somebody else.
class ScriptCall
{
public:
    /// A method of the engine is no script's function and announces nothing.
    /// @param owner  whose function it is; null for nobody in particular
    /// @param role   what the function is to the owner, as in "frame callback"
    ScriptCall(const IReflectedThing &function, const Object *owner, const char *role)
        : owner(owner), role(role), outer(current)
    {
        current = function.isBoundCall() ? nullptr : this;
    }
    /// What the function raises is put down for the caller, who reports it, rather than reported where it arises.
    /// @param raised  text of the exception, with its traceback; left alone where none comes
    ScriptCall(const IReflectedThing &function, String &raised) : ScriptCall(function, nullptr, nullptr)
    {
        this->raised = &raised;
    }
    ~ScriptCall() { current = outer; }
    ScriptCall(const ScriptCall &) = delete;
    ScriptCall &operator=(const ScriptCall &) = delete;

    /// The call that was announced; null afterwards, and where none was.
    static const ScriptCall *take();

    const Object *const owner;
    const char *const role;
    String *raised = nullptr; ///< takes the text of an exception; null where that is reported

private:
    const ScriptCall *const outer;
    static const ScriptCall *current;
};

/// Calls a function of an object; one that fails is reported once, with the object's path, and the caller lets go of it.
///
/// @param role  what the function is to the object, as in "frame callback"
/// @return whether it succeeded
bool callOrReport(const ReflectorPtr &function, SavedArguments &args, const Object &owner, const char *role);

/// Reports the pending Python exception that a script function has raised, or puts it down for its caller; clears it.
///
/// An assertion that stands at the script's line and shows for whom it was called, the exception and the traceback. The
/// same one is told again when it has come 10, 100, 1000 times and so on.
void reportScriptException(const IReflectedThing &function, const ScriptCall *call);
