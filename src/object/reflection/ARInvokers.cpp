#include "object/reflection/ARInvokers.h"

namespace
{
ErrorReturn<Variant> fail(IReflectedThing::CallFailureType reason)
{
    return ErrorCode(ErrorCode::CALL_FAILURE, reason);
}
} // namespace

ErrorReturn<Variant> failThis(const SavedArguments &args, std::size_t argCount)
{
    if (args.getArgCount() != argCount)
        return fail(IReflectedThing::WRONG_ARGUMENT_COUNT);
    if (args[0].getType() != Variant::VT_HANDLE)
        return fail(IReflectedThing::THIS_POINTER_ARG_NOT_A_HANDLE);
    return fail(IReflectedThing::BAD_THIS_POINTER);
}

ErrorReturn<Variant> failArgument()
{
    return fail(IReflectedThing::WRONG_ARGUMENT_TYPE);
}

ErrorReturn<Variant> failCount()
{
    return fail(IReflectedThing::WRONG_ARGUMENT_COUNT);
}

template <class T>
bool convertNumber(const Variant &v, T &out)
{
    return fromVariant(v, out);
}

template bool convertNumber(const Variant &, bool &);
template bool convertNumber(const Variant &, char &);
template bool convertNumber(const Variant &, signed char &);
template bool convertNumber(const Variant &, unsigned char &);
template bool convertNumber(const Variant &, short &);
template bool convertNumber(const Variant &, unsigned short &);
template bool convertNumber(const Variant &, int &);
template bool convertNumber(const Variant &, unsigned int &);
template bool convertNumber(const Variant &, long &);
template bool convertNumber(const Variant &, unsigned long &);
template bool convertNumber(const Variant &, long long &);
template bool convertNumber(const Variant &, unsigned long long &);
template bool convertNumber(const Variant &, float &);
template bool convertNumber(const Variant &, double &);
