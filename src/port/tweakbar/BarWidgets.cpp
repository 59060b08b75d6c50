#include "port/tweakbar/BarWidgets.h"

#include "port/tweakbar/BarPlacement.h"
#include "port/tweakbar/ListControls.h"
#include "port/tweakbar/ValueControls.h"

#include <algorithm>
#include <imgui/imgui.h>
#include <utility>

namespace port
{

namespace
{
const ImVec4 errorColor(1.0f, 0.45f, 0.35f, 1.0f);
/// Lines that a list or pictures show at least; where the bar is too low for that it scrolls.
constexpr float LEAST_LINES = 5.0f;

using Lines = std::vector<std::unique_ptr<TweakVar>>;

void showHelp(const std::string &help)
{
    if (help.empty() || !ImGui::IsItemHovered(ImGuiHoveredFlags_AllowWhenDisabled))
        return;
    ImGui::BeginTooltip();
    ImGui::PushTextWrapPos(ImGui::GetFontSize() * 28.0f);
    ImGui::TextUnformatted(help.c_str());
    ImGui::PopTextWrapPos();
    ImGui::EndTooltip();
}

void showError(const std::string &error)
{
    if (error.empty())
        return;
    ImGui::PushTextWrapPos(0.0f);
    ImGui::PushStyleColor(ImGuiCol_Text, errorColor);
    ImGui::TextUnformatted(error.c_str());
    ImGui::PopStyleColor();
    ImGui::PopTextWrapPos();
}

TweakPlace lastItem()
{
    const ImVec2 low = ImGui::GetItemRectMin(), high = ImGui::GetItemRectMax();
    return {static_cast<int>(low.x), static_cast<int>(low.y), static_cast<int>(high.x), static_cast<int>(high.y)};
}

/// An edit is over when nothing is held and nothing typed any more.
void tellEdited(TweakVar &var)
{
    if (!var.isEdited || var.removed || ImGui::IsAnyItemActive())
        return;
    var.isEdited = false;
    if (var.edited)
        var.edited(var.clientData);
}

void layOutControl(TweakVar &var)
{
    const bool readOnly = var.kind == TweakVar::VALUE && !var.set && var.type != TW_TYPE_STDSTRING;
    ImGui::BeginGroup();
    ImGui::BeginDisabled(readOnly || !var.enabled);
    layOutValue(var);
    ImGui::EndDisabled();
    ImGui::EndGroup();
    var.place = lastItem();
    tellEdited(var);
}

/// What a right click on the last item offers.
void showMenu(TweakVar &var)
{
    if (var.menu.empty() || !ImGui::BeginPopupContextItem("menu"))
        return;
    for (std::size_t i = 0; i < var.menu.size() && !var.removed; ++i)
        if (ImGui::MenuItem(var.menu[i].c_str()))
            var.menuChosen(static_cast<int>(i), var.clientData);
    ImGui::EndPopup();
}

/// The name of a line, which marks itself where it has a menu.
void layOutName(TweakVar &var)
{
    ImGui::AlignTextToFramePadding();
    if (var.menu.empty())
        ImGui::TextUnformatted(var.label.c_str());
    else
    {
        const ImVec2 at = ImGui::GetCursorPos();
        ImGui::Selectable("##name", false, ImGuiSelectableFlags_None, ImVec2(0.0f, ImGui::GetFrameHeight()));
        showMenu(var);
        showHelp(var.help);
        const ImVec2 after = ImGui::GetCursorPos();
        ImGui::SetCursorPos(at);
        ImGui::AlignTextToFramePadding();
        ImGui::TextUnformatted(var.label.c_str());
        ImGui::SetCursorPos(after);
        return;
    }
    showHelp(var.help);
}

/// A line of two columns: what it is, and its control.
void layOutLine(TweakVar &var)
{
    ImGui::TableNextRow();
    ImGui::TableNextColumn();
    const ImVec2 clipLow = ImGui::GetWindowDrawList()->GetClipRectMin();
    const ImVec2 clipHigh = ImGui::GetWindowDrawList()->GetClipRectMax();
    const float top = ImGui::GetCursorScreenPos().y;
    const bool isSeen = top + var.height >= clipLow.y && top <= clipHigh.y;
    if (!isSeen && var.height > 0.0f && !var.isTyping && !var.isEdited)
    {
        ImGui::Dummy(ImVec2(0.0f, var.height)); // nobody asks for what nobody sees
        var.place = {};
        return;
    }
    ImGui::PushID(var.name.c_str());
    layOutName(var);
    ImGui::TableNextColumn();
    ImGui::SetNextItemWidth(-1.0f);
    layOutControl(var);
    showError(var.error);
    var.height = ImGui::GetCursorScreenPos().y - top - ImGui::GetStyle().ItemSpacing.y;
    ImGui::PopID();
}

void layOutButton(TweakVar &var)
{
    const ImVec2 padding = ImGui::GetStyle().FramePadding;
    const ImVec2 words = ImGui::CalcTextSize(var.label.c_str());
    const ImVec2 at = ImGui::GetCursorScreenPos();
    if (var.marked)
        ImGui::PushStyleColor(ImGuiCol_Button, ImGui::GetStyleColorVec4(ImGuiCol_ButtonActive));
    ImGui::BeginDisabled(!var.enabled);
    const bool pressed = ImGui::Button("##button", ImVec2(words.x + 2.0f * padding.x, 0.0f));
    ImGui::GetWindowDrawList()->AddText(ImVec2(at.x + padding.x, at.y + padding.y), ImGui::GetColorU32(ImGuiCol_Text),
                                        var.label.c_str());
    ImGui::EndDisabled();
    if (var.marked)
        ImGui::PopStyleColor();
    var.place = lastItem();
    showHelp(var.help);
    if (pressed && var.pressed)
        var.pressed(var.clientData);
}

/// Width of a control that stands in a row with others.
float widthInRow(const TweakVar &var)
{
    const float letters = ImGui::GetFontSize();
    switch (var.type)
    {
    case TW_TYPE_BOOLCPP:
        return ImGui::GetFrameHeight();
    case TW_TYPE_VEC4F:
    case TW_TYPE_QUAT4F:
    case TW_TYPE_COLOR4F:
        return letters * 14.0f;
    case TW_TYPE_STDSTRING:
        return letters * 9.0f;
    default:
        return letters * (var.choices.empty() ? 5.0f : 8.0f);
    }
}

/// What stands in a row of its own or beside others: buttons, texts without a label, values behind their labels.
void layOutInRow(TweakVar &var, bool isAlone)
{
    ImGui::PushID(var.name.c_str());
    if (var.kind == TweakVar::BUTTON)
        layOutButton(var);
    else
    {
        if (!var.label.empty())
        {
            ImGui::AlignTextToFramePadding();
            ImGui::TextUnformatted(var.label.c_str());
            showHelp(var.help);
            ImGui::SameLine(0.0f, ImGui::GetStyle().ItemInnerSpacing.x);
        }
        ImGui::SetNextItemWidth(isAlone ? -1.0f : widthInRow(var));
        layOutControl(var);
        if (var.label.empty())
            showHelp(var.help);
    }
    showError(var.error);
    ImGui::PopID();
}

/// One past the run of lines that stand in one row with the line `first`.
std::size_t endOfRow(const Lines &lines, std::size_t first, std::size_t last)
{
    std::size_t end = first + 1;
    while (end < last && lines[end]->sameLine && !lines[end]->isStretched())
        ++end;
    return end;
}

bool standsInTable(const Lines &lines, std::size_t index, std::size_t last)
{
    const TweakVar &var = *lines[index];
    const bool isValue = var.kind == TweakVar::VALUE || var.kind == TweakVar::LINK;
    const bool isFollowed = index + 1 < last && lines[index + 1]->sameLine;
    return isValue && !var.label.empty() && !var.sameLine && !isFollowed;
}

/// Lays lines of two columns out, from `first` on; gives the first that does not stand among them.
std::size_t layOutTable(TwBar &bar, std::size_t first, std::size_t last)
{
    std::size_t end = first;
    while (end < last && standsInTable(bar.vars, end, last))
        ++end;
    constexpr ImGuiTableFlags flags = ImGuiTableFlags_Resizable | ImGuiTableFlags_RowBg | ImGuiTableFlags_BordersInnerV;
    // The columns of every table are those of the first.
    if (!ImGui::BeginTable("variables", 2, flags))
        return end;
    ImGui::TableSetupColumn("name", ImGuiTableColumnFlags_WidthStretch, 0.42f);
    ImGui::TableSetupColumn("value", ImGuiTableColumnFlags_WidthStretch, 0.58f);
    const unsigned version = bar.version;
    for (std::size_t i = first; i < end && bar.version == version; ++i)
        layOutLine(*bar.vars[i]);
    ImGui::EndTable();
    return end;
}

/// Whether a button has no room beside the control that was laid out last.
bool needsRowOfItsOwn(const TweakVar &var)
{
    const ImGuiStyle &style = ImGui::GetStyle();
    const float width = ImGui::CalcTextSize(var.label.c_str()).x + 2.0f * style.FramePadding.x;
    const float edge = ImGui::GetWindowPos().x + ImGui::GetWindowContentRegionMax().x;
    return var.kind == TweakVar::BUTTON && ImGui::GetItemRectMax().x + style.ItemSpacing.x + width > edge;
}

std::size_t layOutRow(TwBar &bar, std::size_t first, std::size_t last)
{
    const std::size_t end = endOfRow(bar.vars, first, last);
    const bool isAlone = end == first + 1 && (end == last || !bar.vars[end]->sameLine);
    const unsigned version = bar.version;
    for (std::size_t i = first; i < end && bar.version == version; ++i)
    {
        if (i > first && !needsRowOfItsOwn(*bar.vars[i]))
            ImGui::SameLine();
        layOutInRow(*bar.vars[i], isAlone);
    }
    return end;
}

/// Height for a list: its share of what the lines behind it leave.
float heightOfStretched(const TwBar &bar, std::size_t index)
{
    float others = 0.0f, sharing = 1.0f;
    for (std::size_t i = index + 1; i < bar.vars.size(); ++i)
    {
        const TweakVar &var = *bar.vars[i];
        if (var.isStretched())
            sharing += 1.0f;
        else if (var.kind == TweakVar::GRAPH)
            others += ImGui::GetFontSize() * 4.0f + 2.0f * ImGui::GetTextLineHeightWithSpacing();
        else if (!var.sameLine)
            others += ImGui::GetFrameHeightWithSpacing() + 2.0f;
        if (var.group != bar.vars[i - 1]->group && !var.group.empty())
            others += ImGui::GetFrameHeightWithSpacing();
    }
    const float least = LEAST_LINES * ImGui::GetTextLineHeightWithSpacing();
    return std::max((ImGui::GetContentRegionAvail().y - others) / sharing - ImGui::GetStyle().ItemSpacing.y, least);
}

void layOutStretched(TwBar &bar, std::size_t index, BarPictures &pictures)
{
    TweakVar &var = *bar.vars[index];
    if (!var.label.empty())
        ImGui::TextUnformatted(var.label.c_str());
    const float line = ImGui::GetTextLineHeightWithSpacing();
    const float height = var.rows > 0 ? static_cast<float>(var.rows) * line + line : heightOfStretched(bar, index);
    if (var.kind == TweakVar::LIST)
        layOutList(var, height);
    else
        layOutPictures(var, height, pictures);
    var.place = lastItem();
    showError(var.error);
}

std::size_t layOutNext(TwBar &bar, std::size_t index, std::size_t last, BarPictures &pictures)
{
    if (standsInTable(bar.vars, index, last))
        return layOutTable(bar, index, last);
    TweakVar &var = *bar.vars[index];
    const bool isList = var.kind == TweakVar::LIST || var.kind == TweakVar::PICTURES;
    if (var.kind != TweakVar::GRAPH && !isList)
        return layOutRow(bar, index, last);
    if (isList)
        layOutStretched(bar, index, pictures);
    else
    {
        layOutGraph(var);
        showError(var.error);
    }
    return index + 1;
}

/// The lines of one group, from `first` to before `last`, below their heading.
void layOutGroup(TwBar &bar, std::size_t first, std::size_t last, BarPictures &pictures)
{
    const std::string group = bar.vars[first]->group;
    const ImGuiTreeNodeFlags open = bar.vars[first]->closed ? 0 : ImGuiTreeNodeFlags_DefaultOpen;
    if (!group.empty() && !ImGui::CollapsingHeader(group.c_str(), open))
    {
        for (std::size_t i = first; i < last; ++i)
            bar.vars[i]->place = {};
        return;
    }
    const unsigned version = bar.version;
    while (first < last && bar.version == version)
        first = layOutNext(bar, first, last, pictures);
}

void layOutLines(TwBar &bar, BarPictures &pictures)
{
    // A control's callback may add lines, which come up at once, or take some away: the rest waits a frame.
    const unsigned version = bar.version;
    for (std::size_t i = 0; i < bar.vars.size() && bar.version == version;)
    {
        std::size_t end = i + 1;
        while (end < bar.vars.size() && bar.vars[end]->group == bar.vars[i]->group)
            ++end;
        layOutGroup(bar, i, end, pictures);
        i = end;
    }
}
} // namespace

TweakPlace layOutBar(TwBar &bar, const std::vector<TweakPlace> &others, BarPictures &pictures)
{
    placeBar(bar, others);
    // The title may change; what stands behind the marks tells the windows apart.
    const std::string title = bar.label + "###" + bar.name;
    if (std::exchange(bar.front, false))
        ImGui::SetNextWindowFocus();
    constexpr ImGuiWindowFlags plain =
        ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoCollapse;
    if (ImGui::Begin(title.c_str(), &bar.visible, bar.plain ? plain : ImGuiWindowFlags_None))
    {
        if (!bar.help.empty())
        {
            ImGui::PushTextWrapPos(0.0f);
            ImGui::PushStyleColor(ImGuiCol_Text, ImGui::GetStyleColorVec4(ImGuiCol_TextDisabled));
            ImGui::TextUnformatted(bar.help.c_str());
            ImGui::PopStyleColor();
            ImGui::PopTextWrapPos();
        }
        layOutLines(bar, pictures);
    }
    const TweakPlace seen = placeOfWindow(bar);
    ImGui::End();
    return seen;
}

} // namespace port
