// The drawn world: models, boxes and terrain into the G-buffer, quads and lines onto the screen.
//
// Vertices are position, normal, tangent, binormal and one texture coordinate. Instanced techniques take the first
// three rows of the world matrix (column-vector form) from TEXCOORD1 to 3 and those of the normal matrix from
// TEXCOORD4 to 6. "WorldSpace" techniques take positions as they are; "NonInstanced" ones take "modelToWorld".
// "CrappyLines" takes world-space positions, and the colour of a line from the normal. "CrappyTexturedQuads" tints by
// the normal and the tangent's x, unless the normal points to -z.
//
// Into the G-buffer a technique writes all three targets (see gbuffer.fxh); on the screen only the first is bound, and
// what arrives there is the plain texture colour.

#include "automatic.fxh"
#include "gbuffer.fxh"

float4x4 modelToWorld = { 1, 0, 0, 0,  0, 1, 0, 0,  0, 0, 1, 0,  0, 0, 0, 1 };

// Set for the shadow pass by the light; its camera is the pass's camera too, so shaders read that.
float4x4 worldToLightView;
float4x4 lightViewToLightProjection;

texture diffuseMap_texture;
texture normalMap_texture;
texture emissiveMap_texture;
texture specularMap_texture;

// Bound in the decals' pass; quads take part in it without reading them.
texture GBuffer2_texture;
texture GBuffer3_texture;

sampler diffuseMap = sampler_state
{
    Texture = <diffuseMap_texture>;
    MinFilter = Anisotropic; MagFilter = Linear; MipFilter = Linear; MaxAnisotropy = 4;
};
sampler normalMap = sampler_state
{
    Texture = <normalMap_texture>;
    MinFilter = Linear; MagFilter = Linear; MipFilter = Linear;
};
sampler emissiveMap = sampler_state
{
    Texture = <emissiveMap_texture>;
    MinFilter = Linear; MagFilter = Linear; MipFilter = Point; // a change of level does not show; costs half
};
sampler specularMap = sampler_state
{
    Texture = <specularMap_texture>;
    MinFilter = Linear; MagFilter = Linear; MipFilter = Point;
};
sampler flatImage = sampler_state
{
    Texture = <diffuseMap_texture>;
    MinFilter = Linear; MagFilter = Linear; MipFilter = Linear; AddressU = Clamp; AddressV = Clamp;
};

glsl VertexShader
{
    vec3 byRows(vec4 row0, vec4 row1, vec4 row2, vec4 v)
    {
        return vec3(dot(row0, v), dot(row1, v), dot(row2, v));
    }

    vec3 instancePosition()
    {
        return byRows(TEXCOORD1, TEXCOORD2, TEXCOORD3, vec4(POSITION.xyz, 1.0));
    }

    vec4 toClip(vec3 worldPosition)
    {
        return viewToProjection * (worldToView * vec4(worldPosition, 1.0));
    }

    out vec2 uv;
    // Of the two lengths that the tangent comes in, the longer one says that the binormal points the other way. The
    // depth is known to the pixel without being told. What a vertex passes on costs setup for each triangle.
    out vec3 normal;
    out vec3 tangent;

    /// Everything that the G-buffer's pixel shader reads, from world-space vectors.
    void writeSurface(vec3 worldPosition, vec3 worldNormal, vec3 worldTangent, vec3 worldBinormal)
    {
        gl_Position = toClip(worldPosition);
        uv = TEXCOORD0.xy;
        normal = mat3(worldToViewInverseTranspose) * worldNormal;
        float side = dot(cross(worldNormal, worldTangent), worldBinormal) < 0.0 ? 3.0 : 1.0;
        tangent = mat3(worldToView) * worldTangent * (side * inversesqrt(max(dot(worldTangent, worldTangent), 1e-20)));
    }
}

VertexShader instancedSurface
{
    void main()
    {
        vec4 t = vec4(TANGENT.xyz, 0.0), b = vec4(BINORMAL.xyz, 0.0), n = vec4(NORMAL.xyz, 0.0);
        writeSurface(instancePosition(), byRows(TEXCOORD4, TEXCOORD5, TEXCOORD6, n),
                     byRows(TEXCOORD1, TEXCOORD2, TEXCOORD3, t), byRows(TEXCOORD1, TEXCOORD2, TEXCOORD3, b));
    }
}

VertexShader nonInstancedSurface
{
    void main()
    {
        mat3 turn = mat3(modelToWorld);
        writeSurface((modelToWorld * vec4(POSITION.xyz, 1.0)).xyz, inverse(transpose(turn)) * NORMAL.xyz,
                     turn * TANGENT.xyz, turn * BINORMAL.xyz);
    }
}

VertexShader worldSpaceSurface
{
    void main()
    {
        writeSurface(POSITION.xyz, NORMAL.xyz, TANGENT.xyz, BINORMAL.xyz);
    }
}

PixelShader surface
{
    in vec2 uv;
    in vec3 normal;
    in vec3 tangent;

    /// Distance along the view axis, from what the projection made of it.
    float viewDepth()
    {
        bool perspective = viewToProjection[3][3] == 0.0;
        return perspective ? 1.0 / gl_FragCoord.w
                           : (gl_FragCoord.z - viewToProjection[3][2]) / viewToProjection[2][2];
    }

    vec3 mappedNormal()
    {
        vec3 n = normalize(normal);
        vec3 t = normalize(tangent - n * dot(n, tangent));
        vec3 b = dot(tangent, tangent) < 4.0 ? cross(n, t) : cross(t, n);
        vec3 bump = texture(normalMap, uv).xyz * 2.0 - 1.0;
        return normalize(t * bump.x + b * bump.y + n * bump.z);
    }

    void main()
    {
        COLOR0 = vec4(texture(diffuseMap, uv).rgb, packHighlight(texture(specularMap, uv).rgb));
        COLOR1 = vec4(packNormal(mappedNormal()), packDepth(viewDepth()));
        COLOR2 = vec4(texture(emissiveMap, uv).rgb, 1.0);
    }
}

// Depth alone, from the camera or a light

VertexShader instancedDepth
{
    void main()
    {
        gl_Position = toClip(instancePosition());
    }
}

VertexShader nonInstancedDepth
{
    void main()
    {
        gl_Position = toClip((modelToWorld * vec4(POSITION.xyz, 1.0)).xyz);
    }
}

VertexShader worldSpaceDepth
{
    void main()
    {
        gl_Position = toClip(POSITION.xyz);
    }
}

PixelShader shadowDepth
{
    void main()
    {
        // The inverse of the distance ahead, so that the cleared map means that nothing stands in the way.
        COLOR0 = vec4(gl_FragCoord.w);
    }
}

PixelShader nothing
{
    void main() {}
}

// Screen

VertexShader instancedImage
{
    out vec4 tint;
    void main()
    {
        gl_Position = toClip(instancePosition());
        uv = TEXCOORD0.xy;
        // A quad's normal points at the viewer. A text has its colour there, which is never negative.
        tint = NORMAL.z < 0.0 ? vec4(1.0) : vec4(NORMAL.xyz, TANGENT.x);
    }
}

PixelShader image
{
    in vec2 uv;
    in vec4 tint;
    void main()
    {
        COLOR0 = texture(flatImage, uv) * tint;
    }
}

VertexShader line
{
    out vec3 lineColor;
    void main()
    {
        gl_Position = toClip(POSITION.xyz);
        lineColor = NORMAL.xyz;
    }
}

PixelShader lineColored
{
    in vec3 lineColor;
    void main()
    {
        COLOR0 = vec4(lineColor, 1.0);
    }
}

// Models

technique Crappy
{
    pass Surface
    {
        CullMode = CCW; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = instancedSurface;
        PixelShader = surface;
    }
}

technique CrappyShadow
{
    pass Depth
    {
        CullMode = CCW; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = instancedDepth;
        PixelShader = shadowDepth;
    }
}

technique CrappyZPrePass
{
    pass Depth
    {
        CullMode = CCW; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = 0;
        VertexShader = instancedDepth;
        PixelShader = nothing;
    }
}

// Quads and texts

technique CrappyTexturedQuads
{
    pass Image
    {
        CullMode = None; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = True; SrcBlend = SrcAlpha; DestBlend = InvSrcAlpha; BlendOp = Add;
        AlphaTestEnable = True; AlphaFunc = Greater; AlphaRef = 0; // what is clear hides nothing behind it
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue; // alpha is another's: the colour of highlights
        VertexShader = instancedImage;
        PixelShader = image;
    }
}

technique CrappyTexturedQuadsShadow
{
    pass Depth
    {
        CullMode = None; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = instancedDepth;
        PixelShader = shadowDepth;
    }
}

technique CrappyTexturedQuadsZPrePass
{
    pass Depth
    {
        CullMode = None; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = 0;
        VertexShader = instancedDepth;
        PixelShader = nothing;
    }
}

// Boxes that stand in the world as they are

technique CrappyWorldSpaceTriangles
{
    pass Surface
    {
        CullMode = CCW; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = worldSpaceSurface;
        PixelShader = surface;
    }
}

technique CrappyWorldSpaceTrianglesShadow
{
    pass Depth
    {
        CullMode = CCW; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = worldSpaceDepth;
        PixelShader = shadowDepth;
    }
}

technique CrappyWorldSpaceTrianglesZPrePass
{
    pass Depth
    {
        CullMode = CCW; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = 0;
        VertexShader = worldSpaceDepth;
        PixelShader = nothing;
    }
}

// Single objects

technique NonInstancedObject
{
    pass Surface
    {
        CullMode = CCW; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = nonInstancedSurface;
        PixelShader = surface;
    }
}

technique NonInstancedObjectShadow
{
    pass Depth
    {
        CullMode = CCW; ZEnable = True; ZWriteEnable = True; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = nonInstancedDepth;
        PixelShader = shadowDepth;
    }
}

technique CrappyLines
{
    pass Lines
    {
        CullMode = None; ZEnable = True; ZWriteEnable = False; ZFunc = LessEqual;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = line;
        PixelShader = lineColored;
    }
}
