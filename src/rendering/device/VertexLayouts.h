// VertexLayouts: the vertex types, and what the device makes of a pair of them.
#pragma once

#include "rendering/device/VertexDescription.h"

#include "port/d3d9/d3d9types.h"

#include <map>
#include <utility>
#include <vector>

struct IDirect3DDevice9;
struct IDirect3DVertexDeclaration9;

/// Descriptions by vertex type, and the device's declarations by the types of the mesh and the instance stream.
///
/// Owns the declarations, which survive a reset of the device.
class VertexLayouts
{
public:
    VertexLayouts() = default;
    ~VertexLayouts() { release(); }
    VertexLayouts(const VertexLayouts &) = delete;
    VertexLayouts &operator=(const VertexLayouts &) = delete;

    void addVertexType(const VertexDescription &description);
    /// What a vertex type is made of; an unknown type is an assertion and gives an empty description.
    const VertexDescription &describe(MeshVertexType type) const;
    /// The declaration for a mesh stream and an instance stream, borrowed and cached; null if it failed.
    IDirect3DVertexDeclaration9 *declare(IDirect3DDevice9 &device, MeshVertexType vertexType,
                                         MeshVertexType instanceType);
    /// Gives the declarations back; the descriptions stay.
    void release();

private:
    typedef std::pair<MeshVertexType, MeshVertexType> StreamTypes;

    void addElements(std::vector<D3DVERTEXELEMENT9> &elements, unsigned stream, MeshVertexType type,
                     unsigned &nextTexCoordID) const;

    typedef std::map<MeshVertexType, VertexDescription> VertexDescriptionMap;
    typedef std::map<StreamTypes, IDirect3DVertexDeclaration9 *> D3DVertexDeclarationMap;

    VertexDescriptionMap vertexDescriptions;
    D3DVertexDeclarationMap d3dVertexDeclarations;
};

/// Adds the two types that the engine's own effects read.
void initDefaultVertexTypes(VertexLayouts &layouts);
