// HeightMapGraphics: a terrain drawn from an image of its heights.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/drawn/HeightField.h"
#include "rendering/drawn/SurfaceTextures.h"

class DynamicMeshAsset;

/// A terrain around its entity's position: the transform's scale is its width, its greatest height and its depth.
///
/// The heights come from an image of the texture folder, black 0 to white 1, its top towards +z; or they are set one by
/// one. An image that cannot be read is logged and leaves the terrain flat. Heights changed while it is drawn show in
/// the next frame.
class HeightMapGraphics : public GraphicsComponent2, public SurfaceTextures
{
    KV_REFLECTED(HeightMapGraphics)
public:
    HeightMapGraphics() = default;

    /// Reads the heights and requests the maps, then enters the scene graph.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    /// Writes nothing: every terrain is a draw call of its own.
    void objectDraw(BatchProxy &batch) override;
    /// 0, and nothing drawn, without a transform.
    int objectGetInstanceCount() override;

    /// Height of the surface at a place, in the space of the entity's position; 0 without a transform.
    ///
    /// Beside the terrain, the height of its nearest edge. The terrain may be turned about y; one that is tilted is
    /// taken as upright.
    float getHeight(float x, float z) const;

    String getHeightMapName() const { return heightMapName; }
    /// Name of the image's file; the terrain has one point a pixel, at most 513 along a side.
    ///
    /// An image has 256 heights; a DDS of 32-bit floats has finer ones. An empty name leaves the heights as they are.
    void setHeightMapName(const String &val);
    /// Makes the terrain flat, with this many points along x and z, 2 to 513.
    void makeFlat(int columns, int rows);
    /// Sets one point's height, 0..1 of the scale; column 0 is at -x, row 0 at +z. One outside is ignored.
    void setHeightAt(int column, int row, float val);
    /// One point's height, 0..1 of the scale; outside, the nearest one's.
    float getHeightAt(int column, int row) const { return field.get(column, row); }
    /// Points along x.
    int getColumns() const { return field.getColumns(); }
    /// Points along z.
    int getRows() const { return field.getRows(); }

    /// What is drawn, over the unit square; invalid before the terrain is first drawn.
    Handle<DynamicMeshAsset> getMesh() const { return mesh; }

    float getTextureRepeat() const { return textureRepeat; }
    /// How often the maps lie along each side.
    void setTextureRepeat(float val);

private:
    void readHeights();
    void rebuild();

    Handle<DynamicMeshAsset> mesh; ///< over the unit square; invalid before the terrain is first drawn
    String heightMapName;
    HeightField field;
    float textureRepeat = 1.0f;
    bool meshIsStale = true; ///< heights or texture coordinates have changed since the mesh was made
    bool loaded = false;     ///< from onLoadComplete on, a new name is read at once
};
