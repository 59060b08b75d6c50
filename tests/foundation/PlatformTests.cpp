// The platform operations that the foundation calls: message boxes, system texts, matrices of the graphics layer.
#include "foundation/Matrix4.h"
#include "foundation/ProfilerScope.h"
#include "port/d3dx9/D3DXMath.h"
#include "port/win32/Diagnostics.h"

#include <gtest/gtest.h>

#include <chrono>

#include <string>

namespace
{

int cannotShow(HWND, const char *, const char *, UINT)
{
    return 0;
}

D3DXVECTOR4 transform(const D3DXVECTOR4 &v, const D3DXMATRIX &m)
{
    D3DXVECTOR4 out;
    FLOAT *const components[] = {&out.x, &out.y, &out.z, &out.w};
    for (int column = 0; column < 4; ++column)
        *components[column] = v.x * m.m[0][column] + v.y * m.m[1][column] + v.z * m.m[2][column] + v.w * m.m[3][column];
    return out;
}

struct RecordingSink : IProfilerSink
{
    std::uint64_t beginScope(const String &, const String &name) override
    {
        log += std::string("begin ") + name.toCString() + ";";
        return 7;
    }
    void endScope(std::uint64_t beginID, const String &category, const String &, bool) override
    {
        log += "end " + std::to_string(beginID) + " " + category.toCString() + ";";
    }
    std::string log;
};

} // namespace

TEST(MessageBox, PrintsWhereNothingCanBeShown)
{
    for (const port::MessageBoxPresenter presenter : {port::MessageBoxPresenter(nullptr), &cannotShow})
    {
        port::setMessageBoxPresenter(presenter);
        testing::internal::CaptureStderr();
        EXPECT_EQ(MessageBoxA(nullptr, "the text", "the caption", MB_OK), IDOK);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "the caption\nthe text\n");
        EXPECT_EQ(MessageBoxA(nullptr, "", "", MB_ABORTRETRYIGNORE), IDRETRY) << "nobody asked for an end";
    }
    port::setMessageBoxPresenter(nullptr);
}

TEST(FormatMessage, FillsTheCallersBufferOrSaysThatItIsTooSmall)
{
    char small[4];
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_ACCESS_DENIED, 0, small, 4, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    char large[64];
    const DWORD length =
        FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_ACCESS_DENIED, 0, large, sizeof large, nullptr);
    EXPECT_EQ(std::string(large), "Access was denied.");
    EXPECT_EQ(length, 18u);
}

TEST(PerformanceCounter, RunsAtItsRate)
{
    using Clock = std::chrono::steady_clock;
    LARGE_INTEGER first, second, rate;
    const auto outerBegin = Clock::now();
    QueryPerformanceCounter(&first);
    const auto innerBegin = Clock::now();
    while (Clock::now() - innerBegin < std::chrono::milliseconds(20))
        continue;
    const auto innerEnd = Clock::now();
    QueryPerformanceCounter(&second);
    const auto outerEnd = Clock::now();
    QueryPerformanceFrequency(&rate);

    // However often the test is interrupted, the counter's time lies between these two.
    const double seconds = static_cast<double>(second.QuadPart - first.QuadPart) / static_cast<double>(rate.QuadPart);
    EXPECT_GE(seconds, std::chrono::duration<double>(innerEnd - innerBegin).count() * 0.999);
    EXPECT_LE(seconds, std::chrono::duration<double>(outerEnd - outerBegin).count() * 1.001);
}

TEST(CriticalSection, MayBeEnteredAgainByItsOwner)
{
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    EnterCriticalSection(&section);
    EnterCriticalSection(&section);
    LeaveCriticalSection(&section);
    LeaveCriticalSection(&section);
    DeleteCriticalSection(&section);
    EXPECT_EQ(section.lock, nullptr);
}

TEST(D3DXMath, PerspectiveMapsTheNearAndFarPlanesToDepthZeroAndOne)
{
    D3DXMATRIX projection;
    D3DXMatrixPerspectiveFovLH(&projection, 1.5707963f, 2, 1, 100);
    const D3DXVECTOR4 nearCorner = transform({2, 1, 1, 1}, projection);
    EXPECT_NEAR(nearCorner.x / nearCorner.w, 1, 1e-5);
    EXPECT_NEAR(nearCorner.y / nearCorner.w, 1, 1e-5);
    EXPECT_NEAR(nearCorner.z / nearCorner.w, 0, 1e-5);
    const D3DXVECTOR4 farPoint = transform({0, 0, 100, 1}, projection);
    EXPECT_NEAR(farPoint.z / farPoint.w, 1, 1e-5);

    D3DXMatrixOrthoLH(&projection, 8, 4, 1, 5);
    const D3DXVECTOR4 corner = transform({4, -2, 5, 1}, projection);
    EXPECT_NEAR(corner.x, 1, 1e-6);
    EXPECT_NEAR(corner.y, -1, 1e-6);
    EXPECT_NEAR(corner.z, 1, 1e-6);
}

TEST(D3DXMath, InverseInPlaceUndoesTheMatrixAndRefusesSingularOnes)
{
    const D3DXMATRIX m = {{{1, 2, 0, 1}, {0, 3, -1, 2}, {4, 0, 2, 0}, {5, -6, 7, 1}}};
    D3DXMATRIX product = m;
    FLOAT determinant = 0;
    ASSERT_EQ(D3DXMatrixInverse(&product, &determinant, &product), &product);
    EXPECT_NEAR(determinant, -20, 1e-4);
    D3DXMatrixMultiply(&product, &product, &m);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(product.m[row][column], row == column, 1e-5);
    const D3DXMATRIX flat = {};
    EXPECT_EQ(D3DXMatrixInverse(&product, nullptr, &flat), nullptr);
}

TEST(D3DXMath, TransposeTurnsAColumnVectorMatrixIntoARowVectorOne)
{
    Matrix4 move;
    move.translate(Vec4(1, 2, 3));
    D3DXMATRIX rows = move.directXMatrix();
    D3DXMatrixTranspose(&rows, &rows);
    EXPECT_EQ(transform({0, 0, 0, 1}, rows).y, 2);
}

TEST(ProfilerScope, ReportsToTheSinkThatWasInForceAtItsStart)
{
    RecordingSink sink;
    {
        const ProfilerScope unseen(SCS("frame"), SCS("nobody listens"));
        profilerSink = &sink;
    }
    {
        const ProfilerScope scope(SCS("frame"), SCS("physics"));
    }
    {
        const ProfilerScope outlivesTheSink(SCS("frame"), SCS("shutdown"));
        profilerSink = nullptr;
    }
    EXPECT_EQ(sink.log, "begin physics;end 7 frame;begin shutdown;");
}
