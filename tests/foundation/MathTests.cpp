// Vectors, matrices and quaternions: the conventions that every spatial file relies on.
#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"
#include "foundation/Vector.h"
#include "foundation/precompile.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

void expectNear(const Vec4 &actual, const Vec4 &expected, float tolerance = 1e-5f)
{
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << actual.toString().toCString();
}

void expectNear(const Matrix4 &actual, const Matrix4 &expected, float tolerance = 1e-5f)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(actual[row][column], expected[row][column], tolerance) << row << "," << column;
}

Matrix4 translation(float x, float y, float z)
{
    Matrix4 m;
    m.translate(Vec4(x, y, z));
    return m;
}

} // namespace

TEST(Vec4, MagnitudeTakesFourComponentsAndDotThree)
{
    const Vec4 v(1, 2, 2, 1);
    EXPECT_FLOAT_EQ(v.magnitude(), std::sqrt(10.0f));
    EXPECT_FLOAT_EQ(v.dot(v), 9);
    EXPECT_EQ(Vec4(1, 0, 0, 5).cross(Vec4(0, 1, 0, 7)), Vec4(0, 0, 1, 0));
    EXPECT_EQ(Vec4().w, 0);
}

TEST(Vec4, NormalizeLeavesTinyVectorsAlone)
{
    Vec4 tiny(1e-7f, 0, 0);
    tiny.normalize();
    EXPECT_EQ(tiny.x, 1e-7f);
    Vec4 point(3, 0, 0, 4);
    point.normalize();
    EXPECT_EQ(point, Vec4(0.6f, 0, 0, 0.8f));
}

TEST(Vec4, ComparesWithATolerancePerComponentAndCountsW)
{
    EXPECT_EQ(Vec4(1, 2, 3, 4), Vec4(1 + 5e-7f, 2, 3, 4));
    EXPECT_NE(Vec4(1, 2, 3, 4), Vec4(1.00001f, 2, 3, 4));
    EXPECT_NE(Vec4(0, 0, 0, 1), Vec4());
    EXPECT_NE(Vec4(std::nanf("")), Vec4(std::nanf("")));
}

TEST(Vec4, ClampRemovesNoiseStrictlyBelowTheTolerance)
{
    Vec4 v(9e-7f, -9e-7f, 1e-6f, 0.5f);
    v.clamp();
    EXPECT_EQ(v.x, 0);
    EXPECT_EQ(v.y, 0);
    EXPECT_EQ(v.z, 1e-6f);
    EXPECT_TRUE(std::signbit((-Vec4()).x));
}

TEST(Vec4, NamesShareTheirFloats)
{
    Vec4 v(1, 2, 3, 4);
    EXPECT_EQ(v.g, 2);
    EXPECT_EQ(v.p, 3);
    EXPECT_EQ(v[A_COMPONENT], 4);
    EXPECT_EQ(v.toString(), SCS("Vec4(1, 2, 3, 4)"));
    EXPECT_EQ(2.0f * v * v / 2.0f, Vec4(1, 4, 9, 16));
}

TEST(Vec4, RotatesCounterClockwiseAroundItsAxis)
{
    Vec4 v(1, 0, 0, 1);
    v.rotate(Vec4(0, 2, 0), PI / 2);
    expectNear(v, Vec4(0, 0, -1, 1));
}

TEST(MakeOrthonormal, ParallelAxesGiveAZeroThirdAxisAndStay)
{
    Vec4 x(2, 0, 0), y(4, 0, 0), z(1, 1, 1);
    makeOrthonormal(x, y, z);
    EXPECT_EQ(z, Vec4());
    EXPECT_EQ(x, Vec4(2, 0, 0));
    EXPECT_EQ(y, Vec4(4, 0, 0));
    y = Vec4(1, 3, 0);
    makeOrthonormal(x, y, z);
    expectNear(x, Vec4(1, 0, 0));
    expectNear(y, Vec4(0, 1, 0));
    expectNear(z, Vec4(0, 0, 1));
}

TEST(Matrix4, TransformsColumnVectorsRightmostFirst)
{
    Matrix4 scaling;
    scaling.scale(2, 3, 4);
    const Vec4 point(1, 1, 1, 1);
    expectNear(translation(5, 6, 7) * scaling * point, Vec4(7, 9, 11, 1));
    expectNear(scaling * translation(5, 6, 7) * point, Vec4(12, 21, 32, 1));
    expectNear(translation(5, 6, 7) * Vec4(1, 1, 1, 0), Vec4(1, 1, 1, 0));
}

TEST(Matrix4, VectorTimesRotationIsTheInverseRotation)
{
    const Matrix4 rotation = Quaternion::fromAxisAngle(Vec4(1, 2, 3), 0.7f).generateRotation();
    const Vec4 v(0.3f, -2, 5);
    expectNear((rotation * v) * rotation, v);
}

TEST(Matrix4, BasisStandsInColumns)
{
    Matrix4 m;
    m.basis(Vec4(1, 2, 3), Vec4(4, 5, 6), Vec4(7, 8, 9));
    EXPECT_EQ(m.getColumn(1), Vec4(4, 5, 6, 0));
    EXPECT_EQ(m[2][0], 3);
    EXPECT_EQ(m.getColumn(3), Vec4(0, 0, 0, 1));
    EXPECT_EQ(translation(1, 2, 3).getColumn(3), Vec4(1, 2, 3, 1));
}

TEST(Matrix4, InverseUndoesAGeneralMatrix)
{
    Matrix4 m = Quaternion::fromAxisAngle(Vec4(1, -1, 2), 1.1f).generateRotation(Vec4(3, -4, 5));
    m[0][1] += 0.5f;
    m[3][0] = 0.1f;
    m[3][3] = 2;
    expectNear(m * m.inverse(), Matrix4());
    expectNear(m.inverse() * m, Matrix4());
    EXPECT_NEAR(m.determinant() * m.inverse().determinant(), 1, 1e-5f);
    EXPECT_NEAR((m * 2.0f).determinant(), 16 * m.determinant(), 1e-3f);
    expectNear(m.transpose().transpose(), m);
}

TEST(Matrix4, ScalarActsOnAllSixteenEntriesAndBuildersOverwriteThem)
{
    Matrix4 m = Matrix4(1, 2, 3, 4, 5, 6, 7, 8, 9) * 2.0f;
    EXPECT_EQ(m[1][2], 12);
    EXPECT_EQ(m[3][3], 2);
    m.zero();
    EXPECT_EQ(m[3][3], 0);
    m.setBlockInertiaTensor(Vec4(0.5f, 1, 1.5f), 12);
    expectNear(m, Matrix4(13, 0, 0, 0, 10, 0, 0, 0, 5));
}

TEST(Quaternion, MultipliesAsRotationsCompose)
{
    const Quaternion a = Quaternion::fromAxisAngle(Vec4(0, 1, 0), 0.8f);
    const Quaternion b = Quaternion::fromAxisAngle(Vec4(1, 0, 0), -0.3f);
    expectNear((a * b).generateRotation(), a.generateRotation() * b.generateRotation());
    EXPECT_EQ(Quaternion(0, 1, 0, 0) * Quaternion(0, 0, 1, 0), Quaternion(0, 0, 0, 1));
    EXPECT_EQ(a * a.inverse(), Quaternion());
}

TEST(Quaternion, CompoundProductClampsItsLeftSideOnly)
{
    Quaternion q(1, 9e-7f, 0, 0);
    const Quaternion large(0, 0, 1e6f, 0);
    EXPECT_NEAR((q * large).k, 0.9f, 1e-6f);
    q *= large;
    EXPECT_EQ(q.k, 0);
}

TEST(Quaternion, NormalizesZeroToNoRotation)
{
    Quaternion zero(0, 0, 0, 0);
    zero.normalize();
    EXPECT_EQ(zero, Quaternion(1, 0, 0, 0));
}

TEST(Quaternion, RoundTripThroughAMatrixNegatesIAndK)
{
    const Quaternion q = Quaternion::fromAxisAngle(Vec4(1, 2, 3), 1);
    const Quaternion back = q.generateRotation().toQuaternion();
    EXPECT_NEAR(back.r, q.r, 1e-5f);
    EXPECT_NEAR(back.i, -q.i, 1e-5f);
    EXPECT_NEAR(back.j, q.j, 1e-5f);
    EXPECT_NEAR(back.k, -q.k, 1e-5f);
}

TEST(Quaternion, VanishingTraceTakesTheSecondColumnAsVectorPart)
{
    EXPECT_EQ(Matrix4(-1, 0, 0, 0, 1, 0, 0, 0, -1).toQuaternion(), Quaternion(0, 0, 1, 0));
}

TEST(Quaternion, HalfTurnsAroundAnyAxisComeBackFinite)
{
    for (int step = 0; step < 1000; ++step)
    {
        const Vec4 axis(static_cast<float>(step) * 0.01f, 1, 0.3f);
        const Quaternion back = Quaternion::fromAxisAngle(axis, PI).generateRotation().toQuaternion();
        ASSERT_NEAR(back.r * back.r + back.i * back.i + back.j * back.j + back.k * back.k, 1, 1e-5f) << step;
    }
}

TEST(Quaternion, FacesAlongADirectionWithoutRoll)
{
    const Quaternion right(Vec4(2, 0, 0));
    expectNear(right.generateRotation() * Vec4(0, 0, 1), Vec4(1, 0, 0));
    expectNear(right.generateRotation() * Vec4(0, 1, 0), Vec4(0, 1, 0));
}

TEST(Quaternion, LookingStraightUpStaysFiniteWithTheAdaptingUpVector)
{
    const Quaternion up = Quaternion::fromDirectionWithAdaptingUpVector(Vec4(0, 1, 0));
    EXPECT_NEAR(up.r * up.r + up.i * up.i + up.j * up.j + up.k * up.k, 1, 1e-5f);
    EXPECT_EQ(Quaternion::fromDirectionWithAdaptingUpVector(Vec4(1, 0.5f, 1)), Quaternion(Vec4(1, 0.5f, 1)));
    EXPECT_NE(Quaternion::fromDirectionWithAdaptingUpVector(Vec4(1, 3, 1)), Quaternion(Vec4(1, 3, 1)));
}

TEST(Quaternion, UpdateTurnsByTheAngularVelocity)
{
    Quaternion q;
    for (int step = 0; step < 1000; ++step)
        q.update(Vec4(0, PI / 2, 0), 0.001f);
    const Quaternion expected = Quaternion::fromAxisAngle(Vec4(0, 1, 0), PI / 2);
    EXPECT_NEAR(q.r, expected.r, 1e-3f);
    EXPECT_NEAR(q.j, expected.j, 1e-3f);

    const Quaternion before = q;
    q.update(Vec4(5e-4f, 0, 0), 0.001f);
    EXPECT_EQ(q, before);
}

TEST(Quaternion, GraphicsFormPutsTheRealPartLast)
{
    const D3DXQUATERNION form = Quaternion(1, 2, 3, 4).directXQuaternion();
    EXPECT_EQ(form.x, 2);
    EXPECT_EQ(form.w, 1);
    EXPECT_EQ(Quaternion(form), Quaternion(1, 2, 3, 4));
}

TEST(Helpers, InterpolateAndClamp)
{
    EXPECT_FLOAT_EQ(lerp(2.0f, 4.0f, 0.25f), 2.5f);
    EXPECT_EQ(lerp(Vec4(0, 2), Vec4(4, 4), 0.5f), Vec4(2, 3));
    EXPECT_EQ(lerp(Quaternion(1, 0, 0, 0), Quaternion(-1, 0, 0, 0), 0.5), Quaternion(1, 0, 0, 0));
    EXPECT_EQ(clamp(5, 0, 3), 3);
    EXPECT_EQ(saturate(-0.5f), 0);
    EXPECT_FLOAT_EQ(smoothstep(2, 4, 3), 0.5f);
    EXPECT_EQ(smoothstep(2, 2, 1.9f), 0);
    EXPECT_EQ(smoothstep(4, 2, 4), 0);
    EXPECT_FLOAT_EQ(RadToDeg(PI), 180);
    EXPECT_FLOAT_EQ(DegToRad(180), PI);
}
