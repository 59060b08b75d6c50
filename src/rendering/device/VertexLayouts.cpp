#include "rendering/device/VertexLayouts.h"

#include "rendering/device/DeviceCalls.h"

#include "object/reflection/EnumText.h"

namespace
{

/// Usage by semantic; false for a semantic that is none.
bool findUsage(VertexElementSemantic semantic, D3DDECLUSAGE &usage)
{
    switch (semantic)
    {
    case VES_POSITION:
        usage = D3DDECLUSAGE_POSITION;
        return true;
    case VES_NORMAL:
        usage = D3DDECLUSAGE_NORMAL;
        return true;
    case VES_TANGENT:
        usage = D3DDECLUSAGE_TANGENT;
        return true;
    case VES_BITANGENT:
        usage = D3DDECLUSAGE_BINORMAL;
        return true;
    case VES_OTHER:
        usage = D3DDECLUSAGE_TEXCOORD;
        return true;
    }
    return false;
}

} // namespace

void VertexLayouts::addVertexType(const VertexDescription &description)
{
    vertexDescriptions[description.vertexType] = description;
}

const VertexDescription &VertexLayouts::describe(MeshVertexType type) const
{
    static const VertexDescription unknown;
    const auto description = vertexDescriptions.find(type);
    KV_ASSERT(description != vertexDescriptions.end(), "No vertex type %i is described.", static_cast<int>(type));
    return description == vertexDescriptions.end() ? unknown : description->second;
}

IDirect3DVertexDeclaration9 *VertexLayouts::declare(IDirect3DDevice9 &device, MeshVertexType vertexType,
                                                    MeshVertexType instanceType)
{
    const StreamTypes types(vertexType, instanceType);
    const auto known = d3dVertexDeclarations.find(types);
    if (known != d3dVertexDeclarations.end())
        return known->second;
    std::vector<D3DVERTEXELEMENT9> elements;
    unsigned nextTexCoordID = 0;
    addElements(elements, 0, vertexType, nextTexCoordID);
    if (instanceType != MVT_NONE)
        addElements(elements, 1, instanceType, nextTexCoordID);
    elements.push_back(D3DDECL_END());
    IDirect3DVertexDeclaration9 *declaration = nullptr;
    if (!verified(device.CreateVertexDeclaration(elements.data(), &declaration)).succeeded())
        return nullptr;
    d3dVertexDeclarations[types] = declaration;
    return declaration;
}

void VertexLayouts::addElements(std::vector<D3DVERTEXELEMENT9> &elements, unsigned stream, MeshVertexType type,
                                unsigned &nextTexCoordID) const
{
    for (const VertexElement &element : describe(type).elements)
        for (int vector = 0; vector < element.vectors; ++vector)
        {
            D3DDECLUSAGE usage = D3DDECLUSAGE_TEXCOORD;
            const bool known = findUsage(element.semantic, usage);
            KV_CRITICAL_ASSERT(known,
                               "Unknown VertexElementSemantic %s. GraphicsSystem2::addD3D9VertexElements probably "
                               "needs to be updated.",
                               enumToString(element.semantic).toCString());
            const auto offset = element.offset + sizeof(float) * static_cast<std::size_t>(vector * element.values);
            D3DVERTEXELEMENT9 d3dElement = {};
            d3dElement.Stream = static_cast<WORD>(stream);
            d3dElement.Offset = static_cast<WORD>(offset);
            d3dElement.Type = static_cast<BYTE>(D3DDECLTYPE_FLOAT1 + element.values - 1);
            d3dElement.Method = D3DDECLMETHOD_DEFAULT;
            d3dElement.Usage = static_cast<BYTE>(usage);
            d3dElement.UsageIndex = static_cast<BYTE>(usage == D3DDECLUSAGE_TEXCOORD ? nextTexCoordID++ : vector);
            elements.push_back(d3dElement);
        }
}

void VertexLayouts::release()
{
    for (auto &[types, declaration] : d3dVertexDeclarations)
        releaseAndForget(declaration);
    d3dVertexDeclarations.clear();
}

void initDefaultVertexTypes(VertexLayouts &layouts)
{
    VertexDescription vertex(SCS("DefaultMeshVertex"), MVT_DEFAULT, sizeof(DefaultMeshVertex));
    vertex.addElement(offsetof(DefaultMeshVertex, position), SCS("position"), VES_POSITION, 3, 1);
    vertex.addElement(offsetof(DefaultMeshVertex, normal), SCS("normal"), VES_NORMAL, 3, 1);
    vertex.addElement(offsetof(DefaultMeshVertex, tangent), SCS("tangent"), VES_TANGENT, 3, 1);
    vertex.addElement(offsetof(DefaultMeshVertex, bitangent), SCS("bitangent"), VES_BITANGENT, 3, 1);
    vertex.addElement(offsetof(DefaultMeshVertex, texCoord0), SCS("texCoord0"), VES_OTHER, 2, 1);
    layouts.addVertexType(vertex);

    VertexDescription instance(SCS("DefaultInstanceVertex"), MVT_DEFAULT_INSTANCE, sizeof(DefaultInstanceVertex));
    instance.addElement(offsetof(DefaultInstanceVertex, modelMatrix), SCS("modelMatrix"), VES_OTHER, 4, 3);
    instance.addElement(offsetof(DefaultInstanceVertex, normalMatrix), SCS("normalMatrix"), VES_OTHER, 3, 3);
    layouts.addVertexType(instance);
}
