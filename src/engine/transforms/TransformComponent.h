// TransformComponent: position, orientation and scale of an entity.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

class MapRootEntity;

/// Gives an entity its place, under the component key "transform".
///
/// Metres. An entity directly under a map lives in that map's space, any other one in world space: the space follows
/// the hierarchy, and moving an entity between them does not convert its numbers.
class TransformComponent : public SimpleComponent
{
    KV_REFLECTED(TransformComponent)
public:
    /// Space that positions and orientations are given in.
    enum CoordinateSpace
    {
        MAP_SPACE = 0,    ///< space of the map that the entity lies in
        WORLD_SPACE = 1,  ///< space of the level
        SCREEN_SPACE = 2, ///< normalised window units
        NATIVE_SPACE = 3  ///< the space in which the transform holds its numbers
    };

    /// What a matrix is made of, combined as bits.
    enum TransformMatrixFlags
    {
        OMIT_TRANSLATE = 1,
        OMIT_ROTATE = 2,
        OMIT_SCALE = 4,
        TRANSPOSE = 8,
        INVERT = 16,
        USE_OFFSET = 32, ///< measure the position from the model's origin
        INTO_WORLD_SPACE = 64,
        INTO_MAP_SPACE = 128,
        SPACES_MASK = 192,
        INTO_NATIVE_SPACE = 0
    };

    TransformComponent() = default;

    /// Marks the transform ready: from now on its angle can be set.
    void onLoadComplete() override;
    /// Draws the axes: x red, y green, z blue, each one metre long; only while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    /// Takes the native space from the entity's place in the tree.
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;
    void doFrame() override {}

    /// Sets the position in native space, metres; w is 1.
    void setPosition(Vec4 val) { position = val; }
    /// Position in native space, metres; w is 1.
    Vec4 getPosition() const { return position; }
    /// Sets the orientation in native space.
    void setOrientation(Quaternion val) { orientation = val; }
    /// Orientation in native space.
    Quaternion getOrientation() const { return orientation; }
    /// Sets the scale along the object's own axes.
    void setScale(Vec4 val) { scale = val; }
    /// Scale along the object's own axes.
    Vec4 getScale() const { return scale; }
    /// Sets the model's origin in object space, before scale and rotation, metres.
    void setModelOriginOffset(Vec4 val) { modelOriginOffset = val; }
    /// Origin of the model in object space, before scale and rotation, metres.
    Vec4 getModelOriginOffset() const { return modelOriginOffset; }
    /// Space in which position and orientation are held.
    CoordinateSpace getNativeSpace() const { return nativeSpace; }

    /// Position, less the turned and scaled model origin with USE_OFFSET, and negated with INVERT in all components.
    Vec4 getPositionWithFlags(unsigned flags);
    /// Matrix T*R*S from object space to native space, varied by the flags.
    ///
    /// INVERT alone gives the true inverse, TRANSPOSE alone the transpose; both together give T'(-p)*R*S^-1. The flags
    /// that name a space are for the caller's own space change and play no part here. A scale of 0 inverts to
    /// infinity.
    Matrix4 getTransformationMatrix(unsigned flags = INTO_NATIVE_SPACE);
    /// The matrix of a viewer: the same computation as the transformation matrix.
    Matrix4 getCameraMatrix(unsigned flags = INTO_NATIVE_SPACE);

    /// Where the object faces: its z axis with y negated, w 0. The angle operations rest on this negation.
    Vec4 getDirection();
    /// Rotation that faces along the direction with an up vector of its own choice.
    Quaternion getDirectionQuaternion();
    /// What the orientation adds to the direction's own rotation: the turn about the facing axis.
    Quaternion getAngleQuaternion();
    /// Turn about the facing axis, radians.
    float getAngle();
    /// Turns the object about its facing axis to this angle, radians; ignored until the load is complete.
    void setAngle(float val);

    /// The map that the object lies in.
    ///
    /// In map space the entity's parent, in world space the coordinator's answer for the position; invalid where there
    /// is none.
    Handle<MapRootEntity> findMap();
    /// Matrix from native space into another space; a map's scale is never part of it.
    ///
    /// The identity for the native space itself, and where there is no map to go through. A change between other
    /// spaces than map and world is reported as an error and gives the identity. Of the flags TRANSPOSE and INVERT
    /// count.
    Matrix4 getSpaceChangeTransform(CoordinateSpace space, unsigned flags = 0);

private:
    Vec4 position = Vec4(0.f, 0.f, 0.f, 1.f); ///< native space, metres
    Quaternion orientation = Quaternion(1.f, 0.f, 0.f, 0.f);
    Vec4 scale = Vec4(1.f, 1.f, 1.f, 0.f);
    CoordinateSpace nativeSpace = WORLD_SPACE;
    bool ready = false;                                ///< set when the load is complete
    Vec4 modelOriginOffset = Vec4(0.f, 0.f, 0.f, 0.f); ///< object space, metres
};
