// Obituaries: what is remembered of objects that are gone, for whoever still uses their handles.
#pragma once

#include "foundation/KVString.h"

#include <cstdint>

class Object;
template <class T>
class Handle;

/// The class, path and death of the last few thousand objects that were cremated.
///
/// Bounded: the oldest are forgotten. Costs a few stores a death, and a walk over all of them where somebody asks.
namespace Obituaries
{

/// Objects that are remembered.
inline constexpr std::uint32_t CAPACITY = 4096;

/// Says which frame it is.
void setFrame(std::int64_t number);
/// Notes that an object is being murdered with all that hangs below it, by the script that runs now or by the engine.
/// @param spared  the object itself lives on
/// @return a number to cremate them under
std::uint32_t noteMurder(const Object &root, bool spared);
/// Notes an object that is about to be destroyed, as long as it still has its parent.
/// @param name    its own, empty for none
/// @param murder  as `noteMurder` gave it
void noteCremation(const Object &object, const String &name, std::uint32_t murder);

/// What the object of a handle was and how it ended: "It was the Entity Hall/lamp, gone in frame 7, when ...".
///
/// Empty for a live object, for one that never was, and for one that is forgotten.
String of(const Handle<Object> &gone);

} // namespace Obituaries
