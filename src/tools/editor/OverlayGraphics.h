// OverlayGraphics: many shapes of one kind, drawn over the world in one call.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/device/VertexDescription.h"

#include "foundation/Matrix4.h"

#include <vector>

class DynamicMeshAsset;

/// One kind of what the editor draws over the world: lines of a width in pixels, the edges of boxes, flat areas, solids.
///
/// In the layer SCREEN_DEBUG it is seen through everything and as fine as the window; in WORLD_DEBUG what stands before
/// it hides it. Each shape is an instance, placed by a matrix, with a colour and a width. Whoever owns it fills the list
/// and says through which camera it is seen.
class OverlayGraphics : public GraphicsComponent2
{
    KV_REFLECTED(OverlayGraphics)
public:
    /// What an instance is, before its matrix places it.
    enum Shape
    {
        OS_AREA = 0, ///< the unit square of the x/z plane, from both sides
        OS_BOX = 1,  ///< the edges of the unit cube around the origin
        OS_LINE = 2, ///< from the origin to x 1
        OS_CONE = 3, ///< from a unit disc at the origin to the tip at x 1
        OS_CUBE = 4  ///< the unit cube around the origin
    };
    typedef std::vector<DefaultInstanceVertex> InstanceList;

    OverlayGraphics() = default;

    /// Makes the mesh of the shape.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    int objectGetInstanceCount() override;

    Shape getShape() const { return shape; }
    /// Says what is drawn; before the load is complete.
    void setShape(Shape val) { shape = val; }
    /// The shapes of the next frame.
    InstanceList &getInstances() { return instances; }
    /// The way from world space to clip space, for column vectors.
    void setWorldToClip(const Matrix4 &val) { worldToClip = val; }

    /// A shape placed by a matrix.
    /// @param color  0..1, alpha in w
    /// @param width  of its lines, pixels
    static DefaultInstanceVertex place(const Matrix4 &matrix, const Vec4 &color, float width = 1.f);

private:
    bool isWire() const { return shape == OS_BOX || shape == OS_LINE; }

    Shape shape = OS_LINE;
    InstanceList instances;
    Matrix4 worldToClip;
    Handle<DynamicMeshAsset> mesh;
};
