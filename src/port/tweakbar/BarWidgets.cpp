#include "port/tweakbar/BarWidgets.h"

#include <algorithm>
#include <cmath>
#include <imgui/imgui.h>
#include <imgui/imgui_stdlib.h>

namespace port
{

namespace
{
const ImVec4 errorColor(1.0f, 0.45f, 0.35f, 1.0f);

void showHelp(const std::string &help)
{
    if (help.empty() || !ImGui::IsItemHovered())
        return;
    ImGui::BeginTooltip();
    ImGui::PushTextWrapPos(ImGui::GetFontSize() * 28.0f);
    ImGui::TextUnformatted(help.c_str());
    ImGui::PopTextWrapPos();
    ImGui::EndTooltip();
}

template <class T>
T read(const TweakVar &var)
{
    T value{};
    if (var.get)
        var.get(&value, var.clientData);
    return value;
}

void write(const TweakVar &var, const void *value)
{
    if (var.set)
        var.set(value, var.clientData);
}

/// Change of a number for a pixel that the mouse moves: what was asked for, or a part of the number itself.
float dragSpeed(const TweakVar &var, double value, double smallest)
{
    if (var.step > 0.0)
        return static_cast<float>(var.step);
    return static_cast<float>(std::max(std::abs(value) * 0.005, smallest));
}

void boolControl(TweakVar &var)
{
    bool value = read<bool>(var);
    if (ImGui::Checkbox("##value", &value))
        write(var, &value);
}

/// Drag field of one number, or a slider where both its ends are known. Ctrl and a click make it a text.
template <class T>
void numberControl(TweakVar &var, ImGuiDataType type, double smallestStep, const char *format)
{
    T value = read<T>(var);
    const T low = static_cast<T>(var.min.value_or(0)), high = static_cast<T>(var.max.value_or(0));
    constexpr ImGuiSliderFlags clamp = ImGuiSliderFlags_AlwaysClamp;
    const bool changed =
        var.min && var.max
            ? ImGui::SliderScalar("##value", type, &value, &low, &high, format, clamp)
            : ImGui::DragScalar("##value", type, &value, dragSpeed(var, static_cast<double>(value), smallestStep),
                                var.min ? &low : nullptr, var.max ? &high : nullptr, format, clamp);
    if (changed)
        write(var, &value);
}

void textControl(TweakVar &var)
{
    if (!var.set)
    {
        ImGui::PushTextWrapPos(0.0f);
        ImGui::TextUnformatted(read<std::string>(var).c_str());
        ImGui::PopTextWrapPos();
        return;
    }
    if (!var.isTyping)
        var.typed = read<std::string>(var);
    ImGui::InputText("##value", &var.typed);
    var.isTyping = ImGui::IsItemActive();
    // Half a name is no name: a text is set when it is whole.
    if (ImGui::IsItemDeactivatedAfterEdit())
        write(var, &var.typed);
}

void enumControl(TweakVar &var, const TweakEnum &texts)
{
    const auto value = read<std::int64_t>(var);
    const auto is = [value](const auto &entry) { return entry.first == value; };
    const auto known = std::find_if(texts.values.begin(), texts.values.end(), is);
    const std::string preview = known != texts.values.end() ? known->second : std::to_string(value);
    if (!ImGui::BeginCombo("##value", preview.c_str()))
        return;
    for (const auto &[number, text] : texts.values)
    {
        if (ImGui::Selectable(text.c_str(), number == value))
            write(var, &number);
    }
    ImGui::EndCombo();
}

struct FourFloats
{
    float f[4];
};

void colorControl(TweakVar &var)
{
    auto value = read<FourFloats>(var);
    constexpr ImGuiColorEditFlags flags =
        ImGuiColorEditFlags_Float | ImGuiColorEditFlags_HDR | ImGuiColorEditFlags_AlphaPreviewHalf;
    if (ImGui::ColorEdit4("##value", value.f, flags))
        write(var, &value);
}

void vectorControl(TweakVar &var)
{
    auto value = read<FourFloats>(var);
    const float largest =
        std::max({std::abs(value.f[0]), std::abs(value.f[1]), std::abs(value.f[2]), std::abs(value.f[3])});
    if (ImGui::DragScalarN("##value", ImGuiDataType_Float, value.f, 4, dragSpeed(var, largest, 0.002), nullptr, nullptr,
                           "%.3f"))
        write(var, &value);
}

void quaternionControl(TweakVar &var)
{
    auto value = read<FourFloats>(var);
    if (!ImGui::DragScalarN("##value", ImGuiDataType_Float, value.f, 4, 0.005f, nullptr, nullptr, "%.3f"))
        return;
    float square = 0.0f;
    for (const float component : value.f)
        square += component * component;
    if (square < 1e-6f)
        return; // no rotation comes of it
    for (float &component : value.f)
        component /= std::sqrt(square);
    write(var, &value);
}

void linkControl(TweakVar &var)
{
    const auto text = read<std::string>(var);
    if (text.empty())
        return ImGui::TextDisabled("none");
    if (ImGui::SmallButton("open"))
        var.pressed(var.clientData);
    ImGui::SameLine();
    ImGui::TextUnformatted(text.c_str());
}

void valueControl(TweakVar &var)
{
    if (const TweakEnum *texts = Bars::get().findEnum(var.type))
        return enumControl(var, *texts);
    switch (var.type)
    {
    case TW_TYPE_BOOLCPP:
        return boolControl(var);
    case TW_TYPE_INT64:
        return numberControl<std::int64_t>(var, ImGuiDataType_S64, 0.2, nullptr);
    case TW_TYPE_DOUBLE:
        return numberControl<double>(var, ImGuiDataType_Double, 0.002, "%.5g");
    case TW_TYPE_STDSTRING:
        return textControl(var);
    case TW_TYPE_COLOR4F:
        return colorControl(var);
    case TW_TYPE_VEC4F:
        return vectorControl(var);
    case TW_TYPE_QUAT4F:
        return quaternionControl(var);
    default:
        return;
    }
}

void drawRows(TweakVar &var)
{
    ImGuiListClipper clipper;
    clipper.Begin(static_cast<int>(var.list.count(var.clientData)));
    while (clipper.Step())
    {
        for (int i = clipper.DisplayStart; i < clipper.DisplayEnd; ++i)
        {
            const auto index = static_cast<unsigned>(i);
            TwListRow row{};
            var.list.row(index, &row, var.clientData);
            ImGui::PushID(i);
            ImGui::SetCursorPosX(ImGui::GetCursorPosX() + static_cast<float>(row.depth) * ImGui::GetFontSize());
            const char *mark = !row.opens ? "  " : row.isOpen ? "- ##mark" : "+ ##mark";
            if (ImGui::Selectable(mark, false, 0, ImVec2(ImGui::GetFontSize(), 0)) && row.opens)
                var.list.click(index, 1, var.clientData);
            ImGui::SameLine();
            if (ImGui::Selectable(row.text))
                var.list.click(index, 0, var.clientData);
            ImGui::PopID();
        }
    }
}

TweakPlace lastItem()
{
    const ImVec2 low = ImGui::GetItemRectMin(), high = ImGui::GetItemRectMax();
    return {static_cast<int>(low.x), static_cast<int>(low.y), static_cast<int>(high.x), static_cast<int>(high.y)};
}

void layOutList(TweakVar &var)
{
    if (!var.label.empty())
        ImGui::TextUnformatted(var.label.c_str());
    if (ImGui::BeginChild(var.name.c_str(), ImVec2(0, 0), true))
        drawRows(var);
    ImGui::EndChild();
    var.place = lastItem();
}

void layOutLine(TweakVar &var)
{
    ImGui::PushID(var.name.c_str());
    ImGui::TableNextRow();
    ImGui::TableNextColumn();
    ImGui::AlignTextToFramePadding();
    ImGui::TextUnformatted(var.label.c_str());
    showHelp(var.help);
    ImGui::TableNextColumn();
    ImGui::SetNextItemWidth(-1.0f);
    ImGui::BeginGroup();
    ImGui::BeginDisabled(var.kind == TweakVar::VALUE && !var.set && var.type != TW_TYPE_STDSTRING);
    if (var.kind == TweakVar::LINK)
        linkControl(var);
    else
        valueControl(var);
    ImGui::EndDisabled();
    ImGui::EndGroup();
    var.place = lastItem();
    if (!var.error.empty())
    {
        ImGui::PushTextWrapPos(0.0f);
        ImGui::TextColored(errorColor, "%s", var.error.c_str());
        ImGui::PopTextWrapPos();
    }
    ImGui::PopID();
}

/// The lines of one group, from `first` to before `last`, below their heading.
void layOutGroup(TwBar &bar, std::size_t first, std::size_t last)
{
    const std::string &group = bar.vars[first]->group;
    if (!group.empty() && !ImGui::CollapsingHeader(group.c_str(), ImGuiTreeNodeFlags_DefaultOpen))
    {
        for (std::size_t i = first; i < last; ++i)
            bar.vars[i]->place = {};
        return;
    }
    constexpr ImGuiTableFlags flags = ImGuiTableFlags_Resizable | ImGuiTableFlags_RowBg | ImGuiTableFlags_BordersInnerV;
    // Every group's columns are those of the first.
    if (!ImGui::BeginTable("variables", 2, flags))
        return;
    ImGui::TableSetupColumn("name", ImGuiTableColumnFlags_WidthStretch, 0.42f);
    ImGui::TableSetupColumn("value", ImGuiTableColumnFlags_WidthStretch, 0.58f);
    for (std::size_t i = first; i < last; ++i)
        layOutLine(*bar.vars[i]);
    ImGui::EndTable();
}

void layOutLines(TwBar &bar)
{
    // By index: a control's callback may add a line.
    for (std::size_t i = 0; i < bar.vars.size();)
    {
        if (bar.vars[i]->kind == TweakVar::LIST)
        {
            layOutList(*bar.vars[i++]);
            continue;
        }
        std::size_t end = i + 1;
        while (end < bar.vars.size() && bar.vars[end]->kind != TweakVar::LIST &&
               bar.vars[end]->group == bar.vars[i]->group)
            ++end;
        layOutGroup(bar, i, end);
        i = end;
    }
}

/// Where the bar of this number comes up: the first at the left, the others in two columns beside it, each pair a
/// little below the one before.
ImVec2 firstPlace(int index)
{
    constexpr float margin = 16.0f, leftColumn = 340.0f, columnWidth = 420.0f, step = 28.0f;
    if (index == 0)
        return ImVec2(margin, margin);
    const int column = (index - 1) % 2, pair = (index - 1) / 2 % 10;
    return ImVec2(leftColumn + columnWidth * static_cast<float>(column) + step * static_cast<float>(pair),
                  margin + step * static_cast<float>(pair));
}

/// The size that was asked for, or as high as the lines are.
ImVec2 firstSize(const TwBar &bar)
{
    if (bar.width > 0 && bar.height > 0)
        return ImVec2(static_cast<float>(bar.width), static_cast<float>(bar.height));
    constexpr float width = 400.0f, largestHeight = 600.0f;
    std::size_t lines = 3;
    for (std::size_t i = 0; i < bar.vars.size(); ++i)
        lines += i == 0 || bar.vars[i]->group != bar.vars[i - 1]->group ? 2 : 1;
    return ImVec2(width,
                  std::min(largestHeight, static_cast<float>(lines) * (ImGui::GetFrameHeightWithSpacing() + 2.0f)));
}
} // namespace

TweakPlace layOutBar(TwBar &bar, int index)
{
    ImGui::SetNextWindowPos(firstPlace(index), ImGuiCond_FirstUseEver);
    ImGui::SetNextWindowSize(firstSize(bar), ImGuiCond_FirstUseEver);
    // The title may change; what stands behind the marks tells the windows apart.
    const std::string title = bar.label + "###" + bar.name;
    if (ImGui::Begin(title.c_str(), &bar.visible))
    {
        if (!bar.help.empty())
            ImGui::TextDisabled("%s", bar.help.c_str());
        layOutLines(bar);
    }
    const ImVec2 place = ImGui::GetWindowPos(), size = ImGui::GetWindowSize();
    ImGui::End();
    return {static_cast<int>(place.x), static_cast<int>(place.y), static_cast<int>(place.x + size.x),
            static_cast<int>(place.y + size.y)};
}

} // namespace port
