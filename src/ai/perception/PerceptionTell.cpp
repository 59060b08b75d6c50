// What a creature perceives, in words and in lines.
#include "ai/perception/PerceptionComponent.h"

#include "ai/perception/PerceptionManager.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/systems/SystemSystem.h"
#include "object/tree/WellKnownPaths.h"
#include "platform/sound/SoundSystem.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace
{

const Vec4 VIEW_COLOR(0.9f, 0.9f, 0.3f, 1.f), EAR_COLOR(0.3f, 0.6f, 1.f, 1.f), FREE_COLOR(0.2f, 1.f, 0.2f, 1.f);
const Vec4 CUT_COLOR(1.f, 0.25f, 0.2f, 1.f), MEMORY_COLOR(1.f, 0.5f, 0.1f, 1.f), TEXT_COLOR(1.f, 1.f, 1.f, 1.f);
constexpr float STEP_LOUDNESS = 0.04f; ///< linear, a metre away: whose range of hearing is drawn
constexpr Seconds OLD_LINE = 0.5;      ///< seconds that a line of sight is drawn
constexpr float TEXT_HEIGHT = 0.8f;    ///< metres above the eyes

const char *directionOf(const Vec4 &way)
{
    static constexpr const char *NAMES[] = {"north", "north-east", "east", "south-east",
                                            "south", "south-west", "west", "north-west"};
    const float eighths = std::atan2(way.x, way.z) / (PI / 4.f);
    return NAMES[(static_cast<int>(std::lround(eighths)) + 8) % 8];
}

const char *surenessOf(float suspicion)
{
    return suspicion >= 0.75f   ? "sure"
           : suspicion >= 0.4f  ? "fairly sure"
           : suspicion >= 0.15f ? "unsure"
                                : "hardly sure";
}

/// What a sound is called: its caption, or else its name.
String soundText(const String &name)
{
    static const String system = SCS("SoundSystem");
    const auto systems = getSystem<SystemSystem>().lookup();
    const auto sounds =
        systems ? handle_cast<SoundSystem>(systems->getChild(system)).lookup() : Handle<SoundSystem>::Result{};
    const String caption = sounds ? sounds->getCaption(name) : String();
    return caption.empty() ? name : caption;
}

void drawCircle(DebugCollectorComponent &collector, const Vec4 &centre, float radius, const Vec4 &color)
{
    constexpr int corners = 24;
    const auto corner = [&](int number)
    {
        const float angle = 2.f * PI / corners * static_cast<float>(number);
        return centre + Vec4(std::cos(angle), 0.f, std::sin(angle), 0.f) * radius;
    };
    for (int i = 0; i < corners; ++i)
        collector.addLine3D(corner(i), corner(i + 1), color);
}

} // namespace

String PerceptionComponent::describeHeard() const
{
    // In quotes: a caption is a sentence of its own, "A door creaks open".
    return belief.getHeardName().empty() ? SCS("something") : SCS("\"") + soundText(belief.getHeardName()) + SCS("\"");
}

String PerceptionComponent::tell()
{
    Vec4 eye, ahead;
    if (!belief.hasPlace() || !findEye(eye, ahead))
        return String();
    const auto seen = getTarget().lookup();
    const String name = !seen                                       ? SCS("something")
                        : seen->getName() == WellKnownPaths::player ? SCS("the player")
                                                                    : seen->getName();
    Vec4 way = belief.getPlace() - eye;
    way.y = way.w = 0.f;
    const float distance = way.magnitude();
    const String where =
        distance < 0.5f
            ? SCS("right here")
            : String::format("%.0f m to the %s", static_cast<double>(std::max(distance, 1.f)), directionOf(way));
    const char *const sureness = surenessOf(getSuspicion());
    if (getSeen())
        return String::format("sees %s %s, %s", name.toCString(), where.toCString(), sureness);
    if (!belief.getHeardName().empty())
        return String::format("heard %s %s, %s", describeHeard().toCString(), where.toCString(), sureness);
    return String::format("remembers %s of %.0f s ago, %s, %s", name.toCString(),
                          static_cast<double>(belief.getSincePerceived()), where.toCString(), sureness);
}

void PerceptionComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const auto collector = dcc.lookup();
    if (collector && getSystemDeref<GlobalConfigSystem>().getDebugDrawPerception())
        drawSenses(*collector);
}

void PerceptionComponent::drawSenses(DebugCollectorComponent &collector)
{
    Vec4 eye, ahead;
    if (!findEye(eye, ahead))
        return;
    if (hasEyes && !seesLightOnly)
        for (const float angle : {-peripheralAngle, -sightAngle, sightAngle, peripheralAngle})
        {
            const float sine = std::sin(angle), cosine = std::cos(angle);
            const Vec4 edge(ahead.x * cosine + ahead.z * sine, ahead.y, ahead.z * cosine - ahead.x * sine, 0.f);
            collector.addLine3D(eye, eye + edge * sightRange, VIEW_COLOR);
        }
    if (hasEars && hearingThreshold > 0.f)
        drawCircle(collector, eye, STEP_LOUDNESS / hearingThreshold, EAR_COLOR);
    for (const SightLine &line : lines)
        if (hasEyes && line.isKnown && age - line.foundAt <= OLD_LINE)
            collector.addLine3D(line.from, line.to, line.isFree ? FREE_COLOR : CUT_COLOR);
    if (belief.hasPlace())
    {
        collector.addLine3D(eye, belief.getPlace(), MEMORY_COLOR);
        drawCircle(collector, belief.getPlace(), getVagueness(), MEMORY_COLOR);
    }
    const String text = tell();
    collector.addText3D(eye + Vec4(0.f, TEXT_HEIGHT, 0.f, 0.f),
                        String::format("%.2f %s", static_cast<double>(getSuspicion()), text.toCString()), TEXT_COLOR);
}
