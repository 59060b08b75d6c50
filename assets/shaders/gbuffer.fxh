// What lies in the G-buffer, and how it is packed.
//
//   GBuffer1   rgb  albedo as in the texture, not linear      a    colour of highlights, packed
//   GBuffer2   rg   view-space normal, octahedral             ba   view-space depth, rounded part and rest
//   GBuffer3   rgb  emitted light as in the texture           a    unused
//   LBuffer    rgb  light of the lights that leaves the surface towards the eye, linear
//
// What lights return is summed up in its colours, so that a light of one colour shines so on a surface of another.
// The colour of highlights is a number in the sixteen bits of a half float: nothing blends with it.
//
// Depth is the distance along the view axis in world units. One half float is too coarse for it, so the second holds
// what rounding took away. Depth 0 is where nothing was drawn.

glsl
{
    vec3 toLinear(vec3 color)
    {
        return color * (color * (color * 0.305306 + 0.682171) + 0.012523);
    }

    // Steps of red, green and blue, finest where the eye is; in all fewer than there are halves of a plain exponent.
    const vec3 highlightSteps = vec3(39.0, 45.0, 34.0);

    float packHighlight(vec3 color)
    {
        vec3 step = floor(sqrt(clamp(color, 0.0, 1.0)) * (highlightSteps - 1.0) + 0.5);
        uint number = uint((step.r * highlightSteps.g + step.g) * highlightSteps.b + step.b);
        uint bits = number < 0x7800u ? number + 0x0400u : number - 0x7800u + 0x8400u; // neither denormal nor infinite
        return unpackHalf2x16(bits).x;
    }

    vec3 unpackHighlight(float stored)
    {
        uint bits = packHalf2x16(vec2(stored, 0.0));
        float number = float(bits < 0x8000u ? bits - 0x0400u : bits - 0x8400u + 0x7800u) + 0.5;
        float rest = floor(number / highlightSteps.b);
        float red = floor((rest + 0.5) / highlightSteps.g);
        vec3 step = vec3(red, rest - red * highlightSteps.g, floor(number - rest * highlightSteps.b));
        vec3 root = step / (highlightSteps - 1.0);
        return root * root;
    }

    vec2 packNormal(vec3 n)
    {
        vec2 p = n.xy / (abs(n.x) + abs(n.y) + abs(n.z));
        vec2 side = vec2(p.x >= 0.0 ? 1.0 : -1.0, p.y >= 0.0 ? 1.0 : -1.0);
        return n.z >= 0.0 ? p : (1.0 - abs(p.yx)) * side;
    }

    vec3 unpackNormal(vec2 p)
    {
        vec3 n = vec3(p, 1.0 - abs(p.x) - abs(p.y));
        float fold = max(-n.z, 0.0);
        n.x += n.x >= 0.0 ? -fold : fold;
        n.y += n.y >= 0.0 ? -fold : fold;
        return normalize(n);
    }

    vec2 packDepth(float depth)
    {
        float rounded = unpackHalf2x16(packHalf2x16(vec2(depth, 0.0))).x;
        return vec2(rounded, depth - rounded);
    }

    float unpackDepth(vec2 packedDepth)
    {
        return packedDepth.x + packedDepth.y;
    }

    /// Factors (xy) and offsets (zw) that make the view-space ray of a pixel from gl_FragCoord: the ray's x and y for a
    /// length of 1 along the view axis.
    vec4 pixelRays()
    {
        vec2 tangents = vec2(1.0 / viewToProjection[0][0], -1.0 / viewToProjection[1][1]);
        vec2 perPixel = 2.0 * tangents / viewportPixels.zw;
        return vec4(perPixel, -tangents - (viewportPixels.xy + 0.5) * perPixel);
    }

    /// View-space ray through a pixel, of length 1 along the view axis. Pixels count from 0 in the target.
    vec3 pixelRay(vec2 pixel)
    {
        vec4 rays = pixelRays();
        return vec3((pixel + 0.5) * rays.xy + rays.zw, 1.0);
    }
}
