// ReflectedShapes: classes with every kind of member that the reflection table tells apart.
#pragma once

#include "object/tree/Object.h"
#include "object/reflection/SavedArguments.h"

/// Whole millimetres, to see that a typedef crosses like the type behind it.
typedef long Millimetres;

/// What a shape is made of.
enum ShapeMaterial
{
    SM_WOOD,
    SM_IRON = 5,
    SM_METAL = 5, ///< the same number again: the first name stands for it
    SM_GLASS
};

/// A shape that only its subclasses know how to measure.
class ReflectedShape : public Object
{
    KV_REFLECTED(ReflectedShape)
public:
    /// How a shape's surface looks.
    enum class Finish
    {
        MATT,
        GLOSSY
    };

    /// Which faces a shape shows.
    enum Faces
    {
        FRONT = 1,
        BACK = 2,
        SIDES = 4
    };

    /// Surface in square metres.
    virtual float area() const = 0;
    /// What kind of shape this is.
    virtual String describe() const { return SCS("shape"); }

    String getLabel() const { return label; }
    void setLabel(const String &text) { label = text; }
    Finish getFinish() const { return finish; }
    void setFinish(Finish value) { finish = value; }
    int getFaces() const { return faces; }
    void setFaces(Faces value) { faces = value; }
    ShapeMaterial getMaterial() const { return material; }
    void setMaterial(ShapeMaterial value) { material = value; }

protected:
    /// Not public, and callable by name all the same.
    int countEdges() { return 12; }

private:
    /// How a shape keeps its books; private, and still with texts of its own.
    enum Bookkeeping
    {
        OPEN,
        CLOSED = 7
    };
    Bookkeeping getBookkeeping() const { return books; }
    void setBookkeeping(Bookkeeping value) { books = value; }

    String label;
    Finish finish = Finish::MATT;
    int faces = 0;
    ShapeMaterial material = SM_WOOD;
    Bookkeeping books = OPEN;
};

/// A box with a width.
class ReflectedBox : public ReflectedShape
{
    KV_REFLECTED(ReflectedBox)
public:
    /// A part of a box that is an object of its own.
    class Lid : public Object
    {
        KV_REFLECTED(Lid)
    public:
        bool isOpen() const { return true; }
    };

    float area() const override { return width * width * 6; }
    String describe() const override { return SCS("box"); }

    float getWidth() const { return width; }
    void setWidth(float metres) { width = metres; }
    /// Takes an argument, so it is no property.
    float getCorner(int which) const { return width * which; }
    /// Too short a name for a property.
    int get() const { return 1; }
    /// Can be written and not read.
    void setSecret(int value) { secret = value; }

    int overloaded(int value) { return value; }
    String overloaded(const String &value) { return value; }

    /// Puts another box into this one.
    /// @return whether that box is alive
    bool nest(const Handle<ReflectedBox> &other) const { return other.isValid(); }
    Millimetres inMillimetres(Millimetres offset) const { return Millimetres(width * 1000) + offset; }
    Vec4 shifted(const Vec4 &by, unsigned char times, double scale, bool negate) const;
    ErrorCode refuse() { return ErrorCode::OUT_OF_BOUNDS; }
    ErrorReturn<int> divide(int by) const;
    const String &getMotto() const { return motto; }
    static int sides() { return 6; }
    /// Its one argument is no object, so it is no property.
    static float getVolume(float width) { return width * width * width; }

    int takesFive(int a, int b, int c, int d, int e) { return a + b + c + d + e; }
    int takesPointer(const char *text) { return text != nullptr; }
    template <class T>
    T echoed(T value)
    {
        return value;
    }
    int gone() = delete;

    int secret = 0;

private:
    float width = 1; ///< metres
    String motto = SCS("six sides");
};

/// A box that only its friends can make.
class ReflectedVault : public ReflectedBox
{
    KV_REFLECTED(ReflectedVault)
public:
    String describe() const override { return SCS("vault"); }

private:
    ReflectedVault() = default;
};

/// Described in the table and not callable, since no handle refers to it.
struct PlainShape
{
    int corners = 0;
    int getCorners() const { return corners; }
};

/// Double of a number, as a function without an object.
inline int doubledNumber(int value)
{
    return value * 2;
}
