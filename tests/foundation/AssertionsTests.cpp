// Failed checks: what is reported, what goes on and what ends the process.
#include "foundation/Assertions.h"
#include "foundation/ErrorCode.h"
#include "foundation/Logger.h"
#include "foundation/StackTrace.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/Messages.h"

#include <boost/format.hpp>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

struct Box
{
    std::string text;
    std::string caption;
    UINT type;
};
std::vector<Box> boxes;
int answer = IDOK;

int recordBox(HWND, const char *text, const char *caption, UINT type)
{
    boxes.push_back({text, caption, type});
    return answer;
}

/// Catches message boxes, and the error stream, for one test.
class Assertion : public testing::Test
{
protected:
    void SetUp() override
    {
        boxes.clear();
        port::setMessageBoxPresenter(recordBox);
        port::flushDebugOutput();
        testing::internal::CaptureStderr();
    }
    void TearDown() override
    {
        port::flushDebugOutput();
        testing::internal::GetCapturedStderr();
        port::setMessageBoxPresenter(nullptr);
    }
    static const Logger_::HistoryEntry &lastLine() { return Logger().getHistoryEntry(Logger().getHistorySize() - 1); }
};

class FailsWhileTheStackIsDumped : public IConsoleOutputProvider
{
public:
    void writeLine(Logger_::Importance level, const String &, const String &, long) override
    {
        if (level == Logger_::I_STACKTRACE)
            KV_VERIFY(false, "nested");
    }
};

} // namespace

TEST_F(Assertion, HeldChecksEvaluateTheirExpressionOnceAndReportNothing)
{
    int evaluated = 0;
    const std::size_t before = Logger().getLogCount();
    KV_ASSERT(++evaluated == 1, "never seen");
    KV_CRITICAL_ASSERT(++evaluated == 2);
    KV_VERIFY(++evaluated == 3);
    EXPECT_EQ(evaluated, 3);
    EXPECT_EQ(Logger().getLogCount(), before);
}

TEST_F(Assertion, VerifyLogsAWarningAndGoesOnWithoutABox)
{
    KV_VERIFY(1 + 1 == 3, "%d is not %s", 2, "three");
    EXPECT_EQ(lastLine().level, Logger_::I_WARNING);
    EXPECT_EQ(lastLine().message, SCS("Minor assertion failed: [ 1 + 1 == 3 ] 2 is not three"));
    EXPECT_EQ(lastLine().line, __LINE__ - 3);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(Assertion, AssertShowsABoxAndGoesOn)
{
    KV_ASSERT(false);
    const std::string place = std::string("at file ") + __FILE__ + ", line " + std::to_string(__LINE__ - 1) + ".";
    EXPECT_EQ(lastLine().level, Logger_::I_ERROR);
    EXPECT_EQ(lastLine().message, SCS("Assertion failed: [ false ] <no message>"));
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].caption, "Assertion failed!");
    EXPECT_EQ(boxes[0].type, 0x2030u);
    EXPECT_EQ(boxes[0].text, "<no message>\n\nThe failing expression was:\n\tfalse\n\n" + place);
}

TEST_F(Assertion, MessagesMayBeAnyTextForm)
{
    KV_WARN(ErrorCode(ErrorCode::BAD_HANDLE));
    EXPECT_EQ(lastLine().message, SCS("Minor assertion failed: [  ] BAD_HANDLE: <No error description.>"));
    KV_WARN(boost::format("%1%%%") % 50);
    EXPECT_EQ(lastLine().message, SCS("Minor assertion failed: [  ] 50%"));
    KV_WARN(SCS("100%s"));
    EXPECT_EQ(lastLine().message, SCS("Minor assertion failed: [  ] 100%s"));
    KV_ERROR("raised");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text.find("The failing expression"), std::string::npos);
}

TEST_F(Assertion, FrameLinesOfTheStackStayOutOfTheHistory)
{
    KV_VERIFY(false);
    const std::size_t last = Logger().getHistorySize() - 1;
    EXPECT_EQ(Logger().getHistoryEntry(last - 1).message, SCS("-- End stack trace:"));
    EXPECT_EQ(Logger().getHistoryEntry(last - 2).message, SCS("-- Begin stack trace:"));
}

TEST(AssertionDeathTest, CriticalAssertReportsAndEndsTheProcessWithStatus1)
{
    EXPECT_EXIT(KV_CRITICAL_ASSERT(false, "nothing left to stand on"), testing::ExitedWithCode(1),
                "Critical assertion failed!\n.*nothing left to stand on(.|\n)*The game will now abort.");
    EXPECT_EXIT(KV_FATAL("cannot go on"), testing::ExitedWithCode(1), "cannot go on");
}

namespace
{

/// Fails so many checks and answers their boxes alike.
void failAndAnswer(int times, int answerOfAll)
{
    answer = answerOfAll;
    for (int i = 0; i < times; ++i)
        KV_ASSERT(false);
}

/// Ends a process of its own, where no box was shown before, by whether a scene goes as it should.
template <class Scene>
void endBy(Scene scene)
{
    port::setMessageBoxPresenter(recordBox);
    failAndAnswer(3, IDOK);
    for (const Box &box : boxes)
        if (box.type != 0x2030)
            std::_Exit(1);
    boxes.clear();
    std::_Exit(scene() ? 0 : 1);
}

} // namespace

TEST(AssertionDeathTest, BoxesBehindTheThirdLetTheUserGoOnSeeNoMoreOrQuit)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto goesOn = []
    {
        failAndAnswer(2, IDRETRY);
        return boxes.size() == 2 && boxes[0].type == 0x2032;
    };
    EXPECT_EXIT(endBy(goesOn), testing::ExitedWithCode(0), "");
    const auto seesNoMore = []
    {
        failAndAnswer(3, IDIGNORE);
        return boxes.size() == 1;
    };
    EXPECT_EXIT(endBy(seesNoMore), testing::ExitedWithCode(0),
                "Assertion failed: \\[ false \\](.|\n)*Assertion failed: ");
    const auto quits = []
    {
        failAndAnswer(3, IDABORT);
        MSG msg;
        return boxes.size() == 1 && PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE) && msg.message == WM_QUIT &&
               msg.wParam == 1;
    };
    EXPECT_EXIT(endBy(quits), testing::ExitedWithCode(0), "");
}

TEST(AssertionDeathTest, AssertionDuringTheReportOfAnotherEndsTheProcess)
{
    const auto failTwice = []
    {
        Logger().addOutputProvider(std::make_unique<FailsWhileTheStackIsDumped>());
        KV_VERIFY(false, "outer");
        std::_Exit(0);
    };
    EXPECT_EXIT(failTwice(), testing::ExitedWithCode(1), "");
}

namespace
{

__attribute__((noinline)) StackTrace traceFromHere()
{
    return StackTrace();
}

} // namespace

TEST(StackTrace, NamesItsCallersInnermostFirst)
{
    const StackTrace trace = traceFromHere();
    ASSERT_GE(trace.getFrameCount(), 2u);
    EXPECT_LT(trace.getFrameCount(), MAX_STACKTRACE_FRAMES);
    const StackTrace::Frame innermost = trace.getFrame(0).value;
    EXPECT_NE(std::string(innermost.function.toCString()).find("traceFromHere"), std::string::npos)
        << innermost.function.toCString();
    EXPECT_TRUE(innermost.dataRetrieved);
    EXPECT_EQ(trace.getFrame(trace.getFrameCount()).code.getCode(), ErrorCode::OUT_OF_BOUNDS);
#ifdef KV_HAVE_BACKTRACE
    EXPECT_NE(std::string(innermost.file.toCString()).find("AssertionsTests.cpp"), std::string::npos);
    EXPECT_GT(innermost.line, 0);
#endif
}

TEST(StackTrace, LooksEachFrameUpOnce)
{
    const StackTrace trace = traceFromHere();
    const String first = trace.getFrame(0).value.function;
    EXPECT_EQ(trace.getFrame(0).value.function.toCString(), first.toCString());
    EXPECT_EQ(std::string(trace.toString().toCString()).find(first.toCString()) != std::string::npos, true);
}

TEST(StackTrace, SkipLeavesOutTheInnermostFrames)
{
    const StackTrace all(1);
    const StackTrace without(2);
    EXPECT_EQ(without.getFrameCount() + 1, all.getFrameCount());
    EXPECT_EQ(without.getFrame(0).value.address, all.getFrame(1).value.address);
    EXPECT_NE(without.getHash(), all.getHash());
}
