// The last steps of a frame: the combination of G-buffer and light, what is laid over or projected into it, and what a
// failing mind makes of the picture.

#include "automatic.fxh"
#include "gbuffer.fxh"

// Combination
float4 sceneAmbient = { 0.02, 0.02, 0.016, 0.02 }; // linear light from everywhere
float dissolveAmount = 0;                          // 0 shows the scene, 1 the colour alone
float4 dissolveColor = { 0, 0, 0, 1 };
float time = 0;                                    // seconds of the level
float insanityAmount = 0;                          // 0 sane; taken as 0 to 1
float4 unsettling = { 1, 1, 1, 1 };                // shares of drained colour, grain, closing and bent edges
float4 starts = { 0, 0, 0, 0 };                    // the heart's beat, the picture's start
float brightness = 1.0;                            // factor of the light that reaches the eye
float occlusionShare = 1.0;                        // how far corners are darker: 0 for not at all
float gamma = 2.2;                                 // of the screen; more shows more in the dark

// Projected pictures: a cube of side 1, projected along its z axis
float4x4 modelToWorld = { 1, 0, 0, 0,  0, 1, 0, 0,  0, 0, 1, 0,  0, 0, 0, 1 };
float decalAlpha = 1;

// Dust: points in world space
float4 particleColor = { 0.5, 0.48, 0.42, 1 };
float particleSize = 0.01;                         // metres across

texture GBuffer1_texture;
texture GBuffer2_texture;
texture GBuffer3_texture;
texture LBuffer_texture;
texture Picture_texture;
texture diffuseMap_texture;

sampler GBuffer1 = sampler_state { Texture = <GBuffer1_texture>; };
sampler GBuffer2 = sampler_state { Texture = <GBuffer2_texture>; };
sampler GBuffer3 = sampler_state { Texture = <GBuffer3_texture>; };
sampler LBuffer = sampler_state { Texture = <LBuffer_texture>; };
sampler Picture = sampler_state
{
    Texture = <Picture_texture>;
    MinFilter = Linear; MagFilter = Linear; AddressU = Clamp; AddressV = Clamp;
};
sampler diffuseMap = sampler_state
{
    Texture = <diffuseMap_texture>;
    MinFilter = Linear; MagFilter = Linear; MipFilter = Linear; AddressU = Clamp; AddressV = Clamp;
};

glsl PixelShader
{
    float hash(vec2 p)
    {
        vec3 q = fract(vec3(p.xyx) * 0.1031);
        q += dot(q, q.yzx + 33.33);
        return fract((q.x + q.y) * q.z);
    }

    float smoothNoise(vec2 p)
    {
        vec2 cell = floor(p), part = fract(p);
        part = part * part * (3.0 - 2.0 * part);
        return mix(mix(hash(cell), hash(cell + vec2(1, 0)), part.x),
                   mix(hash(cell + vec2(0, 1)), hash(cell + vec2(1, 1)), part.x), part.y);
    }
}

#include "occlusion.fxh"

VertexShader screen
{
    flat out vec4 screenRays;

    void main()
    {
        gl_Position = vec4(POSITION.xy, 0.0, 1.0);
        screenRays = pixelRays();
    }
}

glsl PixelShader
{
    const float exposure = 4.5;

    vec2 inViewport(vec2 pixel)
    {
        return clamp(pixel, viewportPixels.xy, viewportPixels.xy + viewportPixels.zw - 1.0);
    }

    /// From 0 to 1, different enough from pixel to pixel that neighbours cover the range together.
    float spread(vec2 pixel)
    {
        return fract(52.9829189 * fract(dot(pixel, vec2(0.06711056, 0.00583715))));
    }

    /// How open a surface is to light from everywhere, from the half-size texels beside its pixel; 1 is open.
    float openness(vec2 pixel, vec3 position, vec3 normal)
    {
        vec2 corner = floor(pixel * 0.5), part = pixel * 0.5 - corner, last = vec2(textureSize(Occlusion, 0)) - 1.0;
        vec2 sum = vec2(1.0) * 1e-3;
        for (int i = 0; i < 4; ++i)
        {
            vec2 side = vec2(i & 1, i >> 1), at = min(corner + side, last);
            vec2 share = mix(1.0 - part, part, side), stored = texelFetch(Occlusion, ivec2(at), 0).rg;
            float offPlane = dot(normal, positionAt(at * 2.0, stored.g) - position);
            sum += vec2(stored.r, 1.0) * (share.x * share.y * (onPlane(offPlane, position.z) + 0.01));
        }
        return mix(1.0, sum.x / sum.y, occlusionShare);
    }

    /// Light from everywhere with some shape: more from above, more where the surface faces the eye, less in corners.
    vec3 ambient(vec3 position, vec3 normal, float towardsEye, float open)
    {
        float up = dot(normal, vec3(worldToView[1])) * 0.5 + 0.5;
        float eye = towardsEye * towardsEye / (1.0 + 0.05 * dot(position, position));
        vec3 cool = mix(vec3(1.02, 0.92, 0.88), vec3(0.90, 0.96, 1.18), up);
        return sceneAmbient.rgb * cool * (mix(0.62, 1.55, up) + eye) * (open * open);
    }

    struct Surface
    {
        bool empty;
        vec3 position; // view space
        vec3 normal;
    };

    Surface surfaceAt(vec2 pixel)
    {
        vec4 stored = texelFetch(GBuffer2, ivec2(pixel), 0);
        bool empty = stored.b == 0.0;
        return Surface(empty, positionAt(pixel, empty ? camFar : unpackDepth(stored.ba)), unpackNormal(stored.rg));
    }

    /// Linear light that a pixel of the scene, as open as said, sends to the eye.
    vec3 sceneLight(Surface surface, vec2 pixel, float open)
    {
        vec4 material = texelFetch(GBuffer1, ivec2(pixel), 0);
        vec3 light = texelFetch(LBuffer, ivec2(pixel), 0).rgb;
        vec3 emitted = toLinear(texelFetch(GBuffer3, ivec2(pixel), 0).rgb);
        float towardsEye = max(-dot(surface.normal, normalize(surface.position)), 0.0);

        // The eye's own faint light glints on what is polished.
        float glint = towardsEye * towardsEye * towardsEye;
        glint *= glint * glint;
        vec3 matt = toLinear(material.rgb) * ambient(surface.position, surface.normal, towardsEye, open);
        vec3 shine = unpackHighlight(material.a) * sceneAmbient.rgb * (0.6 * glint);
        return surface.empty ? vec3(0.0) : light + matt + shine + emitted;
    }

    /// Film's answer to light: what lies in the dark stays apart, the middle gains contrast, white is never reached.
    vec3 filmic(vec3 x)
    {
        return x * (2.5 * x + 0.15) / (x * (2.5 * x + 0.75) + 0.14);
    }

    /// The scene goes in blotches that spread until they meet.
    float dissolved(vec2 pixel)
    {
        vec2 at = pixel / viewportPixels.w;
        float blotch = 0.62 * smoothNoise(at * 6.0) + 0.3 * smoothNoise(at * 19.0) + 0.08 * hash(pixel);
        return smoothstep(0.0, 1.0, (min(dissolveAmount, 1.0) * 1.4 - blotch) / 0.4);
    }

    /// Colour on the screen of a pixel of the scene.
    vec3 shown(Surface surface, vec2 pixel, float open, vec2 fromCentre)
    {
        vec3 color = sceneLight(surface, pixel, open);
        color *= brightness * exposure * (1.0 - 0.16 * dot(fromCentre, fromCentre));
        return pow(filmic(color), vec3(1.0 / gamma));
    }

    // Antialiasing. Outlines are found in the inverse of the depth, which is linear in screen space on every plane:
    // whatever its slope, a plane has no second difference, and neither have the textures on it. Where software draws,
    // both sides of a branch are run; only the second round of a loop is spared where no pixel of a block wants it.

    /// Inverse of the depth; 0 where nothing was drawn.
    float nearness(vec2 pixel)
    {
        vec2 stored = texelFetch(GBuffer2, ivec2(inViewport(pixel)), 0).ba;
        return stored.x == 0.0 ? 0.0 : 1.0 / unpackDepth(stored);
    }

    /// How much of a pixel lies beyond an outline beside it that keeps its row for so many pixels ahead and back, as it
    /// is taken for straight between the middles of its steps at both ends; `opens` says at which it comes closer.
    float coveredOf(vec2 reach, bvec2 opens)
    {
        float run = reach.x + reach.y;
        bool isOpen = reach.x < reach.y ? opens.x : opens.y;
        float first = min(reach.x, reach.y) - 0.5, last = min(first + 1.0, run * 0.5);
        return isOpen ? max(last - first, 0.0) * (0.5 - 0.5 * (first + last) / run) : 0.0;
    }

    /// Whether a step in both directions is one of an outline that runs up and down rather than along the row, from the
    /// pixels around it and those that the outline would pass between next.
    bool runsUpright(vec4 around, vec2 jump, vec2 next)
    {
        vec2 away = vec2(jump.x > 0.0 ? around.y : around.x, jump.y > 0.0 ? around.w : around.z);
        return abs(next.x - away.y) > abs(next.y - away.x);
    }

    /// The neighbour that shares a pixel (xy) and its share (z); no share but on outlines.
    vec3 sharing(vec2 pixel)
    {
        const float furthest = 7.0;
        float here = nearness(pixel);
        vec2 other = pixel, axis, jump, bends;
        vec4 around, last; // nearness: right, left, below, above; in the row ahead and back, and beyond the outline
        bvec2 opens = bvec2(false), ended = bvec2(false);
        vec2 reach = vec2(furthest);
        vec4 from = pixel.xyxy, way = vec4(1, 0, 0, 1);
        float gap = 0.0, share = 0.0, round = -2.0;
        do
        {
            float far = max(round, 1.0);
            vec4 row = vec4(nearness(from.xy + way.xy * far), nearness(from.xy - way.xy * far),
                            nearness(from.zw + way.zw * far), nearness(from.zw - way.zw * far));
            if (round == -2.0) // the pixels around
            {
                around = row;
                bends = row.xz + row.yw - 2.0 * here;
                vec2 sizes = abs(bends);
                if (max(sizes.x, sizes.y) <= 0.15 * abs(rays.y) * here)
                    break;
                axis = sizes.x > sizes.y ? vec2(1, 0) : vec2(0, 1);
                jump = mix(vec2(-1.0), vec2(1.0), greaterThan(abs(row.xz - here), abs(row.yw - here)));
                way = vec4(2.0 * axis, jump.x, -jump.y);
            }
            else if (round == -1.0) // those after them, and on two corners
            {
                vec2 sides = axis.x > 0.0 ? around.xy : around.zw;
                vec2 beside = here + row.xy - 2.0 * sides;
                bool isAhead = abs(beside.x) > abs(beside.y);
                vec2 beyond = isAhead ? beside : beside.yx;
                float bend = dot(bends, axis);
                // Two planes that meet bend the same way on both sides of the fold, the more the closer it is to the
                // other side. Where one thing stands before another, the bends are opposite and tell nothing of that.
                if (bend * beyond.x > 0.0)
                {
                    bool alone = abs(beyond.y) < 0.25 * abs(bend);
                    share = alone ? max(bend / (bend + beyond.x) - 0.5, 0.0) : 0.0;
                    other = isAhead ? pixel + axis : pixel - axis;
                    break;
                }
                vec2 sizes = abs(bends);
                if (min(sizes.x, sizes.y) > 0.5 * max(sizes.x, sizes.y))
                {
                    axis = runsUpright(around, jump, row.zw) ? vec2(1, 0) : vec2(0, 1);
                    isAhead = dot(jump, axis) > 0.0;
                    sides = axis.x > 0.0 ? around.xy : around.zw;
                }
                other = isAhead ? pixel + axis : pixel - axis;
                float there = isAhead ? sides.x : sides.y;
                gap = 0.5 * abs(there - here);
                from = vec4(pixel, other);
                way = axis.yxyx;
                last = vec4(here, here, there, there);
                round = 0.0;
            }
            else // along the outline
            {
                bvec2 ends = lessThan(abs(row.xy - row.zw), vec2(gap));
                bvec2 open = lessThan(abs(row.xy - last.zw), abs(row.xy - last.xy));
                for (int i = 0; i < 2; ++i)
                    if (ends[i] && !ended[i])
                    {
                        reach[i] = round - 0.5;
                        opens[i] = open[i];
                        ended[i] = true;
                    }
                share = coveredOf(reach, opens);
                last = row;
            }
            round += 1.0;
        } while (!all(ended) && round < furthest);
        return vec3(other, share);
    }

    vec2 fromCentreOf(vec2 pixel)
    {
        return (pixel - viewportPixels.xy) / viewportPixels.zw * 2.0 - 1.0;
    }

    /// The last touch of a colour that stands on the screen.
    vec4 finished(vec2 pixel, vec3 color)
    {
        if (dissolveAmount > 0.0)
            color = mix(color, dissolveColor.rgb, dissolved(pixel));
        // Half a step of noise hides the steps of eight bits.
        return vec4(color + (spread(pixel) - 0.5) / 255.0, 1.0);
    }
}

PixelShader combine
{
    flat in vec4 screenRays;

    void main()
    {
        rays = screenRays;
        vec2 pixel = gl_FragCoord.xy - 0.5;
        vec2 fromCentre = fromCentreOf(pixel);
        vec3 neighbour = sharing(pixel);

        // The pixel itself, and its neighbour across an outline.
        vec2 at = pixel;
        float share = 1.0 - neighbour.z, open = 1.0;
        int samples = neighbour.z > 0.0 ? 2 : 1;
        vec3 color = vec3(0.0);
        for (int i = 0; i < samples; ++i)
        {
            Surface surface = surfaceAt(at);
            if (i == 0)
                open = openness(at, surface.position, surface.normal);
            color += shown(surface, at, open, fromCentre) * share;
            at = neighbour.xy;
            share = neighbour.z;
        }
        COLOR0 = finished(pixel, color);
    }
}

PixelShader combineSteps
{
    flat in vec4 screenRays;

    void main()
    {
        rays = screenRays;
        vec2 pixel = gl_FragCoord.xy - 0.5;
        Surface surface = surfaceAt(pixel);
        float open = openness(pixel, surface.position, surface.normal);
        COLOR0 = finished(pixel, shown(surface, pixel, open, fromCentreOf(pixel)));
    }
}

technique CombineTest
{
    pass Combine
    {
        CullMode = None; ZEnable = False; ZWriteEnable = False;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = screen;
        PixelShader = combine;
    }
}

// The same without antialiasing.
technique CombineSteps
{
    pass Combine
    {
        CullMode = None; ZEnable = False; ZWriteEnable = False;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = screen;
        PixelShader = combineSteps;
    }
}

// What a failing mind makes of the finished picture

PixelShader unsettled
{
    /// A wave from -1 to 1 with one swing for each unit, of parabolas.
    vec2 wave(vec2 at)
    {
        vec2 ramp = fract(at) * 2.0 - 1.0;
        return 4.0 * ramp * (1.0 - abs(ramp));
    }

    /// Where an unsteady look goes: the picture breathes and its edges swim. Pixels; the middle holds.
    vec2 bent(vec2 fromCentre, float edge, float amount)
    {
        vec2 sway = wave(time * vec2(0.21, 0.17) + fromCentre.yx * vec2(1.4, 1.1));
        vec2 breath = -fromCentre * (0.5 + 0.5 * wave(vec2(time * 0.33)).x) * 0.7;
        return (sway + breath) * (edge * amount * 0.034 * viewportPixels.w);
    }

    /// The picture there, its colours apart where it bends.
    vec3 seen(vec2 pixel, vec2 aside)
    {
        vec2 at = (pixel + 0.5) / viewportPixels.zw, apart = aside * 0.25 / viewportPixels.zw;
        vec3 color = texture(Picture, at).rgb;
        if (aside == vec2(0.0))
            return color;
        return vec3(texture(Picture, at + apart).r, color.g, texture(Picture, at - apart).b);
    }

    /// Grain as of film pushed too far: coarse, new twelve times a second, and most in what is dark.
    float grain(vec2 pixel, float light)
    {
        vec2 size = vec2(max(viewportPixels.w / 540.0, 1.0));
        float turn = mod(floor(time * 12.0), 64.0);
        float speck = hash(floor(pixel / size) + turn * vec2(17.0, 29.0));
        float cloud = smoothNoise(pixel / size * 0.31 + turn * 7.0);
        return (0.65 * speck + 0.35 * cloud - 0.5) * (1.0 - 0.75 * light);
    }

    void main()
    {
        vec2 pixel = gl_FragCoord.xy - 0.5;
        vec2 fromCentre = fromCentreOf(pixel);
        float edge = dot(fromCentre, fromCentre), insanity = clamp(insanityAmount, 0.0, 1.0);
        // Colour goes first, and what bends comes last.
        vec4 amounts = unsettling * smoothstep(vec4(0.10, 0.12, 0.15, 0.30), vec4(0.85, 0.95, 0.95, 1.0),
                                               vec4(insanity));
        vec2 aside = amounts.w > 0.0 ? bent(fromCentre, edge, amounts.w) : vec2(0.0);
        vec3 color = seen(inViewport(pixel + aside), aside);

        // What is left of colour is a sick red in the warm and nothing in the cold.
        float grey = dot(color, vec3(0.2126, 0.7152, 0.0722));
        color = mix(color, vec3(grey) * vec3(1.06, 0.99, 0.95), amounts.x * 0.84);

        float closing = amounts.z + 0.35 * starts.x;
        float dark = smoothstep(0.45 - 0.35 * closing, 2.2 - 1.0 * closing, edge * (1.0 + 0.3 * starts.x));
        color *= 1.0 - dark * min(closing, 1.0) * 0.92;
        color = mix(color, color * vec3(1.25, 0.72, 0.66), starts.x * 0.6 * dark);

        color += grain(pixel, grey) * amounts.y * 0.13;
        // A start: all goes pale for a moment, the middle most.
        color = mix(color, vec3(grey * 1.7 + 0.10), starts.y * 0.7 * (1.0 - 0.4 * min(edge, 1.0)));
        if (dissolveAmount > 0.0) // where the picture goes, it goes for every mind
            color = mix(color, texture(Picture, (pixel + 0.5) / viewportPixels.zw).rgb, dissolved(pixel));
        COLOR0 = vec4(color + (spread(pixel) - 0.5) / 255.0, 1.0);
    }
}

technique Unsettle
{
    pass Mind
    {
        CullMode = None; ZEnable = False; ZWriteEnable = False;
        AlphaBlendEnable = False; StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = screen;
        PixelShader = unsettled;
    }
}

// Pictures projected onto what is there

VertexShader projector
{
    flat out mat4 viewToModel;
    flat out vec3 axis;    // view space, the way the picture is thrown
    flat out vec2 extents; // of the picture, metres
    void main()
    {
        mat4 modelToView = worldToView * modelToWorld;
        viewToModel = inverse(modelToView);
        axis = normalize(modelToView[2].xyz);
        extents = vec2(length(modelToView[0].xyz), length(modelToView[1].xyz));
        gl_Position = viewToProjection * (modelToView * vec4(POSITION.xyz, 1.0));
    }
}

PixelShader projected
{
    flat in mat4 viewToModel;
    flat in vec3 axis;
    flat in vec2 extents;

    /// The picture's level at this depth; neighbouring pixels may lie on other surfaces and cannot tell.
    float level(float depth)
    {
        float pixel = 2.0 * depth / (viewToProjection[1][1] * viewportPixels.w); // metres across
        vec2 texels = pixel / extents * vec2(textureSize(diffuseMap, 0));
        return log2(max(max(texels.x, texels.y), 1.0));
    }

    void main()
    {
        vec4 stored = texelFetch(GBuffer2, ivec2(gl_FragCoord.xy), 0);
        vec3 position = pixelRay(gl_FragCoord.xy - 0.5) * unpackDepth(stored.ba);
        vec3 inside = (viewToModel * vec4(position, 1.0)).xyz;
        if (stored.b == 0.0 || any(greaterThan(abs(inside), vec3(0.5))))
            discard;
        // Surfaces that turn away from the projector stay clean.
        float facing = -dot(axis, unpackNormal(stored.rg));
        vec4 picture = textureLod(diffuseMap, vec2(inside.x, -inside.y) + 0.5, level(position.z));
        COLOR0 = vec4(picture.rgb, picture.a * decalAlpha * smoothstep(0.1, 0.4, facing));
    }
}

technique Projective_texture
{
    pass Projection
    {
        CullMode = CW; ZEnable = True; ZWriteEnable = False; ZFunc = GreaterEqual; Clipping = False;
        AlphaBlendEnable = True; SrcBlend = SrcAlpha; DestBlend = InvSrcAlpha; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue; // the colour of highlights stays
        VertexShader = projector;
        PixelShader = projected;
    }
}

// Dust

// A mote brings the light that falls on it in the normal and its share of the common size in u.

VertexShader particle
{
    out vec3 glow; // as on the screen: what the combination does is done by now
    void main()
    {
        vec4 viewPosition = worldToView * vec4(POSITION.xyz, 1.0);
        gl_Position = viewToProjection * viewPosition;
        float width = particleSize * TEXCOORD0.x * viewToProjection[1][1] * 0.5 * viewportPixels.w;
        float size = width / max(viewPosition.z, 0.05); // pixels
        // Whatever the picture's size, a mote gives the same share of light as in one of 720 lines: smaller than can be
        // drawn means fainter, larger than that more blurred; close to the eye it must not flash.
        float scale = viewportPixels.w / 720.0;
        float shown = size / scale, spot = clamp(shown, 3.0, 48.0) * scale;
        gl_PointSize = max(spot, 2.0);
        float fading = min(shown * 0.6, 1.0) * min(5.0 / shown, 1.0) * smoothstep(0.15, 0.9, viewPosition.z);
        fading *= spot * spot / (gl_PointSize * gl_PointSize);
        vec3 light = NORMAL.xyz * particleColor.rgb * particleColor.a;
        glow = (1.0 - exp(-5.0 * light)) * fading;
    }
}

PixelShader dust
{
    in vec3 glow;
    void main()
    {
        vec2 fromCentre = gl_PointCoord * 2.0 - 1.0;
        float soft = max(1.0 - dot(fromCentre, fromCentre), 0.0);
        COLOR0 = vec4(glow * soft * soft, 0.0);
    }
}

technique PointParticles
{
    pass Dust
    {
        CullMode = None; ZEnable = True; ZWriteEnable = False; ZFunc = LessEqual;
        AlphaBlendEnable = True; SrcBlend = One; DestBlend = One; BlendOp = Add;
        StencilEnable = False; ColorWriteEnable = Red | Green | Blue | Alpha;
        VertexShader = particle;
        PixelShader = dust;
    }
}
