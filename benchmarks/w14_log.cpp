// W14: one log line of about 80 characters with an int and a float: formatted and dropped, and into a file.
#include "Rate.h"

#include "foundation/ConsoleOutputProviders.h"
#include "foundation/Logger.h"
#include "foundation/TextBuffer.h"

#include <cstdio>

namespace
{
const char *const logFile = "w14.log";

/// Puts the whole line together and drops it.
class DroppingProvider : public IConsoleOutputProvider
{
public:
    void writeLine(Logger_::Importance level, const String &message, const String &file, long line) override
    {
        TextBuffer text;
        appendLogLine(text, level, message, file, line);
        benchmark::DoNotOptimize(text.data());
    }
};

void writeLines(benchmark::State &state, std::unique_ptr<IConsoleOutputProvider> provider)
{
    Logger_ log;
    log.removeOutputProvider(log.getOutputProviders()[0].get());
    log.addOutputProvider(std::move(provider));
    int number = 0;
    for (auto _ : state)
    {
        log.writeFormatted(Logger_::I_INFO, SCS("Renderer.cpp"), 1234,
                           "object %d moved to %.2f in the partitioning grid", ++number, 1.5);
    }
    state.counters["check"] = log.getLogCount() == std::size_t(number);
    reportNanoseconds(state, 1);
}

void format(benchmark::State &state)
{
    writeLines(state, std::make_unique<DroppingProvider>());
}

void file(benchmark::State &state)
{
    writeLines(state, std::make_unique<FileConsoleOutputProvider>(SCS(logFile)));
    std::remove(logFile);
}
} // namespace

BENCHMARK(format)->Name("W14/format");
BENCHMARK(file)->Name("W14/file");
