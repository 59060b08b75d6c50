// Lights: each adds to the light buffer what the surfaces inside its volume send of it to the eye.
//
// The far side of the volume is drawn wherever it lies behind the scene: those are the pixels that the light can
// reach, from outside the volume and from inside. Clipping along the depth is off, so that the far plane cuts no
// volume; where nothing was drawn the shader adds nothing.
//
// Distance: full strength up to "lightFalloffBegin", then falling to nothing at "lightFalloffEnd" as the square of the
// part of that way that is left: steep near the lamp, without an edge at the end.
// Cone: full strength inside the inner angle, none outside the outer one, with soft ends on both sides. A spotFalloff
// of 10 puts half the strength half way (in cosines); more makes a narrower core, less a fuller cone.

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

// Of a light that throws a picture: the light's axes, as long as measures it from -1 to 1 over the cone.
float4 lensRight_ViewSpace;
float4 lensUp_ViewSpace;

texture GBuffer1_texture;
texture GBuffer2_texture;
texture GBuffer3_texture;
texture ShadowMap_texture;
texture lens_texture;

sampler GBuffer1 = sampler_state { Texture = <GBuffer1_texture>; };
sampler GBuffer2 = sampler_state { Texture = <GBuffer2_texture>; };
sampler ShadowMap = sampler_state { Texture = <ShadowMap_texture>; AddressU = Clamp; AddressV = Clamp; };
sampler lens = sampler_state
{
    Texture = <lens_texture>;
    MinFilter = Linear; MagFilter = Linear; MipFilter = Linear; AddressU = Clamp; AddressV = Clamp;
};

// What is the same for all pixels of a light is worked out at its few vertices.
glsl VertexShader
{
    flat out vec4 rays;  // see pixelRays
    flat out vec3 falloff; // end squared, end and 1 over the whole way

    void writeVolume(vec3 worldPosition)
    {
        gl_Position = viewToProjection * (worldToView * vec4(worldPosition, 1.0));
        rays = pixelRays();
        float way = 1.0 / max(lightFalloffEnd - lightFalloffBegin, 1e-4);
        falloff = vec3(lightFalloffEnd * lightFalloffEnd, lightFalloffEnd * way, way);
    }

    /// A cone of more than 60 degrees grows beyond all measure; one around the whole reach stands in for it.
    vec3 conePosition(vec3 model)
    {
        if (spotOuterAngleCos > 0.5)
            return (modelToWorld * vec4(model, 1.0)).xyz;
        // Its tip lies three reaches behind the light; a sphere inside it touches at an eighth of a turn or so.
        vec3 inReaches = vec3(model.xy * 1.8, model.z * 4.2 - 3.0);
        mat3 axes = mat3(normalize(modelToWorld[0].xyz), normalize(modelToWorld[1].xyz),
                         normalize(modelToWorld[2].xyz));
        return modelToWorld[3].xyz + axes * (inReaches * lightFalloffEnd);
    }
}

VertexShader sphereVolume
{
    void main()
    {
        writeVolume((modelToWorld * vec4(POSITION.xyz, 1.0)).xyz);
    }
}

VertexShader coneVolume
{
    flat out vec3 cone; // cosine and inverse way of the fading rim, and its shape

    void main()
    {
        writeVolume(conePosition(POSITION.xyz));
        cone = vec3(spotOuterAngleCos, 1.0 / max(spotInnerAngleCos - spotOuterAngleCos, 1e-4), spotFalloff * 0.1);
    }
}

VertexShader shadowedConeVolume
{
    flat out vec3 cone;
    flat out mat4 viewToShadow; // from the camera's view space to the map: x and y from 0 to w
    flat out float slope;       // width of the map for each metre from the light

    void main()
    {
        writeVolume(conePosition(POSITION.xyz));
        cone = vec3(spotOuterAngleCos, 1.0 / max(spotInnerAngleCos - spotOuterAngleCos, 1e-4), spotFalloff * 0.1);
        const mat4 clipToMap = mat4(0.5, 0, 0, 0,  0, -0.5, 0, 0,  0, 0, 1, 0,  0.5, 0.5, 0, 1);
        viewToShadow = clipToMap * lightViewToLightProjection * worldToLightView * viewToWorld;
        slope = 2.0 / max(abs(lightViewToLightProjection[1][1]), 1e-3);
    }
}

glsl PixelShader
{
    flat in vec4 rays;
    flat in vec3 falloff;

    struct Surface
    {
        vec3 position; // view space
        vec3 normal;
        vec3 toLight;
        float distance;
        float facing;
    };

    /// The surface under this pixel; drops the pixel if the light does not reach it.
    Surface surfaceInReach()
    {
        vec4 stored = texelFetch(GBuffer2, ivec2(gl_FragCoord.xy), 0);
        Surface s;
        s.position = vec3(gl_FragCoord.xy * rays.xy + rays.zw, 1.0) * unpackDepth(stored.ba);
        vec3 offset = lightPosition_ViewSpace.xyz - s.position;
        float squared = dot(offset, offset);
        s.normal = unpackNormal(stored.rg);
        float unit = inversesqrt(max(squared, 1e-8));
        s.toLight = offset * unit;
        s.distance = squared * unit;
        s.facing = dot(s.normal, s.toLight);
        if (squared >= falloff.x || stored.b == 0.0 || s.facing <= 0.0)
            discard;
        return s;
    }

    float reach(float distance)
    {
        float left = min(falloff.y - distance * falloff.z, 1.0);
        return left * left;
    }

    /// Share of the light at an angle; `cone` as the vertex shaders make it.
    float inCone(vec3 toLight, vec3 cone)
    {
        float t = clamp((dot(-toLight, spotDirection_ViewSpace.xyz) - cone.x) * cone.y, 0.0, 1.0);
        t /= max(t + cone.z * (1.0 - t), 1e-4);
        return t * t * (3.0 - 2.0 * t);
    }

    /// Light of a strength that leaves a surface towards the eye.
    vec4 returned(Surface s, float strength)
    {
        vec4 material = texelFetch(GBuffer1, ivec2(gl_FragCoord.xy), 0);
        vec3 halfway = normalize(s.toLight - normalize(s.position));
        float shine = max(dot(s.normal, halfway), 0.0);
        shine *= shine * shine; // in all to the power of 24
        shine *= shine;
        shine *= shine;
        shine *= shine;
        vec3 matt = toLinear(material.rgb) * lightDiffuseColor.rgb;
        vec3 highlight = unpackHighlight(material.a) * lightSpecularColor.rgb;
        return vec4((matt + highlight * shine) * (s.facing * strength), 0.0);
    }
}

PixelShader sphereLight
{
    void main()
    {
        Surface s = surfaceInReach();
        COLOR0 = returned(s, reach(s.distance));
    }
}

PixelShader spotLight
{
    flat in vec3 cone;

    void main()
    {
        Surface s = surfaceInReach();
        float strength = inCone(s.toLight, cone);
        if (strength <= 0.0)
            discard;
        COLOR0 = returned(s, strength * reach(s.distance));
    }
}

// For what is below: lights with a shadow map.
glsl PixelShader
{
    flat in vec3 cone;
    flat in mat4 viewToShadow;
    flat in float slope;

    /// Share of the light that no caster keeps away: sixteen texels of the map, weighted to a soft edge three wide.
    /// Beside the map, which is as wide as the cone, no light goes.
    float unshadowed(Surface s)
    {
        // The look-up starts above the surface by as much as the texels around it may lie apart in depth, so that a
        // surface does not shade itself, and a caster's shadow still begins where it stands.
        float slant = sqrt(max(1.0 - s.facing * s.facing, 0.0));
        vec2 size = vec2(textureSize(ShadowMap, 0));
        float texel = slope / size.y * s.distance;
        vec3 lifted = s.position + s.normal * (texel * (0.5 + 2.0 * slant) + 0.002);
        vec4 at = viewToShadow * vec4(lifted, 1.0);
        if (any(lessThan(at.xy, vec2(0.0))) || any(greaterThan(at.xy, at.ww)))
            return 0.0;
        float nearest = 1.0 / max(at.w * 0.999 - 0.002, 1e-3);
        vec2 middle = at.xy / at.w * size; // in texels, counted from the centre of the first
        vec2 part = fract(middle), corner = (middle - part) / size;

        // Each look gathers a block of two by two texels: w and z are its upper row, x and y its lower.
        vec2 block = 2.0 / size;
        bvec4 a = lessThanEqual(textureGather(ShadowMap, corner), vec4(nearest));
        bvec4 b = lessThanEqual(textureGather(ShadowMap, corner + vec2(block.x, 0.0)), vec4(nearest));
        bvec4 c = lessThanEqual(textureGather(ShadowMap, corner + vec2(0.0, block.y)), vec4(nearest));
        bvec4 d = lessThanEqual(textureGather(ShadowMap, corner + block), vec4(nearest));
        vec4 rowWeights = vec4(1.0 - part.y, 1.0, 1.0, part.y);
        vec4 columnWeights = vec4(1.0 - part.x, 1.0, 1.0, part.x);
        vec4 row0 = vec4(a.wz, b.wz), row1 = vec4(a.xy, b.xy), row2 = vec4(c.wz, d.wz), row3 = vec4(c.xy, d.xy);
        vec4 columns = row0 * rowWeights.x + row1 + row2 + row3 * rowWeights.w;
        return dot(columns, columnWeights) / 9.0;
    }

    /// The picture that the lens throws into a direction; neighbouring pixels may lie on other surfaces and cannot tell
    /// how fine it is to be, and it is soft in itself.
    vec3 thrown(vec3 toLight)
    {
        float ahead = max(dot(-toLight, spotDirection_ViewSpace.xyz), 1e-3);
        vec2 at = vec2(dot(-toLight, lensRight_ViewSpace.xyz), dot(toLight, lensUp_ViewSpace.xyz)) / ahead;
        return textureLod(lens, at * 0.5 + 0.5, 0.0).rgb * 2.0;
    }
}

PixelShader spotShadowsLight
{
    void main()
    {
        Surface s = surfaceInReach();
        float strength = inCone(s.toLight, cone);
        if (strength <= 0.0)
            discard;
        COLOR0 = returned(s, strength * reach(s.distance) * unshadowed(s));
    }
}

PixelShader spotShadowsLens
{
    void main()
    {
        Surface s = surfaceInReach();
        float strength = inCone(s.toLight, cone);
        if (strength <= 0.0)
            discard;
        vec4 light = returned(s, strength * reach(s.distance) * unshadowed(s));
        COLOR0 = vec4(light.rgb * thrown(s.toLight), 0.0);
    }
}

technique SphereLight
{
    pass Volume
    {
        CullMode = CW; ZEnable = True; ZWriteEnable = False; ZFunc = GreaterEqual; Clipping = False;
        AlphaBlendEnable = True; SrcBlend = One; DestBlend = One; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = sphereVolume;
        PixelShader = sphereLight;
    }
}

technique SpotLight
{
    pass Volume
    {
        CullMode = CW; ZEnable = True; ZWriteEnable = False; ZFunc = GreaterEqual; Clipping = False;
        AlphaBlendEnable = True; SrcBlend = One; DestBlend = One; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = coneVolume;
        PixelShader = spotLight;
    }
}

technique SpotShadowsLight
{
    pass Volume
    {
        CullMode = CW; ZEnable = True; ZWriteEnable = False; ZFunc = GreaterEqual; Clipping = False;
        AlphaBlendEnable = True; SrcBlend = One; DestBlend = One; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = shadowedConeVolume;
        PixelShader = spotShadowsLight;
    }
}

technique SpotShadowsLens
{
    pass Volume
    {
        CullMode = CW; ZEnable = True; ZWriteEnable = False; ZFunc = GreaterEqual; Clipping = False;
        AlphaBlendEnable = True; SrcBlend = One; DestBlend = One; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue;
        VertexShader = shadowedConeVolume;
        PixelShader = spotShadowsLens;
    }
}
