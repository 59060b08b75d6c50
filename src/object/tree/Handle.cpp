#include "object/tree/Handle.h"

#include "object/reflection/AutoReflector.h"
#include "object/tree/Object.h"

String handleToString(const String &className, const Handle<Object> &h)
{
    auto object = h.lookup();
    return String::format("Handle<%s>(%s)", className.toCString(),
                          object ? object->toString().toCString() : "<invalid>");
}

template <>
String Handle<Object>::toString() const
{
    return handleToString(Object::staticType->getName(), *this);
}

bool isHandleOfType(const Handle<Object> &h, const ReflectorPtr &type)
{
    return h.isValid() && isNumberOfClass(ObjectMap_::findClassNumber(h.getNumber()), type);
}
