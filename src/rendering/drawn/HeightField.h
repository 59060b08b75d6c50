// HeightField: heights on a rectangular grid, and the surface between them.
#pragma once

#include "foundation/KVString.h"

#include <vector>

class MeshBuilder;

/// The heights of a terrain over a square of side 1 around the origin, in columns towards +x and rows towards -z.
///
/// Row 0 lies at z 0.5, so that an image read row by row is the terrain seen from above with its top at +z. A height
/// of 1 is as high as the terrain's scale says. Between the grid's points the surface is two triangles a cell, the same
/// in the mesh and in what heightAt tells. A plain value.
class HeightField
{
public:
    static constexpr int leastPoints = 2;
    static constexpr int mostPoints = 513; ///< along a side: a quarter of a million vertices of 56 bytes

    /// Flat, of the least size.
    HeightField() { reset(leastPoints, leastPoints); }

    /// Makes a flat field; sizes go to the nearer of the bounds.
    void reset(int columns_, int rows_);
    /// Takes heights, row by row, and brings them to a size within the bounds, smoothly.
    /// @param samples  columns times rows heights; fewer, or none, make a flat field
    void assign(const std::vector<float> &samples, int columns_, int rows_);
    /// Sets one point; one outside the grid, or a height that is no number, is ignored.
    void set(int column, int row, float height);

    int getColumns() const { return columns; }
    int getRows() const { return rows; }
    /// Height at a point of the grid; outside it, at the nearest one.
    float get(int column, int row) const;
    /// Height of the surface above a place of the unit square; outside it, of the nearest place.
    float heightAt(float x, float z) const;

    /// Appends the surface, with smooth normals and tangents.
    /// @param repeat  how often the texture lies along each side
    void buildMesh(MeshBuilder &builder, float repeat) const;

private:
    int columns = 0;
    int rows = 0;
    std::vector<float> heights; ///< row by row
};

/// Reads an image file of the texture folder as heights: its brightness, 0 black to 1 white.
///
/// DDS files of 32-bit floats are taken as they are, and keep steps finer than the 256 of other images.
/// @param cause  what went wrong, and what to do about it
/// @return whether the field was filled
bool readHeightImage(const String &fileName, HeightField &field, String &cause);
