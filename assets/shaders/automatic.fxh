// Constants that the scene graph sets on every effect before each batch.
//
// Matrices arrive as row-vector matrices, row by row; a GLSL mat4 that reads the same sixteen floats is their
// transpose, so shaders multiply matrix * column vector: viewToProjection * worldToView * position.

float4x4 worldToView;
float4x4 viewToWorld;
float4x4 worldToViewInverseTranspose;   // for normals
float4x4 viewToProjection;              // left-handed: the camera looks along +z, depth 0 to 1
float4 camFOV;                          // horizontal and vertical angle, radians
float camNear = 0.01;
float camFar = 50;
float4 viewportPixels = { 0, 0, 1, 1 }; // left, top, width, height
