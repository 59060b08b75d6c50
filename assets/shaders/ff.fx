// The drawn world: models, boxes and terrain into the G-buffer, quads and lines onto the screen.
//
// Vertices are position, normal, tangent, binormal and one texture coordinate. Instanced techniques take the first
// three rows of the world matrix (column-vector form) from TEXCOORD1 to 3 and those of the normal matrix from
// TEXCOORD4 to 6. "WorldSpace" techniques take positions as they are; "NonInstanced" ones take "modelToWorld".
// "CrappyLines" takes world-space positions, and the colour of a line from the normal.
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
    MinFilter = Linear; MagFilter = Linear; MipFilter = Linear;
};
sampler specularMap = sampler_state
{
    Texture = <specularMap_texture>;
    MinFilter = Linear; MagFilter = Linear; MipFilter = Linear;
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
    out float depth;
    out vec3 normal;
    out vec4 tangent; // w: which way the binormal points

    /// Everything that the G-buffer's pixel shader reads, from world-space vectors.
    void writeSurface(vec3 worldPosition, vec3 worldNormal, vec3 worldTangent, vec3 worldBinormal)
    {
        vec4 viewPosition = worldToView * vec4(worldPosition, 1.0);
        gl_Position = viewToProjection * viewPosition;
        uv = TEXCOORD0.xy;
        depth = viewPosition.z;
        normal = mat3(worldToViewInverseTranspose) * worldNormal;
        float side = dot(cross(worldNormal, worldTangent), worldBinormal) < 0.0 ? -1.0 : 1.0;
        tangent = vec4(mat3(worldToView) * worldTangent, side);
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
    in float depth;
    in vec3 normal;
    in vec4 tangent;

    vec3 mappedNormal()
    {
        vec3 n = normalize(normal);
        vec3 t = normalize(tangent.xyz - n * dot(n, tangent.xyz));
        vec3 b = cross(n, t) * tangent.w;
        vec3 bump = texture(normalMap, uv).xyz * 2.0 - 1.0;
        return normalize(t * bump.x + b * bump.y + n * bump.z);
    }

    void main()
    {
        vec3 highlight = texture(specularMap, uv).rgb;
        COLOR0 = vec4(texture(diffuseMap, uv).rgb, dot(highlight, vec3(0.299, 0.587, 0.114)));
        COLOR1 = vec4(packNormal(mappedNormal()), packDepth(depth));
        COLOR2 = vec4(texture(emissiveMap, uv).rgb, 1.0);
    }
}

// Depth alone, from the camera or a light

VertexShader instancedDepth
{
    out float distanceAhead;
    void main()
    {
        gl_Position = toClip(instancePosition());
        distanceAhead = gl_Position.w;
    }
}

VertexShader nonInstancedDepth
{
    out float distanceAhead;
    void main()
    {
        gl_Position = toClip((modelToWorld * vec4(POSITION.xyz, 1.0)).xyz);
        distanceAhead = gl_Position.w;
    }
}

VertexShader worldSpaceDepth
{
    out float distanceAhead;
    void main()
    {
        gl_Position = toClip(POSITION.xyz);
        distanceAhead = gl_Position.w;
    }
}

PixelShader shadowDepth
{
    in float distanceAhead;
    void main()
    {
        // The inverse, so that the cleared map means that nothing stands in the way.
        COLOR0 = vec4(1.0 / distanceAhead);
    }
}

PixelShader nothing
{
    void main() {}
}

// Screen

VertexShader instancedImage
{
    void main()
    {
        gl_Position = toClip(instancePosition());
        uv = TEXCOORD0.xy;
    }
}

PixelShader image
{
    in vec2 uv;
    void main()
    {
        COLOR0 = texture(flatImage, uv);
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
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
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
