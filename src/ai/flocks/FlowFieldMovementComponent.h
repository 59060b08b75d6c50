// FlowFieldMovementComponent: lets a map's field of flows carry an object.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/Vector.h"

#include <vector>

class SquareGrid;
class TransformComponent;

/// Gives the body beside it the velocity of the flow around it, under the component key "flowMovement".
///
/// Metres, seconds. Smoke, leaves on water and crowds go by it. Where nothing flows the body keeps its own velocity.
/// The field is looked up once, in the first frame. Nobody takes it from whoever else moves the body: what steers and
/// flows at once is moved by the flow, which comes later in the frame.
class FlowFieldMovementComponent : public SimpleComponent
{
    KV_REFLECTED(FlowFieldMovementComponent)
public:
    FlowFieldMovementComponent() = default;

    /// Has the field looked up anew in the next frame.
    void onLoadComplete() override;
    /// Draws the circle that is sampled, and the velocity that it gives, while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    void doFrame() override;

    /// Sums up the flows around the body and gives it their direction, at flowSpeed.
    void sampleFlowField();
    /// Lays the circle that developers see.
    void calculatePerimeterDebug();

    /// Whether the field has been looked up.
    bool getTempInit() const { return tempInit; }
    void setTempInit(bool val) { tempInit = val; }
    /// How far around the body flows count, metres.
    float getSampleRadius() const { return sampleRadius; }
    void setSampleRadius(float val);
    /// How fast it is carried, metres a second.
    float getFlowSpeed() const { return flowSpeed; }
    void setFlowSpeed(float val);
    /// The field that carries it; invalid for none.
    Handle<SquareGrid> getFlowField() const { return hFlowField; }
    void setFlowField(Handle<SquareGrid> val) { hFlowField = val; }
    /// The circle that developers see.
    const std::vector<Vec4> &getSamplingPerimeterVecs() const { return samplingPerimeterVecs; }

private:
    TransformComponent *findTransform();

    bool tempInit = false;
    float sampleRadius = 0.f;
    float flowSpeed = 0.f;
    Handle<SquareGrid> hFlowField;
    std::vector<Vec4> samplingPerimeterVecs;
};
