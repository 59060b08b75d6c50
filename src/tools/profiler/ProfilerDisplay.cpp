#include "tools/profiler/ProfilerDisplay.h"

#include "tools/profiler/ProfilerSystem.h"

#include "engine/debug/DebugCollector.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/systems/SystemSystem.h"
#include "port/d3d9/D3D9Extras.h"
#include "rendering/device/GraphicsSystem2.h"

#include <algorithm>

namespace
{
/// Frames between two looks at the numbers.
constexpr int RENEWAL_FRAMES = 15;
constexpr std::size_t MAX_LINES = 40;
/// What takes less of the frame than this is left out.
constexpr float SMALLEST_SHARE = 0.002f;

// Places in normalised units, 1.0 the longer side of the window, from the upper left corner.
constexpr float TOP = 0.012f;
constexpr float LEFT = 0.010f;
constexpr float LINE_HEIGHT = 0.0125f;
constexpr float PERCENT_COLUMN = LEFT + 0.042f;
constexpr float CALLS_COLUMN = LEFT + 0.078f;
constexpr float BAR_COLUMN = LEFT + 0.112f;
constexpr float BAR_LENGTH = 0.080f;
constexpr float LABEL_COLUMN = BAR_COLUMN + BAR_LENGTH + 0.008f;
constexpr float INDENT = 0.010f;
constexpr float FIGURE_WIDTH = 0.130f;
constexpr float FIGURE_LABEL = 0.036f;
/// A bar is this many lines of a pixel of a window 1280 pixels wide.
constexpr int BAR_LINES = 7;
constexpr float BAR_PIXEL = 1.0f / 1280.0f;

const Vec4 TEXT_COLOR(0.9f, 0.9f, 0.85f, 1.0f);
const Vec4 HEADING_COLOR(1.0f, 0.8f, 0.3f, 1.0f);
const Vec4 BAR_BACKGROUND(0.15f, 0.15f, 0.15f, 0.6f);

/// A place on the screen; `y` counts from the upper edge, the collector's from the lower one.
Vec4 place(float x, float y)
{
    const ScreenMetrics &screen = getScreenMetrics();
    return Vec4(x, static_cast<float>(screen.height) / screen.normalizationFactor - y, 0.0f, 1.0f);
}

/// Green where little time goes, over yellow to red where half the frame does.
Vec4 barColor(float share)
{
    const float heat = std::min(1.0f, share * 2.0f);
    return Vec4(std::min(1.0f, heat * 2.0f), std::min(1.0f, 2.0f - heat * 2.0f), 0.2f, 1.0f);
}

void drawBar(DebugCollectorComponent &collector, float y, float share)
{
    const float end = BAR_COLUMN + BAR_LENGTH * std::clamp(share, 0.0f, 1.0f);
    for (int i = 0; i < BAR_LINES; ++i)
    {
        const float lineY = y + static_cast<float>(i + 1) * BAR_PIXEL;
        collector.addLine2D(place(end, lineY), place(BAR_COLUMN + BAR_LENGTH, lineY), BAR_BACKGROUND);
        collector.addLine2D(place(BAR_COLUMN, lineY), place(end, lineY), barColor(share));
    }
}

/// What the device did for the last frame; nothing where there is none.
port::FrameStats deviceStats()
{
    const auto systems = SystemSystem::getInstance().lookup();
    if (!systems)
        return {};
    static const String name = SCS("GraphicsSystem2");
    const auto graphics = handle_cast<GraphicsSystem2>(systems->getChild(name)).lookup();
    return graphics ? port::lastFrameStats(graphics->getDevice()) : port::FrameStats{};
}
} // namespace

void ProfilerDisplay::update(const ProfilerSystem &profiler, TimerTicks ticksPerSecond)
{
    table.update(profiler);
    framesToRenewal -= profiler.getFrameCount() - framesSeen;
    framesSeen = profiler.getFrameCount();
    if (framesToRenewal > 0 || table.getFrameCount() == 0)
        return;
    framesToRenewal = RENEWAL_FRAMES;
    renewLines(ticksPerSecond);
    renewHeading();
}

void ProfilerDisplay::renewLines(TimerTicks ticksPerSecond)
{
    const double frames = static_cast<double>(table.getFrameCount());
    millisecondsPerTick = 1000.0 / static_cast<double>(ticksPerSecond) / frames;
    frameMilliseconds = static_cast<double>(table.getRows().front().sumTicks) * millisecondsPerTick;
    lines.clear();
    sorted.clear();
    addLinesBelow(0, 0);
}

void ProfilerDisplay::addLinesBelow(int parent, int depth)
{
    const std::vector<ProfilerTable::Row> &rows = table.getRows();
    const auto rowAt = [&rows](int index) -> const ProfilerTable::Row &
    { return rows[static_cast<std::size_t>(index)]; };
    const std::size_t first = sorted.size();
    for (int child = rowAt(parent).firstChild; child != ProfilerTable::NONE; child = rowAt(child).nextSibling)
        sorted.push_back(child);
    std::sort(sorted.begin() + static_cast<std::ptrdiff_t>(first), sorted.end(),
              [&rowAt](int a, int b)
              { return rowAt(a).sumTicks != rowAt(b).sumTicks ? rowAt(a).sumTicks > rowAt(b).sumTicks : a < b; });
    const std::size_t end = sorted.size();
    for (std::size_t i = first; i < end && lines.size() < MAX_LINES; ++i)
    {
        Line line = makeLine(rowAt(sorted[i]), depth);
        if (line.share < SMALLEST_SHARE)
            break;
        lines.push_back(std::move(line));
        addLinesBelow(sorted[i], depth + 1);
    }
    sorted.resize(first);
}

ProfilerDisplay::Line ProfilerDisplay::makeLine(const ProfilerTable::Row &row, int depth)
{
    const double milliseconds = static_cast<double>(row.sumTicks) * millisecondsPerTick;
    Line line;
    line.share = frameMilliseconds > 0 ? static_cast<float>(milliseconds / frameMilliseconds) : 0.0f;
    line.label = row.verboseDesc.empty() ? row.profileKey : row.verboseDesc;
    line.milliseconds = texts.hundredths(milliseconds);
    line.percent = texts.percent(line.share);
    line.calls = texts.whole(static_cast<double>(row.sumCalls) / static_cast<double>(table.getFrameCount()));
    line.depth = depth;
    return line;
}

void ProfilerDisplay::renewHeading()
{
    static const String labels[] = {SCS("ms a frame"), SCS("frames/s"), SCS("draw calls"), SCS("state changes"),
                                    SCS("target changes")};
    const port::FrameStats stats = deviceStats();
    heading.clear();
    heading.push_back({texts.hundredths(frameMilliseconds), labels[0]});
    heading.push_back({texts.whole(frameMilliseconds > 0 ? 1000.0 / frameMilliseconds : 0), labels[1]});
    heading.push_back({texts.whole(stats.draws), labels[2]});
    heading.push_back({texts.whole(stats.stateChanges), labels[3]});
    heading.push_back({texts.whole(stats.targetChanges), labels[4]});
}

void ProfilerDisplay::draw(DebugCollectorComponent &collector) const
{
    drawHeading(collector);
    float y = TOP + 2.5f * LINE_HEIGHT;
    for (const Line &line : lines)
    {
        drawLine(collector, line, y);
        y += LINE_HEIGHT;
    }
}

void ProfilerDisplay::drawHeading(DebugCollectorComponent &collector) const
{
    static const String columns[] = {SCS("ms"), SCS("share"), SCS("calls")};
    float x = LEFT;
    for (const Figure &figure : heading)
    {
        collector.addText2D(place(x, TOP), figure.number, HEADING_COLOR);
        collector.addText2D(place(x + FIGURE_LABEL, TOP), figure.label, HEADING_COLOR);
        x += FIGURE_WIDTH;
    }
    const float y = TOP + 1.25f * LINE_HEIGHT;
    collector.addText2D(place(LEFT, y), columns[0], HEADING_COLOR);
    collector.addText2D(place(PERCENT_COLUMN, y), columns[1], HEADING_COLOR);
    collector.addText2D(place(CALLS_COLUMN, y), columns[2], HEADING_COLOR);
}

void ProfilerDisplay::drawLine(DebugCollectorComponent &collector, const Line &line, float y) const
{
    collector.addText2D(place(LEFT, y), line.milliseconds, TEXT_COLOR);
    collector.addText2D(place(PERCENT_COLUMN, y), line.percent, TEXT_COLOR);
    collector.addText2D(place(CALLS_COLUMN, y), line.calls, TEXT_COLOR);
    drawBar(collector, y, line.share);
    const float x = LABEL_COLUMN + static_cast<float>(line.depth) * INDENT;
    collector.addText2D(place(x, y), line.label, TEXT_COLOR);
}
