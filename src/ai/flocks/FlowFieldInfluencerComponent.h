// FlowFieldInfluencerComponent: leaves the motion of an object in a map's field of flows.
#pragma once

#include "physics/grid/GridCell.h"

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <vector>

class SquareGrid;
class TransformComponent;

/// Stamps the velocity of the body beside it into the flows around it, under the component key "flowInfluence".
///
/// Metres, seconds. What passes draws smoke and leaves along: cells within influenceRadius take its velocity while it
/// moves, and twice a second those within averageRadius are evened out, so that the wake spreads. Nothing fades by
/// itself. The field is looked up once, in the first frame.
class FlowFieldInfluencerComponent : public SimpleComponent
{
    KV_REFLECTED(FlowFieldInfluencerComponent)
public:
    FlowFieldInfluencerComponent() = default;

    /// Has the field looked up anew in the next frame.
    void onLoadComplete() override;
    /// Draws both circles and the flows within the larger one, while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    void doFrame() override;

    /// Gives the cells around the object its velocity, if it moves.
    void updateFlowField();
    /// Evens out the cells around the object, row by row.
    void averageFlowField();
    /// Gives a cell the mean of its own flow and those around it.
    ///
    /// Nothing where nothing flows, and for a cell that lies farther than averageRadius from the object's.
    void averageCellVector(GridCell cell, GridCell entityCell);
    /// Lays a circle around the object that developers see.
    void calculatePerimeterDebug(float radius, std::vector<Vec4> &perimeterVecs);

    /// Whether the field has been looked up.
    bool getTempInit() const { return tempInit; }
    void setTempInit(bool val) { tempInit = val; }
    /// How far around the object flows take its velocity, metres.
    float getInfluenceRadius() const { return influenceRadius; }
    void setInfluenceRadius(float val);
    /// How far around the object flows are evened out, metres.
    float getAverageRadius() const { return averageRadius; }
    void setAverageRadius(float val);
    /// Seconds since flows were evened out.
    double getTimeSinceAverage() const { return timeSinceAverage; }
    void setTimeSinceAverage(double val) { timeSinceAverage = val; }
    /// The field that it stamps; invalid for none.
    Handle<SquareGrid> getFlowField() const { return hFlowField; }
    void setFlowField(Handle<SquareGrid> val) { hFlowField = val; }
    /// The circles that developers see.
    const std::vector<Vec4> &getInfluencePerimeterVecs() const { return influencePerimeterVecs; }
    const std::vector<Vec4> &getAveragePerimeterVecs() const { return averagePerimeterVecs; }

private:
    TransformComponent *findTransform();
    GridCell findCell();
    static void setFlow(SquareGrid &field, int x, int z, const Vec4 &flow);

    bool tempInit = false;
    float influenceRadius = 0.f;
    float averageRadius = 0.f;
    Seconds timeSinceAverage = 0;
    Handle<SquareGrid> hFlowField;
    std::vector<Vec4> influencePerimeterVecs;
    std::vector<Vec4> averagePerimeterVecs;
};
