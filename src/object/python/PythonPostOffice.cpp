#include "object/python/PythonPostOffice.h"

#include "object/messages/Message.h"
#include "object/messages/PostOffice.h"
#include "object/python/PythonConverters.h"

#include <boost/python.hpp>
#include <boost/python/raw_function.hpp>

namespace python = boost::python;

namespace
{

[[noreturn]] void throwTypeError(const char *text)
{
    PyErr_SetString(PyExc_TypeError, text);
    python::throw_error_already_set();
    __builtin_unreachable();
}

ReflectorPtr messageTypeFrom(const ReflectorPtr &thing)
{
    if (!dynamic_cast<const MessageType *>(thing.get()))
        throwTypeError("the first argument is no message type: take one from messageTypes");
    return thing;
}

void registerMessageHandler(PostOffice_ &office, const ReflectorPtr &messageType, const ReflectorPtr &handler)
{
    if (!handler)
        throwTypeError("a message handler is a callable, not None");
    office.registerMessageHandler(messageTypeFrom(messageType), handler);
}

/// submitMessage(messageType, *payload)
python::object submitMessage(const python::tuple &args, const python::dict &keywords)
{
    constexpr long ownArguments = 2;
    const long given = python::len(args);
    if (python::len(keywords) > 0 || given < ownArguments || given - ownArguments > long(maxCallArgs) - 2)
        throwTypeError("submitMessage takes a message type and up to three values");
    PostOffice_ &office = python::extract<PostOffice_ &>(args[0]);
    const ReflectorPtr messageType = messageTypeFrom(python::extract<ReflectorPtr>(args[1]));
    SavedArguments payload(std::size_t(given - ownArguments));
    for (long index = ownArguments; index < given; ++index)
        VariantFromPython::convert(python::object(args[index]).ptr(), payload[std::size_t(index - ownArguments)]);
    office.submitMessage(messageType, payload);
    return python::object();
}

python::dict allMessageTypes()
{
    python::dict types;
    for (const MessageType *type : MessageType::getAll())
        types[type->getName()] = ReflectorPtr(type);
    return types;
}

} // namespace

void addPostOffice(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    python::class_<PostOffice_, boost::noncopyable>("PostOffice_", "Delivers messages to their handlers.",
                                                    python::no_init)
        .def("registerMessageHandler", registerMessageHandler,
             "Calls a handler for every message of a type, until the handler fails.")
        .def("submitMessage", python::raw_function(submitMessage, 2));
    python::scope().attr("PostOffice") = python::object(python::ptr(&PostOffice()));
    python::scope().attr("messageTypes") = allMessageTypes();
}
