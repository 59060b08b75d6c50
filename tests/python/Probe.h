// Probe: an object with one member of every shape that scripts can reach.
#pragma once

#include "object/tree/Object.h"
#include "object/reflection/Variant.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

/// What a script's call does to the native side, one member a case.
class Probe : public Object
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

    Probe() = default;

    /// Adds to the value.
    void addValue(float amount) { value += amount; }
    float getValue() const { return value; }
    float getSpeed() const { return speed; }
    void setSpeed(float val) { speed = val; }
    void setSecret(int val) { value = float(val); }

    int addFour(int a, int b, int c, int d) { return a + b + c + d; }
    static int countOf(const String &text) { return int(text.size()); }

    Gait getGait() const { return gait; }
    void setGait(Gait val) { gait = val; }
    Vec4 echoVector(const Vec4 &v) { return v; }
    Quaternion echoRotation(const Quaternion &q) { return q; }
    String echoText(const String &text) { return text; }
    bool echoBool(bool b) { return b; }
    char echoChar(char c) { return c; }
    int echoInt(int i) { return i; }
    double echoDouble(double d) { return d; }
    Handle<Object> echoHandle(Handle<Object> h) { return h; }
    Handle<Probe> echoProbe(Handle<Probe> h) { return h; }
    ReflectorPtr echoReflector(const ReflectorPtr &r) { return r; }
    Variant echoVariant(const Variant &v) { return v; }

    /// Adds what a message brings.
    void handleValueMessage(const ReflectorPtr &messageType, float amount) { value += amount; }
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
    /// No script can make this argument.
    void takePointer(int *numbers) { value = float(*numbers); }

    float value = 0;
    float speed = 0; ///< metres a second
    Gait gait = STANDS;
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

/// A class without objects of its own.
class AbstractProbe : public Object
{
    KV_REFLECTED(AbstractProbe)
public:
    virtual void move() = 0;
};
