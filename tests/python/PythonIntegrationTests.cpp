// The native side of the script layer: reflectors of script objects, calls into scripts, and their failures.
#include "GatheredAssertions.h"
#include "support/Probe.h"

#include "object/reflection/PropertyDesc.h"
#include "object/python/PythonIntegration.h"
#include "object/python/PythonReflectedThing.h"
#include "object/reflection/Reflection.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace python = boost::python;
using testing::HasSubstr;

namespace
{

std::string textOf(const String &text)
{
    return std::string(text.begin(), text.end());
}

/// Script code of a test, run in names of its own.
class Script
{
public:
    explicit Script(const char *source) : names(startedDict())
    {
        names["__builtins__"] = python::import("builtins");
        names["__name__"] = "script";
        if (!pythonGuarded([&] { python::exec(source, names); }))
            ADD_FAILURE() << getCurrentPythonTraceback().toCString();
    }

    PythonObject operator[](const char *name) const { return python::object(names[name]); }
    /// The value of an expression.
    PythonObject eval(const char *expression) const { return python::eval(expression, names); }
    ReflectorPtr reflector(const char *expression) const { return getReflectorForPythonObject(eval(expression)); }

private:
    static python::dict startedDict()
    {
        initPython();
        return python::dict();
    }

    mutable python::dict names;
};

/// A module that scripts can import for as long as the test runs.
class ScriptedModule
{
public:
    ScriptedModule(const char *name, const char *source) : script(source), name(name)
    {
        python::object module = python::import("types").attr("ModuleType")(name);
        python::exec(source, module.attr("__dict__"));
        modules()[name] = module;
    }
    ~ScriptedModule() { modules().attr("pop")(name); }
    ScriptedModule(const ScriptedModule &) = delete;
    ScriptedModule &operator=(const ScriptedModule &) = delete;

private:
    static python::object modules() { return python::import("sys").attr("modules"); }

    Script script;
    const char *name;
};

} // namespace

TEST(PythonObjects, EmptyOwnerStandsForNone)
{
    const PythonObject empty;
    PythonObject copy(empty);
    copy = empty;
    EXPECT_TRUE(copy.isNone());
    EXPECT_EQ(empty.get(), nullptr);

    initPython();
    EXPECT_TRUE(PythonObject::borrow(Py_None).isNone());
    EXPECT_TRUE(python::object(empty).is_none());
}

TEST(PythonObjects, OwnersShareOneReferenceEach)
{
    const Script script("thing = object()");
    const PythonObject thing = script["thing"];
    const Py_ssize_t before = Py_REFCNT(thing.get());
    {
        PythonObject copy(thing);
        PythonObject moved(std::move(copy));
        EXPECT_EQ(Py_REFCNT(thing.get()), before + 1);
        copy = moved;
        EXPECT_EQ(Py_REFCNT(thing.get()), before + 2);
    }
    EXPECT_EQ(Py_REFCNT(thing.get()), before);
}

TEST(PythonStart, LaterStartsDoNothing)
{
    initPython();
    const PythonObject path = python::object(python::import("sys").attr("path"));
    initPython();
    EXPECT_EQ(path, PythonObject(python::object(python::import("sys").attr("path"))));
    EXPECT_TRUE(isPythonRunning());
}

TEST(PythonReflectors, OneObjectHasOneReflector)
{
    const Script script("def function(): pass\nclass Plain: pass\ninstance = Plain()");
    for (const char *name : {"function", "Plain", "instance"})
        EXPECT_EQ(script.reflector(name), script.reflector(name)) << name;
    EXPECT_EQ(script.reflector("None"), ReflectorPtr());
}

TEST(PythonReflectors, InstanceDoesNotBorrowTheReflectorOfItsClass)
{
    const Script script("class Plain: pass\ninstance = Plain()\nimport copy");
    const ReflectorPtr ofClass = script.reflector("Plain");
    const ReflectorPtr ofInstance = script.reflector("instance");
    const ReflectorPtr ofCopy = script.reflector("copy.copy(instance)");
    EXPECT_NE(ofClass, ofInstance);
    EXPECT_NE(ofInstance, ofCopy);
    EXPECT_EQ(ofInstance, script.reflector("instance"));
}

TEST(PythonReflectors, BoundMethodKeepsItsOwnAmongEqualReads)
{
    const Script script("class Plain:\n  def method(self): return self\na = Plain()\nb = Plain()");
    const ReflectorPtr ofFunction = script.reflector("Plain.method");
    const ReflectorPtr ofA = script.reflector("a.method");
    EXPECT_NE(ofA, ofFunction);
    EXPECT_EQ(ofA, script.reflector("a.method"));
    EXPECT_NE(ofA, script.reflector("b.method"));
    EXPECT_EQ(script.reflector("len"), script.reflector("len"));
}

TEST(PythonReflectors, ObjectThatRefusesAttributesStillGetsOne)
{
    const Script script("class Hostile:\n"
                        "  def __getattr__(self, name): raise OSError(name)\n"
                        "  def __setattr__(self, name, value): raise OSError(name)\n"
                        "  def __hash__(self): raise OSError('hash')\n"
                        "  def __call__(self): return 5\n"
                        "hostile = Hostile()");
    EXPECT_TRUE(script.reflector("hostile"));
    EXPECT_TRUE(script.reflector("7"));
    EXPECT_TRUE(script.reflector("[]"));
    EXPECT_EQ(script.reflector("hostile")->call().value.get<int>().value, 5);
    EXPECT_FALSE(PyErr_Occurred());
}

TEST(PythonReflectors, CollectorFreesAnObjectThatNobodyReflectsAnyMore)
{
    const Script script("import gc, weakref\ndef function(): pass\nalive = weakref.ref(function)");
    ReflectorPtr held = script.reflector("function");
    script.eval("globals().pop('function') and None");
    script.eval("gc.collect()");
    EXPECT_FALSE(script.eval("alive()").isNone()) << "the engine still holds the reflector";

    held = nullptr;
    script.eval("gc.collect()");
    EXPECT_TRUE(script.eval("alive()").isNone());
}

TEST(PythonReflectors, WrappedThingAndBoundMemberGiveTheNativeThing)
{
    const Script script("import kaVel\nprobe = kaVel.make('Probe')");
    EXPECT_EQ(script.reflector("kaVel.Reflection.Probe"), Probe::staticType);
    const ReflectorPtr bound = script.reflector("probe.addValue");
    EXPECT_TRUE(bound->isBoundCall());
    EXPECT_TRUE(bound->call(2.0f).succeeded());
    EXPECT_EQ(bound->getName(), SCS("addValue"));
}

TEST(PythonReflectedThings, DescribeTheirObject)
{
    const Script script("class Base: pass\nclass Derived(Base):\n  value = 5\n  def method(self, a, b): pass\n"
                        "def function(a, b=1): pass\nimport types");
    const ReflectorPtr derived = script.reflector("Derived");
    EXPECT_EQ(textOf(derived->getName()), "Derived");
    EXPECT_EQ(textOf(derived->getQualifiedName()), "script::Derived");
    EXPECT_EQ(derived->getKind(), IReflectedThing::CLASS);
    EXPECT_TRUE(derived->isSubclassOf(script.reflector("Base")));
    EXPECT_TRUE(derived->isSubclassOf(derived));
    EXPECT_FALSE(derived->isSubclassOf(script.reflector("function")));
    EXPECT_FALSE(derived->isSubclassOf(Probe::staticType));
    EXPECT_EQ(derived->getMember(SCS("method"))->getArgCount(), 3u);
    EXPECT_FALSE(derived->getMember(SCS("nothing")));
    EXPECT_EQ(derived->getMemberList().size(), 2u);
    EXPECT_EQ(derived->getProperty(SCS("value")).code.getCode(), ErrorCode::NO_SUCH_PROPERTY);

    const ReflectorPtr function = script.reflector("function");
    EXPECT_EQ(function->getKind(), IReflectedThing::FUNCTION);
    EXPECT_EQ(function->getArgCount(), 2u);
    EXPECT_EQ(textOf(function->getDefinitionLocation()), "<string>(5)");
    EXPECT_EQ(script.reflector("Derived().method")->getArgCount(), 2u);
    EXPECT_EQ(script.reflector("types")->getKind(), IReflectedThing::NAMESPACE);
    EXPECT_EQ(textOf(script.reflector("len")->getDefinitionLocation()), "<unknown>(0)");
}

TEST(PythonReflectedThings, CallPassesValuesBothWays)
{
    const Script script("def join(*values): return '%s' % (values,)");
    const ErrorReturn<Variant> joined = script.reflector("join")->call(1, true, SCS("three"), 4.5);
    ASSERT_TRUE(joined.succeeded());
    EXPECT_EQ(textOf(joined.value.get<String>().value), "(1, True, 'three', 4.5)");
    EXPECT_EQ(script.reflector("5")->call().code.getCode(), ErrorCode::NOT_CALLABLE);
}

TEST(PythonReflectedThings, ExceptionIsAnAssertionWithItsTracebackAndAFailedCall)
{
    const Script script("def broken(): raise LookupError('no key')");
    const GatheredAssertions assertions;
    EXPECT_EQ(script.reflector("broken")->call().code.getCode(), ErrorCode::PYTHON_EXCEPTION);
    EXPECT_THAT(assertions.getText(), HasSubstr("LookupError: no key"));
    EXPECT_THAT(assertions.getText(), HasSubstr("line 1, in broken"));
    EXPECT_FALSE(PyErr_Occurred());
}

TEST(PythonReflectedThings, SameExceptionIsToldAgainAtItsTenthTimeAndAnotherOneAtOnce)
{
    const Script script("def tired(): raise LookupError('again')\ndef fresh(): raise LookupError('another')");
    const std::size_t before = Logger().getLogCount();
    for (int time = 0; time < 99; ++time)
        script.reflector("tired")->call().code.ignoreError();
    script.reflector("fresh")->call().code.ignoreError();
    EXPECT_EQ(Logger().getLogCount(), before + 3);
    const std::size_t last = Logger().getHistorySize() - 1;
    EXPECT_THAT(Logger().getHistoryEntry(last - 1).message.toCString(), HasSubstr("again (10 times so far)"));
    EXPECT_THAT(Logger().getHistoryEntry(last).message.toCString(), HasSubstr("LookupError: another"));
    EXPECT_EQ(Logger().getHistoryEntry(last).line, 2);
}

TEST(PythonReflectedThings, ValueWithoutScriptFormIsATypeError)
{
    const Script script("def take(value): pass");
    const GatheredAssertions assertions;
    EXPECT_EQ(script.reflector("take")->call(Variant()).code.getCode(), ErrorCode::PYTHON_EXCEPTION);
    EXPECT_THAT(assertions.getText(), HasSubstr("TypeError: Variant type VT_INVALID not convertible to Python"));
}

TEST(PythonReflectedThings, FailureOfANestedCallNamesBothSides)
{
    const Script script("import kaVel\nprobe = kaVel.make('Probe')\ndef outer(): probe.callBack(inner, 1)\n"
                        "def inner(value): raise KeyError('deep')");
    const GatheredAssertions assertions;
    EXPECT_FALSE(script.reflector("outer")->call().succeeded());
    EXPECT_THAT(assertions.getText(), HasSubstr("KeyError: 'deep'"));
    EXPECT_THAT(assertions.getText(),
                HasSubstr("RuntimeError: Call to Probe::callBack failed: PYTHON_EXCEPTION: <No error description.>"));
}

TEST(PythonReflectedThings, ScriptClassConstructsWhatItsCallReturns)
{
    const Script script(
        "import kaVel\nclass Maker:\n  def __new__(cls): return kaVel.make('Probe')\nclass Plain: pass");
    EXPECT_TRUE(script.reflector("Maker")->construct(defaultAllocationCategory).isValid());
    EXPECT_FALSE(script.reflector("Plain")->construct(defaultAllocationCategory).isValid());
    EXPECT_FALSE(script.reflector("kaVel.make")->construct(defaultAllocationCategory).isValid());
}

TEST(PythonTracebacks, WithoutAnExceptionTheTextSaysSo)
{
    initPython();
    EXPECT_EQ(textOf(getCurrentPythonTraceback()),
              "ERROR: getCurrentPythonTraceback called with Python error indicator not set!");
}

TEST(PythonTracebacks, ExceptionIsShownOnceAndCleared)
{
    const Script script("import sys\nbefore = sys.stderr");
    PyErr_SetString(PyExc_ValueError, "wrong door");
    EXPECT_THAT(textOf(getCurrentPythonTraceback()), HasSubstr("ValueError: wrong door"));
    EXPECT_FALSE(PyErr_Occurred());
    EXPECT_EQ(script.eval("sys.stderr"), script.eval("sys.__stderr__"));
}

TEST(PythonTracebacks, SecondExceptionMeanwhileHasATextOfItsOwn)
{
    const Script script("import io\nkept = io.StringIO\nio.StringIO = None");
    PyErr_SetString(PyExc_ValueError, "wrong door");
    EXPECT_EQ(
        textOf(getCurrentPythonTraceback()),
        "ERROR!!! A second Python exception was raised while retrieving the error information. Additional details "
        "may be available on standard error.");
    EXPECT_FALSE(PyErr_Occurred());
    script.eval("setattr(io, 'StringIO', kept)");
}

TEST(PythonCalls, ModuleAttributeIsCalledAndRead)
{
    const ScriptedModule module("scripted", "initialLevel = 'Cellar'\ndef double(x): return 2 * x");
    Variant result;
    ASSERT_TRUE(pythonCall("scripted", "double", SavedArguments::of(21), result));
    EXPECT_EQ(result.get<int>().value, 42);
    ASSERT_TRUE(pythonAttribute("scripted", "initialLevel", result));
    EXPECT_EQ(textOf(result.get<String>().value), "Cellar");
}

TEST(PythonCalls, FailureLeavesTheResultAloneAndTheExceptionPending)
{
    const ScriptedModule module("scripted", "def broken(): raise OSError('cold')");
    Variant result(7);
    EXPECT_FALSE(pythonCall("no_such_module", "f", SavedArguments(0), result));
    EXPECT_THAT(textOf(getCurrentPythonTraceback()), HasSubstr("No module named 'no_such_module'"));
    EXPECT_FALSE(pythonAttribute("scripted", "missing", result));
    EXPECT_THAT(textOf(getCurrentPythonTraceback()), HasSubstr("has no attribute 'missing'"));
    EXPECT_FALSE(pythonCall("scripted", "broken", SavedArguments(0), result));
    EXPECT_THAT(textOf(getCurrentPythonTraceback()), HasSubstr("OSError: cold"));
    EXPECT_EQ(result.get<int>().value, 7);
}

TEST(Patterns, BuildATreeUnderAParentAndReturnItsRoot)
{
    const ScriptedModule module("scripted",
                                "import kaVel\ndef Dog(parent, name): return kaVel.make('Probe', parent, name)\n"
                                "def Nothing(parent, name): return 'no handle'\n"
                                "def Broken(parent, name): raise OSError('no ' + name)");
    const Handle<Probe> parent = construct<Probe>(defaultAllocationCategory);
    const Handle<Object> dog = loadFromPatternToHandle(SCS("scripted"), SCS("Dog"), parent, SCS("rex"));
    ASSERT_TRUE(dog.isValid());
    EXPECT_EQ(dog.lookup()->getParent(), Handle<Object>(parent));
    EXPECT_EQ(textOf(dog.lookup()->getName()), "rex");
    EXPECT_FALSE(loadFromPatternToHandle(SCS("scripted"), SCS("Nothing"), parent).isValid());

    EXPECT_FALSE(pythonGuarded([&] { loadFromPattern(SCS("scripted"), SCS("Broken"), parent, SCS("bone")); }));
    EXPECT_THAT(textOf(getCurrentPythonTraceback()), HasSubstr("OSError: no bone"));
}

TEST(PythonConversions, BoostPythonKnowsTheEnginesTypes)
{
    const Script script("import kaVel\nprobe = kaVel.make('Probe')");
    EXPECT_EQ(textOf(python::extract<String>(python::object(python::str("Tür")))()), "Tür");
    EXPECT_EQ(textOf(python::extract<String>(python::object(SCS("door")))()), "door");
    const Handle<Object> probe = python::extract<Handle<Object>>(python::object(script["probe"]));
    EXPECT_TRUE(probe.isValid());
    EXPECT_EQ(PythonObject(python::object(Variant(7))), PythonObject(python::object(7)));
    EXPECT_FALSE(python::extract<String>(python::object(7)).check());
    EXPECT_FALSE(python::extract<Handle<Object>>(python::object(7)).check());
    EXPECT_EQ(handleFromPython(python::object(7)), Handle<Object>());
}

TEST(PythonConversions, EmptyValueIsRefused)
{
    initPython();
    EXPECT_EQ(Variant().get<PythonObject>().code.getCode(), ErrorCode::NOT_CONVERTIBLE);
    EXPECT_FALSE(pythonGuarded([] { python::object refused{Variant()}; }));
    EXPECT_THAT(textOf(getCurrentPythonTraceback()), HasSubstr("TypeError: Variant type VT_INVALID not convertible to "
                                                               "Python"));
}

TEST(PythonConversions, ScriptObjectsExtractToNativeValues)
{
    const Script script("import kaVel");
    EXPECT_EQ(Variant(script.eval("10**30")).get<double>().value, 1e30);
    EXPECT_EQ(textOf(Variant(script.eval("'text'")).get<String>().value), "text");
    EXPECT_EQ(Variant(script.eval("kaVel.Vec4(1, 2)")).get<Vec4>().value, Vec4(1, 2));
    EXPECT_EQ(Variant(script.eval("kaVel.Vec4(1, 2)")).get<Quaternion>().code.getCode(), ErrorCode::NOT_CONVERTIBLE);
    EXPECT_EQ(Variant(script.eval("len")).get<ReflectorPtr>().value->getName(), SCS("len"));
    EXPECT_EQ(Variant(Vec4(1, 2)).get<PythonObject>().value.isNone(), false);
    EXPECT_FALSE(PyErr_Occurred());
}
