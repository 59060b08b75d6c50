// Sounds as scripts see them: who hears, what is heard, and lists of names.
#include "platform/sound/GlobalListener.h"
#include "platform/sound/HeardSounds.h"
#include "platform/sound/SoundComponent.h"

#include "object/python/PythonConverters.h"
#include "object/python/PythonIntegration.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

#include <boost/python/stl_iterator.hpp>

namespace python = boost::python;

namespace
{
/// A part by value: what a script keeps stays as it is.
template <auto Member>
auto partOf(const GlobalListener &listener)
{
    return listener.*Member;
}

template <auto Member>
auto partOfSound(const HeardSound &sound)
{
    return sound.*Member;
}

String show(const HeardSound &sound)
{
    return String::format("<%s, %g m>", sound.name.toCString(), static_cast<double>(sound.distance));
}

void addSounds(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    python::class_<GlobalListener>("GlobalListener", "Place, motion and bearing of the ears of a level.",
                                   python::no_init)
        .add_property("position", partOf<&GlobalListener::position>)
        .add_property("velocity", partOf<&GlobalListener::velocity>)
        .add_property("directionVector", partOf<&GlobalListener::directionVector>)
        .add_property("upVector", partOf<&GlobalListener::upVector>);
    python::class_<HeardSound>("HeardSound", "A sound that can be heard now.", python::no_init)
        .add_property("name", partOfSound<&HeardSound::name>)
        .add_property("caption", partOfSound<&HeardSound::caption>)
        .add_property("direction", partOfSound<&HeardSound::direction>)
        .add_property("distance", partOfSound<&HeardSound::distance>)
        .add_property("loudness", partOfSound<&HeardSound::loudness>)
        .def("__repr__", show);
}

const PythonModulePart soundPart(addSounds);

/// The texts of a script's sequence; raises TypeError where it is none, or has anything else in it.
std::vector<String> namesIn(const PythonObject &sequence)
{
    const python::object listed = sequence;
    bool allTexts = !PyUnicode_Check(listed.ptr());
    std::vector<String> names;
    for (python::stl_input_iterator<python::object> it(listed), end; allTexts && it != end; ++it)
        allTexts = String_from_python_str::convert((*it).ptr(), names.emplace_back());
    if (!allTexts)
    {
        PyErr_SetString(PyExc_ValueError, "sounds are given as a list of the names of their events");
        python::throw_error_already_set();
    }
    return names;
}
} // namespace

void SetToVariant(Variant &v, const GlobalListener &listener)
{
    setScriptObject(v, [&] { return python::object(listener); });
}

void SetToVariant(Variant &v, const HeardSound &sound)
{
    setScriptObject(v, [&] { return python::object(sound); });
}

void SoundComponent::setSoundList(const PythonObject &sounds)
{
    for (const String &name : namesIn(sounds))
        addSoundEffect(name);
}

void SoundComponent::setMusicList(const PythonObject &music)
{
    for (const String &name : namesIn(music))
        addMusic(name);
}
