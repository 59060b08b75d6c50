// How open the world is to light from everywhere: less where something stands close by, as in corners.
//
// Two passes at half the size, each texel of which stands for the upper left pixel of its block: the first looks around
// in directions and distances that differ from texel to texel in squares of four by four, the second takes the mean of
// such a square and so of all of them together. The combination reads the texels beside a pixel. Both leave out what
// lies off the surface's own plane, or a thing's rim would darken what is behind it.
//
//   Occlusion  r   openness, 0 to 1      g   view-space depth

texture Occlusion_texture;
sampler Occlusion = sampler_state { Texture = <Occlusion_texture>; AddressU = Clamp; AddressV = Clamp; };

VertexShader halfScreen
{
    flat out vec4 screenRays; // of the whole size, see pixelRays

    void main()
    {
        gl_Position = vec4(POSITION.xy, 0.0, 1.0);
        vec2 tangents = vec2(1.0 / viewToProjection[0][0], -1.0 / viewToProjection[1][1]);
        vec2 perPixel = 2.0 * tangents / vec2(textureSize(GBuffer2, 0));
        screenRays = vec4(perPixel, -tangents - 0.5 * perPixel);
    }
}

glsl PixelShader
{
    vec4 rays = vec4(0.0); // of pixelRays; main sets it

    vec3 positionAt(vec2 pixel, float depth)
    {
        return vec3((pixel + 0.5) * rays.xy + rays.zw, 1.0) * depth;
    }

    /// How far a texel's place counts for a surface, from its distance off the surface's plane: closer than a hand.
    float onPlane(float offPlane, float depth)
    {
        return clamp(1.5 - abs(offPlane) / (0.04 + 0.01 * depth), 0.0, 1.0);
    }
}

PixelShader lookAround
{
    flat in vec4 screenRays;

    const float occlusionRadius = 0.35; // metres

    /// What a place says of the light that it keeps away: the sine of its height over the surface, less if far away.
    float height(vec2 at, vec3 position, vec3 normal)
    {
        vec3 offset = positionAt(at, unpackDepth(texelFetch(GBuffer2, ivec2(at), 0).ba)) - position;
        float squared = dot(offset, offset) + 1e-4;
        float near = clamp(1.0 - squared / (occlusionRadius * occlusionRadius * 4.0), 0.0, 1.0);
        return dot(normal, offset) * inversesqrt(squared) * near;
    }

    void main()
    {
        rays = screenRays;
        vec2 size = vec2(textureSize(GBuffer2, 0)), texel = floor(gl_FragCoord.xy), pixel = texel * 2.0;
        vec4 stored = texelFetch(GBuffer2, ivec2(pixel), 0);
        float depth = unpackDepth(stored.ba);
        vec3 position = positionAt(pixel, depth), normal = unpackNormal(stored.rg);
        float radius = min(occlusionRadius / (abs(rays.y) * max(depth, 0.01)), size.y * 0.1);

        // Four axes, on each of which two places lie opposite: on a plane their heights cancel out, whatever the normal
        // map says. A square of texels turns them by sixteen steps, and takes each length for each axis.
        vec2 place = mod(texel, 4.0);
        float turn = (mod(place.x + place.y * 2.0, 4.0) * 4.0 + place.y + 0.5) / 16.0;
        float hidden = 0.0;
        for (int i = 0; i < 4; ++i)
        {
            float angle = (float(i) + turn) * 0.785398;
            float length = radius * (0.3 + 0.25 * mod(float(i) * 3.0 + place.x + place.y, 4.0));
            vec2 step = floor(vec2(cos(angle), sin(angle)) * length + 0.5);
            vec2 ahead = clamp(pixel + step, vec2(0.0), size - 1.0), back = clamp(pixel - step, vec2(0.0), size - 1.0);
            hidden += max(height(ahead, position, normal) + height(back, position, normal) - 0.03, 0.0);
        }
        COLOR0 = vec4(stored.b == 0.0 ? 1.0 : clamp(1.0 - hidden * 0.25, 0.0, 1.0), depth, 0.0, 0.0);
    }
}

PixelShader meanOfSquare
{
    flat in vec4 screenRays;

    void main()
    {
        rays = screenRays;
        vec2 texel = floor(gl_FragCoord.xy), last = vec2(textureSize(Occlusion, 0)) - 1.0;
        vec2 own = texelFetch(Occlusion, ivec2(texel), 0).rg;
        vec3 normal = unpackNormal(texelFetch(GBuffer2, ivec2(texel * 2.0), 0).rg);
        float plane = dot(normal, positionAt(texel * 2.0, own.g));
        vec2 sum = vec2(own.r, 1.0) * 1e-3;
        for (int y = -1; y < 3; ++y)
            for (int x = -1; x < 3; ++x)
            {
                vec2 at = clamp(texel + vec2(x, y), vec2(0.0), last);
                vec2 other = texelFetch(Occlusion, ivec2(at), 0).rg;
                sum += vec2(other.r, 1.0) * onPlane(dot(normal, positionAt(at * 2.0, other.g)) - plane, own.g);
            }
        COLOR0 = vec4(sum.x / sum.y, own.g, 0.0, 0.0);
    }
}

technique Occlusion
{
    pass LookAround
    {
        CullMode = None; ZEnable = False; ZWriteEnable = False;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = halfScreen;
        PixelShader = lookAround;
    }
}

technique OcclusionMean
{
    pass MeanOfSquare
    {
        CullMode = None; ZEnable = False; ZWriteEnable = False;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = halfScreen;
        PixelShader = meanOfSquare;
    }
}
