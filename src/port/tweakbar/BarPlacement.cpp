#include "port/tweakbar/BarPlacement.h"

#include <algorithm>
#include <climits>
#include <imgui/imgui.h>
#include <imgui/imgui_internal.h>

namespace port
{

namespace
{
constexpr int MARGIN = 8; ///< pixels between bars that come up

/// Pixels that two rectangles share.
std::int64_t shared(const TweakPlace &a, const TweakPlace &b)
{
    const std::int64_t width = std::min(a.right, b.right) - std::max(a.left, b.left);
    const std::int64_t height = std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
    return width > 0 && height > 0 ? width * height : 0;
}

/// The size that was asked for, or as high as the lines are.
ImVec2 firstSize(const TwBar &bar)
{
    const float unit = ImGui::GetFontSize() / 13.0f;
    if (bar.width > 0 && bar.height > 0)
        return ImVec2(static_cast<float>(bar.width) * unit, static_cast<float>(bar.height) * unit);
    constexpr float width = 350.0f, largestHeight = 560.0f;
    int lines = 3;
    for (std::size_t i = 0; i < bar.vars.size(); ++i)
    {
        const TweakVar &var = *bar.vars[i];
        const bool isFirst = i == 0 || var.group != bar.vars[i - 1]->group;
        lines += (isFirst && !var.group.empty() ? 1 : 0) + (var.closed ? 0 : std::max(var.rows, 1));
    }
    return ImVec2(width * unit, std::min(largestHeight * unit,
                                         static_cast<float>(lines) * (ImGui::GetFrameHeightWithSpacing() + 2.0f)));
}

ImRect wantedRect(const TwBar &bar, ImVec2 window)
{
    const auto &[left, top, width, height] = *bar.wanted;
    const ImVec2 first = firstSize(bar);
    const ImVec2 size(width > 0 ? static_cast<float>(width) : first.x,
                      height > 0 ? static_cast<float>(height) : first.y);
    const auto place = [](int value, float extent, float room)
    { return value >= 0 ? static_cast<float>(value) : room + static_cast<float>(value) - extent; };
    const ImVec2 at(place(left, size.x, window.x), place(top, size.y, window.y));
    return ImRect(at, ImVec2(at.x + size.x, at.y + size.y));
}

ImRect moveInside(ImRect rect, ImVec2 window)
{
    const ImVec2 size(std::min(rect.GetWidth(), window.x), std::min(rect.GetHeight(), window.y));
    const ImVec2 at(std::clamp(rect.Min.x, 0.0f, window.x - size.x), std::clamp(rect.Min.y, 0.0f, window.y - size.y));
    return ImRect(at, ImVec2(at.x + size.x, at.y + size.y));
}
TweakPlace placeOf(ImVec2 at, ImVec2 size)
{
    return {static_cast<int>(at.x), static_cast<int>(at.y), static_cast<int>(at.x + size.x),
            static_cast<int>(at.y + size.y)};
}
struct Room
{
    TweakPlace place;
    std::int64_t covered; ///< pixels of others
};

Room leastCovering(int width, int height, int windowWidth, int windowHeight, const std::vector<TweakPlace> &others)
{
    Room best{{}, INT64_MAX};
    std::vector<int> lefts{MARGIN}, tops{MARGIN};
    for (const TweakPlace &other : others)
    {
        lefts.push_back(other.right + MARGIN);
        tops.push_back(other.bottom + MARGIN);
        tops.push_back(other.top + 3 * MARGIN); // a step below its title, if there is no room beside any
    }
    std::sort(lefts.begin(), lefts.end());
    std::sort(tops.begin(), tops.end());
    for (const int left : lefts)
    {
        for (const int top : tops)
        {
            const int x = std::max(std::min(left, windowWidth - width), 0);
            const int y = std::max(std::min(top, windowHeight - height), 0);
            const TweakPlace place{x, y, x + width, y + height};
            std::int64_t covered = 0;
            for (const TweakPlace &other : others)
                covered += shared(place, other);
            if (covered < best.covered)
                best = {place, covered};
        }
    }
    return best;
}
} // namespace

TweakPlace placeOfWindow(TwBar &bar)
{
    const ImGuiWindow &window = *ImGui::GetCurrentWindow();
    bar.place = placeOf(window.Pos, window.SizeFull); // a folded bar comes up unfolded
    return placeOf(window.Pos, window.Size);
}

TweakPlace findRoom(int width, int height, int windowWidth, int windowHeight, const std::vector<TweakPlace> &others)
{
    for (const int lower : {height, height * 3 / 4, height / 2})
    {
        const Room room = leastCovering(width, lower, windowWidth, windowHeight, others);
        if (room.covered == 0)
            return room.place;
    }
    return leastCovering(width, height, windowWidth, windowHeight, others).place;
}

void placeBar(TwBar &bar, const std::vector<TweakPlace> &others)
{
    const ImVec2 window = ImGui::GetIO().DisplaySize;
    const std::string id = "###" + bar.name;
    const ImGuiWindow *known = ImGui::FindWindowByName(id.c_str());
    ImRect rect;
    if (bar.wanted)
        rect = wantedRect(bar, window);
    else if (known)
        rect = ImRect(known->Pos, ImVec2(known->Pos.x + known->SizeFull.x, known->Pos.y + known->SizeFull.y));
    else
    {
        const ImVec2 size = firstSize(bar);
        const int width = static_cast<int>(std::min(size.x, window.x)),
                  height = static_cast<int>(std::min(size.y, window.y));
        const TweakPlace place =
            findRoom(width, height, static_cast<int>(window.x), static_cast<int>(window.y), others);
        rect = ImRect(static_cast<float>(place.left), static_cast<float>(place.top), static_cast<float>(place.right),
                      static_cast<float>(place.bottom));
    }
    const ImRect inside = moveInside(rect, window);
    const bool stays = known && !bar.wanted && inside.Min.x == rect.Min.x && inside.Min.y == rect.Min.y &&
                       inside.Max.x == rect.Max.x && inside.Max.y == rect.Max.y;
    bar.wanted.reset();
    if (stays)
        return;
    ImGui::SetNextWindowPos(inside.Min);
    ImGui::SetNextWindowSize(inside.GetSize());
}

} // namespace port
