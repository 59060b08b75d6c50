// Subjects: the objects that the benchmarks look up, call, message and step.
#pragma once

#include "engine/entities/Entity.h"
#include "engine/entities/SimpleComponent.h"

#include "w08_bt_common.h"

/// An object with one number, as look-ups read it.
class BenchPoint : public Object
{
    KV_REFLECTED(BenchPoint)
public:
    std::uint32_t value = 0;
};

/// An object with 32 reflected members, called and read by name.
class BenchThing : public Object
{
    KV_REFLECTED(BenchThing)
public:
    void m00(float v) { speed = v; }
    void m01(float v) { speed = v; }
    void m02(float v) { speed = v; }
    void m03(float v) { speed = v; }
    void m04(float v) { speed = v; }
    void m05(float v) { speed = v; }
    void m06(float v) { speed = v; }
    void m07(float v) { speed = v; }
    void m08(float v) { speed = v; }
    void m09(float v) { speed = v; }
    void m10(float v) { speed = v; }
    void m11(float v) { speed = v; }
    void m12(float v) { speed = v; }
    void m13(float v) { speed = v; }
    void m14(float v) { speed = v; }
    float getP00() const { return speed; }
    float getP01() const { return speed; }
    float getP02() const { return speed; }
    float getP03() const { return speed; }
    float getP04() const { return speed; }
    float getP05() const { return speed; }
    float getP06() const { return speed; }
    float getP07() const { return speed; }
    float getP08() const { return speed; }
    float getP09() const { return speed; }
    float getP10() const { return speed; }
    float getP11() const { return speed; }
    float getP12() const { return speed; }
    float getP13() const { return speed; }

    virtual void addValue(float v) { value += v; }
    float getSpeed() const { return speed; }
    void setSpeed(float v) { speed = v; }

    float value = 0;
    float speed = 0;
};

/// An object that sums what it is sent.
class BenchListener : public Object
{
    KV_REFLECTED(BenchListener)
public:
    /// Out of line, as the handlers of the peers are kept from being inlined.
    void handleValueMessage(const ReflectorPtr &messageType, float v);

    float sum = 0;
};

/// A component that moves by its speed each frame; ten classes of it stand for ten kinds of game object.
class BenchMover : public SimpleComponent
{
    KV_REFLECTED(BenchMover)
public:
    void doFrame() override { x += v * 0.016f; }

    float x = 0;
    float v = 1;
    char rest[40] = {};
};

class BenchMover1 : public BenchMover
{
    KV_REFLECTED(BenchMover1)
public:
    void doFrame() override { x += v * 0.016f; }
};

class BenchMover2 : public BenchMover
{
    KV_REFLECTED(BenchMover2)
public:
    void doFrame() override { x += v * 0.016f; }
};

class BenchMover3 : public BenchMover
{
    KV_REFLECTED(BenchMover3)
public:
    void doFrame() override { x += v * 0.016f; }
};

class BenchMover4 : public BenchMover
{
    KV_REFLECTED(BenchMover4)
public:
    void doFrame() override { x += v * 0.016f; }
};

class BenchMover5 : public BenchMover
{
    KV_REFLECTED(BenchMover5)
public:
    void doFrame() override { x += v * 0.016f; }
};

class BenchMover6 : public BenchMover
{
    KV_REFLECTED(BenchMover6)
public:
    void doFrame() override { x += v * 0.016f; }
};

class BenchMover7 : public BenchMover
{
    KV_REFLECTED(BenchMover7)
public:
    void doFrame() override { x += v * 0.016f; }
};

class BenchMover8 : public BenchMover
{
    KV_REFLECTED(BenchMover8)
public:
    void doFrame() override { x += v * 0.016f; }
};

class BenchMover9 : public BenchMover
{
    KV_REFLECTED(BenchMover9)
public:
    void doFrame() override { x += v * 0.016f; }
};

/// A creature whose leaves count their visits.
class BenchCreature : public Entity
{
    KV_REFLECTED(BenchCreature)
public:
    Agent agent;
};
