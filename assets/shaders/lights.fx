// Lights: each adds what arrives at the surfaces inside its volume to the light buffer.
//
// The volume's far side is drawn wherever it lies behind the scene, which leaves the pixels that the volume can reach;
// the shader drops those in front of it by their distance. One pass, no stencil, right from inside the volume too, and
// not cut by the far plane, since clipping along the depth is off.
//
// Distance: full strength up to "lightFalloffBegin", then falling smoothly to nothing at "lightFalloffEnd".
// Cone: full strength inside the inner angle, falling to nothing at the outer one as a power of spotFalloff / 10, so
// that the usual 10 falls linearly, more makes a narrower core and less a fuller cone.

#include "automatic.fxh"
#include "gbuffer.fxh"

float4x4 modelToWorld;
float spotInnerAngleCos = 1;
float spotOuterAngleCos = 0;
float4 lightDiffuseColor;
float4 lightSpecularColor;
float spotFalloff = 10;
float lightFalloffBegin = 0;
float lightFalloffEnd = 1;
float4 lightPosition_ViewSpace;
float4 spotDirection_ViewSpace;
float4x4 worldToLightView;
float4x4 lightViewToLightProjection;

texture GBuffer1_texture;
texture GBuffer2_texture;
texture GBuffer3_texture;
texture ShadowMap_texture;

sampler GBuffer2 = sampler_state { Texture = <GBuffer2_texture>; };
sampler ShadowMap = sampler_state { Texture = <ShadowMap_texture>; AddressU = Clamp; AddressV = Clamp; };

VertexShader volume
{
    void main()
    {
        gl_Position = viewToProjection * (worldToView * (modelToWorld * vec4(POSITION.xyz, 1.0)));
    }
}

glsl PixelShader
{
    const float highlightExponent = 24.0;

    struct Surface
    {
        vec3 position; // view space
        vec3 normal;
        vec3 toLight;
        float distance;
    };

    /// The surface under this pixel; drops the pixel if the light does not reach it.
    Surface surfaceInReach()
    {
        vec4 stored = texelFetch(GBuffer2, ivec2(gl_FragCoord.xy), 0);
        Surface s;
        s.position = pixelRay(gl_FragCoord.xy - 0.5) * unpackDepth(stored.ba);
        vec3 offset = lightPosition_ViewSpace.xyz - s.position;
        s.distance = length(offset);
        if (s.distance >= lightFalloffEnd || stored.b == 0.0)
            discard;
        s.toLight = offset / s.distance;
        s.normal = unpackNormal(stored.rg);
        return s;
    }

    float reach(float distance)
    {
        float t = clamp((lightFalloffEnd - distance) / max(lightFalloffEnd - lightFalloffBegin, 1e-4), 0.0, 1.0);
        return t * t;
    }

    float cone(vec3 toLight)
    {
        float angleCos = dot(-toLight, spotDirection_ViewSpace.xyz);
        float t = (angleCos - spotOuterAngleCos) / max(spotInnerAngleCos - spotOuterAngleCos, 1e-4);
        return pow(clamp(t, 0.0, 1.0), spotFalloff * 0.1);
    }

    vec4 arriving(Surface s, float strength)
    {
        float facing = max(dot(s.normal, s.toLight), 0.0);
        vec3 halfway = normalize(s.toLight - normalize(s.position));
        float highlight = pow(max(dot(s.normal, halfway), 0.0), highlightExponent) * facing;
        float highlightColor = dot(lightSpecularColor.rgb, vec3(0.299, 0.587, 0.114));
        return vec4(lightDiffuseColor.rgb * facing, highlightColor * highlight) * strength;
    }
}

PixelShader sphereLight
{
    void main()
    {
        Surface s = surfaceInReach();
        COLOR0 = arriving(s, reach(s.distance));
    }
}

PixelShader spotLight
{
    void main()
    {
        Surface s = surfaceInReach();
        float strength = cone(s.toLight);
        if (strength <= 0.0)
            discard;
        COLOR0 = arriving(s, strength * reach(s.distance));
    }
}

PixelShader spotShadowsLight
{
    /// Share of the light that no caster keeps away: sixteen looks into the map, weighted to a smooth edge.
    float unshadowed(Surface s)
    {
        vec4 world = viewToWorld * vec4(s.position, 1.0);
        vec4 clip = lightViewToLightProjection * (worldToLightView * world);
        if (clip.w <= 0.0)
            return 1.0;
        vec2 size = vec2(textureSize(ShadowMap, 0));
        vec2 at = (clip.xy / clip.w * vec2(0.5, -0.5) + 0.5) * size;
        vec2 corner = floor(at - 0.5), part = fract(at - 0.5);
        // A surface that the light grazes spans more depth within a texel.
        float slope = 1.0 / max(dot(s.normal, s.toLight), 0.1);
        float nearest = 1.0 / max(clip.w - 0.012 * slope - 0.002 * clip.w, 1e-3);
        float light = 0.0;
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x)
            {
                ivec2 texel = clamp(ivec2(corner) + ivec2(x, y) - 1, ivec2(0), ivec2(size) - 1);
                float wx = x == 0 ? 1.0 - part.x : x == 3 ? part.x : 1.0;
                float wy = y == 0 ? 1.0 - part.y : y == 3 ? part.y : 1.0;
                light += texelFetch(ShadowMap, texel, 0).r <= nearest ? wx * wy : 0.0;
            }
        return light / 9.0;
    }

    void main()
    {
        Surface s = surfaceInReach();
        float strength = cone(s.toLight);
        if (strength <= 0.0 || dot(s.normal, s.toLight) <= 0.0)
            discard;
        COLOR0 = arriving(s, strength * reach(s.distance) * unshadowed(s));
    }
}

technique SphereLight
{
    pass Volume
    {
        CullMode = CW; ZEnable = True; ZWriteEnable = False; ZFunc = GreaterEqual; Clipping = False;
        AlphaBlendEnable = True; SrcBlend = One; DestBlend = One; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = volume;
        PixelShader = sphereLight;
    }
}

technique SpotLight
{
    pass Volume
    {
        CullMode = CW; ZEnable = True; ZWriteEnable = False; ZFunc = GreaterEqual; Clipping = False;
        AlphaBlendEnable = True; SrcBlend = One; DestBlend = One; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = volume;
        PixelShader = spotLight;
    }
}

technique SpotShadowsLight
{
    pass Volume
    {
        CullMode = CW; ZEnable = True; ZWriteEnable = False; ZFunc = GreaterEqual; Clipping = False;
        AlphaBlendEnable = True; SrcBlend = One; DestBlend = One; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = volume;
        PixelShader = spotShadowsLight;
    }
}
