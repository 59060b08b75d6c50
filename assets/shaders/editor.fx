// What the editor draws over the world: lines as wide as so many pixels, flat areas, small solids.
//
// Each instance is placed by the three rows of its matrix in TEXCOORD1 to 3; TEXCOORD4 is its colour, TEXCOORD5 its
// alpha and the width of its lines in pixels. A line's vertex has its own end in POSITION, the other end in TANGENT and
// its side in TEXCOORD0: as seen from its own end in x, the same at both ends in y. "Hidden" techniques are those of the
// world's own pass: what stands before them hides them, and what the view cuts off is not drawn; others lie over all.

#include "automatic.fxh"

float4x4 worldToClip; // of the level's camera; the screen's own layers are seen by another

glsl VertexShader
{
    vec3 placed(vec3 v)
    {
        vec4 p = vec4(v, 1.0);
        return vec3(dot(TEXCOORD1, p), dot(TEXCOORD2, p), dot(TEXCOORD3, p));
    }

    vec4 toClip(vec3 v)
    {
        return worldToClip * vec4(placed(v), 1.0);
    }

    flat out vec4 tint;

    // Of wires alone:
    out float across;
    flat out float halfWidth;

    /// The depth is that of the vertex; what lies before all that is seen has one below 0.
    void drawWire()
    {
        const float nearest = 0.002;
        vec4 here = toClip(POSITION.xyz), there = toClip(TANGENT.xyz);
        tint = vec4(TEXCOORD4.xyz, TEXCOORD5.x);
        halfWidth = TEXCOORD5.y * 0.5;
        across = TEXCOORD0.y * (halfWidth + 1.0);
        float aside = TEXCOORD0.x * (halfWidth + 1.0);
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0); // outside
        if (max(here.w, there.w) <= nearest)
            return;
        if (here.w < nearest)
            here = mix(here, there, (nearest - here.w) / (there.w - here.w));
        if (there.w < nearest)
            there = mix(there, here, (nearest - there.w) / (here.w - there.w));
        vec2 halfWindow = viewportPixels.zw * 0.5;
        vec2 from = here.xy / here.w * halfWindow, along = there.xy / there.w * halfWindow - from;
        along = dot(along, along) > 1e-8 ? normalize(along) : vec2(1.0, 0.0);
        from += vec2(-along.y, along.x) * aside - along * halfWidth * 0.5;
        gl_Position = vec4(from / halfWindow, min(here.z / here.w - 0.0001, 1.0), 1.0);
    }
}

VertexShader wire
{
    void main()
    {
        drawWire();
        gl_Position.z = max(gl_Position.z, 0.0);
    }
}

VertexShader hiddenWire
{
    void main()
    {
        drawWire();
    }
}

PixelShader wireColored
{
    in float across;
    flat in float halfWidth;
    flat in vec4 tint;
    void main()
    {
        COLOR0 = vec4(tint.rgb, tint.a * clamp(halfWidth + 0.5 - abs(across), 0.0, 1.0));
    }
}

VertexShader face
{
    void main()
    {
        tint = vec4(TEXCOORD4.xyz, TEXCOORD5.x);
        gl_Position = toClip(POSITION.xyz);
    }
}

VertexShader solid
{
    void main()
    {
        vec3 normal = placed(NORMAL.xyz) - placed(vec3(0.0));
        float light = 0.72 + 0.28 * dot(normal * inversesqrt(max(dot(normal, normal), 1e-12)), vec3(-0.3, 0.9, -0.3));
        tint = vec4(TEXCOORD4.xyz * light, TEXCOORD5.x);
        gl_Position = toClip(POSITION.xyz);
        gl_Position.z = max(gl_Position.z, 0.0);
    }
}

PixelShader colored
{
    flat in vec4 tint;
    void main()
    {
        COLOR0 = tint;
    }
}

technique Wires
{
    pass Lines
    {
        CullMode = None; ZEnable = False; ZWriteEnable = False; ZFunc = Always;
        AlphaBlendEnable = True; SrcBlend = SrcAlpha; DestBlend = InvSrcAlpha; BlendOp = Add;
        AlphaTestEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = wire;
        PixelShader = wireColored;
    }
}

technique HiddenWires
{
    pass Lines
    {
        CullMode = None; ZEnable = True; ZWriteEnable = False; ZFunc = LessEqual;
        AlphaBlendEnable = True; SrcBlend = SrcAlpha; DestBlend = InvSrcAlpha; BlendOp = Add;
        AlphaTestEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = hiddenWire;
        PixelShader = wireColored;
    }
}

technique Faces
{
    pass Areas
    {
        CullMode = None; ZEnable = False; ZWriteEnable = False; ZFunc = Always;
        AlphaBlendEnable = True; SrcBlend = SrcAlpha; DestBlend = InvSrcAlpha; BlendOp = Add;
        AlphaTestEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = face;
        PixelShader = colored;
    }
}

technique HiddenFaces
{
    pass Areas
    {
        CullMode = None; ZEnable = True; ZWriteEnable = False; ZFunc = LessEqual;
        AlphaBlendEnable = True; SrcBlend = SrcAlpha; DestBlend = InvSrcAlpha; BlendOp = Add;
        AlphaTestEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = face;
        PixelShader = colored;
    }
}

technique Solids
{
    pass Shapes
    {
        CullMode = CCW; ZEnable = False; ZWriteEnable = False; ZFunc = Always;
        AlphaBlendEnable = True; SrcBlend = SrcAlpha; DestBlend = InvSrcAlpha; BlendOp = Add;
        AlphaTestEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = solid;
        PixelShader = colored;
    }
}
