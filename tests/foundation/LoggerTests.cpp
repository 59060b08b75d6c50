// The log: its line form, its history, and its providers.
#include "foundation/ConsoleOutputProviders.h"
#include "foundation/Logger.h"
#include "port/win32/Diagnostics.h"

#include <boost/format.hpp>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

namespace
{

const bool loggedBeforeMain = (Logger().writeLine(Logger_::I_DEBUG, "logged by a static initialiser"), true);

/// What the error stream receives while `write` runs on a fresh log.
template <class Write>
std::string outputOf(Write write)
{
    port::flushDebugOutput();
    testing::internal::CaptureStderr();
    Logger_ log;
    write(log);
    port::flushDebugOutput();
    return testing::internal::GetCapturedStderr();
}

class Recorder : public IConsoleOutputProvider
{
public:
    Recorder(std::string &lines, const char *name) : lines(lines), name(name) {}
    void writeLine(Logger_::Importance, const String &message, const String &, long) override
    {
        lines += std::string(name) + ":" + message.toCString() + " ";
    }

private:
    std::string &lines;
    const char *name;
};

} // namespace

TEST(Logger, WritesPlaceImportanceAndMessage)
{
    EXPECT_TRUE(loggedBeforeMain);
    const auto write = [](Logger_ &log)
    {
        log.writeLine(Logger_::I_WARNING, SCS("low battery"), SCS("Flashlight.cpp"), 12);
        log.writeLine(Logger_::I_INFO, "no place");
        log.writeLine(Logger_::I_STACKTRACE, boost::format("%1% deep") % 3, SCS("f"), 1);
        log.writeFormatted(Logger_::I_DEBUG, SCS("g.cpp"), 2, "%d of %.1f", 3, 4.5);
    };
    EXPECT_EQ(outputOf(write), "Flashlight.cpp(12): Warning: low battery\nInformation: no place\nf(1): : 3 deep\n"
                               "g.cpp(2): Debug: 3 of 4.5\n");
}

TEST(Logger, MacrosPassTheirPlace)
{
    const std::size_t before = Logger().getLogCount();
    KV_LOG(Logger_::I_DEBUG, "a line");
    KV_LOGF(Logger_::I_DEBUG, "line %d", 2);
    EXPECT_EQ(Logger().getLogCount(), before + 2);
    const Logger_::HistoryEntry &last = Logger().getHistoryEntry(Logger().getHistorySize() - 1);
    EXPECT_EQ(last.message, SCS("line 2"));
    EXPECT_EQ(last.line, __LINE__ - 4);
    EXPECT_EQ(last.file, SCS(__FILE__));
    EXPECT_EQ(last.level, Logger_::I_DEBUG);
}

TEST(Logger, The1001stLineDropsTheFirstFromTheHistory)
{
    Logger_ log;
    log.removeOutputProvider(nullptr);
    outputOf(
        [&](Logger_ &)
        {
            for (int i = 1; i <= 1001; ++i)
                log.writeLine(Logger_::I_DEBUG, String::format("%d", i));
        });
    EXPECT_EQ(log.getLogCount(), 1001u);
    EXPECT_EQ(log.getHistorySize(), 1000u);
    EXPECT_EQ(log.getHistoryEntry(0).message, SCS("2"));
    EXPECT_EQ(log.getHistoryEntry(999).message, SCS("1001"));
}

TEST(Logger, ProvidersHearEveryLineInTheOrderOfTheirInstallation)
{
    std::string lines;
    outputOf(
        [&](Logger_ &log)
        {
            auto first = std::make_unique<Recorder>(lines, "a");
            const IConsoleOutputProvider *const firstPlace = first.get();
            log.addOutputProvider(std::move(first));
            log.addOutputProvider(std::make_unique<Recorder>(lines, "b"));
            log.writeLine(Logger_::I_DEBUG, "1");
            EXPECT_TRUE(log.removeOutputProvider(firstPlace));
            EXPECT_FALSE(log.removeOutputProvider(firstPlace));
            log.writeLine(Logger_::I_CRITICAL, "2");
        });
    EXPECT_EQ(lines, "a:1 b:1 b:2 ");
}

TEST(Logger, ErrorsReachTheFileAtOnce)
{
    const std::string path = testing::TempDir() + "kavel_logger_test.log";
    FileConsoleOutputProvider provider(String::copyFrom(path));
    provider.writeLine(Logger_::I_INFO, SCS("before"), String(), 0);
    provider.writeLine(Logger_::I_ERROR, SCS("broken"), SCS("x.cpp"), 7);
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    EXPECT_EQ(text.str(), "Information: before\nx.cpp(7): Error: broken\n");
    std::remove(path.c_str());
}

TEST(DebugOutput, AFileKeepsDebugLinesThatTheErrorStreamDoesNotShow)
{
    const std::string path = testing::TempDir() + "kavel_kept_test.log";
    const auto write = [&](Logger_ &log)
    {
        EXPECT_EQ(port::keepDebugOutput(path.c_str()), "");
        OutputDebugStringConsoleOutputProvider::showDebugLines(false);
        log.writeLine(Logger_::I_DEBUG, "detail");
        log.writeLine(Logger_::I_INFO, "news");
        OutputDebugStringConsoleOutputProvider::showDebugLines(true);
    };
    EXPECT_EQ(outputOf(write), "Information: news\n");
    std::ostringstream kept;
    kept << std::ifstream(path).rdbuf();
    EXPECT_EQ(kept.str(), "Debug: detail\nInformation: news\n");
    std::remove(path.c_str());
}

TEST(DebugOutput, AFullDiskIsToldOnceAndAFileThatCannotBeMadeAtOnce)
{
    const auto write = [](Logger_ &log)
    {
        EXPECT_EQ(port::keepDebugOutput("/dev/full"), "");
        for (int i = 0; i < 2; ++i)
        {
            log.writeLine(Logger_::I_INFO, "news");
            port::flushDebugOutput();
        }
    };
    const std::string written = outputOf(write);
    EXPECT_EQ(written, "Information: news\nWarning: The log file takes no more: No space left on device. "
                       "The run goes on without it.\nInformation: news\n");
    EXPECT_EQ(port::keepDebugOutput("/no/such/folder/x.log"), "No such file or directory");
}

TEST(DebugOutput, LongAndManyTextsArriveWholeAndInOrder)
{
    const std::string text(1000, 'x');
    std::string expected;
    const std::string written = outputOf(
        [&](Logger_ &)
        {
            for (int i = 0; i < 200; ++i)
            {
                expected += std::to_string(i) + text + "\n";
                OutputDebugStringA((std::to_string(i) + text + "\n").c_str());
            }
        });
    EXPECT_EQ(written, expected);
}

TEST(DebugOutputDeathTest, LinesBeforeACrashAreWritten)
{
#ifdef KV_SANITIZE
    GTEST_SKIP() << "the sanitizer handles fatal signals itself";
#endif
    EXPECT_DEATH(
        {
            Logger().writeLine(Logger_::I_DEBUG, "one");
            Logger().writeLine(Logger_::I_DEBUG, "the last line before the crash");
            std::raise(SIGSEGV);
        },
        "the last line before the crash");
}
