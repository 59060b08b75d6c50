// Probe: the reflected objects that tests look at, call and let die.
#pragma once

#include "object/tree/Object.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Quaternion.h"

#include <functional>
#include <utility>
#include <vector>

/// What a probe is made of.
enum ProbeMaterial
{
    PM_WOOD,
    PM_IRON = 5,
    PM_METAL = 5, ///< the same number again: the first name stands for it
    PM_GLASS
};

/// Whole millimetres, to see that a typedef crosses like the type behind it.
typedef long Millimetres;

/// What has no objects of its own: only its subclasses know their reach.
class AbstractProbe : public Object
{
    KV_REFLECTED(AbstractProbe)
public:
    /// How a surface looks.
    enum class Finish
    {
        MATT,
        GLOSSY
    };

    /// Which sides are open.
    enum Faces
    {
        FRONT = 1,
        BACK = 2,
        SIDES = 4
    };

    /// Metres.
    virtual float reach() const = 0;
    /// What kind of probe this is.
    virtual String describe() const { return SCS("abstract"); }

    String getLabel() const { return label; }
    void setLabel(const String &text) { label = text; }
    Finish getFinish() const { return finish; }
    void setFinish(Finish val) { finish = val; }
    int getFaces() const { return faces; }
    void setFaces(Faces val) { faces = val; }
    ProbeMaterial getMaterial() const { return material; }
    void setMaterial(ProbeMaterial val) { material = val; }

protected:
    /// Not public, and callable by name all the same.
    int countEdges() { return 12; }

private:
    /// How a probe keeps its books; private, and still with texts of its own.
    enum Bookkeeping
    {
        OPEN,
        CLOSED = 7
    };
    Bookkeeping getBookkeeping() const { return books; }
    void setBookkeeping(Bookkeeping val) { books = val; }

    String label;
    Finish finish = Finish::MATT;
    int faces = 0;
    ProbeMaterial material = PM_WOOD;
    Bookkeeping books = OPEN;
};

/// One member of every kind that the table tells apart, and a journal of what happens to the object.
class Probe : public AbstractProbe
{
    KV_REFLECTED(Probe)
public:
    /// How a probe moves.
    enum Gait
    {
        STANDS = 0,
        WALKS = 2,
        RUNS = 7
    };

    /// A part that is an object of its own.
    class Lid : public Object
    {
        KV_REFLECTED(Lid)
    };

    Probe() = default;
    ~Probe() override;

    void onMurder() override;
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;
    float reach() const override { return 1; }
    String describe() const override { return SCS("probe"); }

    bool getAwake() const { return awake; }
    void setAwake(bool val) { awake = val; }
    /// Metres a second. Not shown in the tooltip.
    float getSpeed() const { return speed; }
    void setSpeed(float val) { speed = val; }
    int getLimit() const { return limit; }
    /// Fails with OUT_OF_BOUNDS for what is not positive.
    ErrorCode setLimit(int val);
    Gait getGait() const { return gait; }
    void setGait(Gait val) { gait = val; }
    Vec4 getEyeColor() const { return eyeColor; }
    void setEyeColor(Vec4 val) { eyeColor = val; }
    Quaternion getHeading() const { return heading; }
    void setHeading(Quaternion val) { heading = val; }
    Handle<Object> getPrey() const { return prey; }
    void setPrey(Handle<Object> val) { prey = val; }
    /// Not const and alone: a bar does not read it.
    int getSideEffect() { return ++reads; }
    float getValue() const { return value; }
    /// Can be written and not read.
    void setSecret(int val) { value = float(val); }
    /// Takes an argument, so it is no property.
    float getCorner(int which) const { return float(which); }
    /// Its one argument is no object, so it is no property.
    static float getVolume(float width) { return width * width * width; }

    /// Adds to the value.
    void addValue(float amount) { value += amount; }
    int addFour(int a, int b, int c, int d) { return a + b + c + d; }
    static int countOf(const String &text) { return int(text.size()); }
    /// As many arguments as a call takes, none of them an object.
    static bool acceptFour(const ReflectorPtr &, int, int, int, int) { return true; }
    int overloaded(int val) { return val; }
    String overloaded(const String &val) { return val; }
    /// Whether another probe is alive.
    bool nest(const Handle<Probe> &other) const { return other.isValid(); }
    Millimetres inMillimetres(Millimetres offset) const { return 1000 + offset; }
    Vec4 shifted(const Vec4 &by, unsigned char times, double scale, bool negate) const;

    Vec4 echoVector(const Vec4 &v) { return v; }
    Quaternion echoRotation(const Quaternion &q) { return q; }
    String echoText(const String &text) { return text; }
    bool echoBool(bool b) { return b; }
    char echoChar(char c) { return c; }
    int echoInt(int i) { return i; }
    double echoDouble(double d) { return d; }
    Handle<Object> echoHandle(Handle<Object> h) { return h; }
    ReflectorPtr echoReflector(const ReflectorPtr &r) { return r; }
    Variant echoVariant(const Variant &v) { return v; }

    /// Adds what a message brings.
    void handleValueMessage(const ReflectorPtr &messageType, float amount);
    /// Fails after it has counted the call.
    ErrorCode failingHandler(const ReflectorPtr &messageType, float amount);
    /// Calls a script's callable and passes its failure on.
    ErrorCode callBack(const ReflectorPtr &callable, const Variant &argument);
    ErrorCode failPlainly() { return ErrorCode::MAP_DATA_ERROR; }
    ErrorReturn<int> failWithValue() { return ErrorCode::OUT_OF_BOUNDS; }
    ErrorReturn<int> succeedWithValue() { return 5; }
    void throwNative();
    /// Text that is not UTF-8.
    String getBrokenText() const { return String::copyFrom("caf\xe9"); }
    /// A value with no script form.
    Variant getNothing() const { return Variant(); }

    int takesFive(int a, int b, int c, int d, int e) { return a + b + c + d + e; }
    /// No script can make this argument.
    void takePointer(int *numbers) { value = float(*numbers); }
    template <class T>
    T echoed(T val)
    {
        return val;
    }
    int gone() = delete;

    bool awake = false;
    float value = 0;
    float speed = 1; ///< metres a second
    int limit = 5;
    Gait gait = STANDS;
    Vec4 eyeColor = Vec4(1, 0, 0, 1);
    Quaternion heading;
    Handle<Object> prey;
    int reads = 0;
    int calls = 0;
    std::vector<std::pair<Handle<Object>, Handle<Object>>> moves;
    std::function<void()> whenMurdered, whenDestroyed, whenCalled, onLimit;
};

/// A class that adds one member and overrides none.
class FastProbe : public Probe
{
    KV_REFLECTED(FastProbe)
public:
    FastProbe() = default;

    int getBoost() const { return boost; }
    void setBoost(int val) { boost = val; }

    int boost = 0;
};

/// A probe that only its friends can make.
class SealedProbe : public Probe
{
    KV_REFLECTED(SealedProbe)
private:
    SealedProbe() = default;
};

/// Described in the table and not callable, since no handle refers to it.
struct PlainProbe
{
    int corners = 0;
    int getCorners() const { return corners; }
};

/// Double of a number, as a function without an object.
inline int doubledNumber(int value)
{
    return value * 2;
}

/// Makes a probe under a parent, or at the top of a tree of its own.
Handle<Probe> spawn(const char *name, const Handle<Object> &parent = Handle<Object>());
