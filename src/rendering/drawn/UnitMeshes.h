// UnitMeshes: small meshes that many drawn objects share, and empty ones for those that fill their own.
#pragma once

#include "object/tree/Handle.h"

class DynamicMeshAsset;
class MeshAsset;
class Object;

/// A square of side 1 in the plane z 0 that faces -z, its lower left corner in the origin; its texture stands upright.
Handle<MeshAsset> getUnitQuad();

/// A cube of side 1 around the origin: corners only, without normals and texture coordinates.
Handle<MeshAsset> getUnitCube();

/// A new empty mesh for a component to fill, as its child, so that it dies with it; nothing is drawn of it before.
Handle<DynamicMeshAsset> makeDynamicMesh(const Object &owner);
