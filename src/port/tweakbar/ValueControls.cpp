#include "port/tweakbar/ValueControls.h"

#include <algorithm>
#include <cmath>
#include <imgui/imgui.h>
#include <imgui/imgui_stdlib.h>

namespace port
{

namespace
{
/// What a text field is given; more than that is shown cut, and read only, since every letter is laid out.
constexpr std::size_t LONGEST_TEXT = 16384;

template <class T>
T read(const TweakVar &var)
{
    T value{};
    if (var.get)
        var.get(&value, var.clientData);
    return value;
}

void write(TweakVar &var, const void *value)
{
    if (!var.set || var.removed)
        return;
    var.isEdited = true;
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

void shownText(const std::string &text)
{
    ImGui::PushTextWrapPos(0.0f);
    const std::size_t length = std::min(text.size(), LONGEST_TEXT);
    ImGui::TextUnformatted(text.c_str(), text.c_str() + length);
    if (length < text.size())
        ImGui::TextDisabled("... %zu characters in all", text.size());
    ImGui::PopTextWrapPos();
}

void textControl(TweakVar &var)
{
    if (!var.isTyping)
        var.typed = read<std::string>(var);
    if (!var.set || var.typed.size() > LONGEST_TEXT)
        return shownText(var.typed);
    const bool changed = ImGui::InputText("##value", &var.typed);
    var.isTyping = ImGui::IsItemActive();
    // Half a name is no name: a text is set when it is whole, unless each letter was asked for.
    if (var.live ? changed : ImGui::IsItemDeactivatedAfterEdit())
        write(var, &var.typed);
}

/// One of several numbers by their texts; `count` of them, `entry` gives each.
template <class Entry>
void comboControl(TweakVar &var, std::size_t count, const Entry &entry)
{
    const auto value = read<std::int64_t>(var);
    std::string preview = std::to_string(value);
    for (std::size_t i = 0; i < count; ++i)
        if (entry(i).first == value)
        {
            preview = entry(i).second;
            break;
        }
    if (!ImGui::BeginCombo("##value", preview.c_str()))
        return;
    for (std::size_t i = 0; i < count; ++i)
    {
        const auto [number, text] = entry(i);
        ImGui::PushID(static_cast<int>(i));
        if (ImGui::Selectable(text.c_str(), number == value))
            write(var, &number);
        ImGui::PopID();
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
    if (!var.set) // a legend: the colour alone, not greyed
    {
        const ImVec2 at = ImGui::GetCursorScreenPos(), size(ImGui::CalcItemWidth(), ImGui::GetFrameHeight());
        ImGui::Dummy(size);
        const ImVec4 color(value.f[0], value.f[1], value.f[2], value.f[3]);
        ImGui::GetWindowDrawList()->AddRectFilled(at, ImVec2(at.x + size.x, at.y + size.y),
                                                  ImGui::ColorConvertFloat4ToU32(color), 2.0f);
        return;
    }
    constexpr ImGuiColorEditFlags flags =
        ImGuiColorEditFlags_Float | ImGuiColorEditFlags_HDR | ImGuiColorEditFlags_AlphaPreviewHalf;
    if (ImGui::ColorEdit4("##value", value.f, flags))
        write(var, &value);
}

/// The axes' colours stand at the left of their fields, as they do in the world.
void markAxis(int axis)
{
    constexpr ImU32 colors[] = {IM_COL32(224, 84, 70, 255), IM_COL32(110, 190, 70, 255), IM_COL32(80, 130, 235, 255),
                                IM_COL32(140, 140, 140, 255)};
    const ImVec2 low = ImGui::GetItemRectMin(), high = ImGui::GetItemRectMax();
    ImGui::GetWindowDrawList()->AddRectFilled(low, ImVec2(low.x + 2.0f, high.y), colors[axis]);
}

/// One drag field an axis, side by side in the width that is left; whether any changed.
bool axes(TweakVar &var, float *values, int count, double smallest, const char *format)
{
    constexpr const char *names[] = {"##x", "##y", "##z", "##w"};
    const float gap = ImGui::GetStyle().ItemInnerSpacing.x * 0.5f;
    const float width = std::max((ImGui::CalcItemWidth() - gap * static_cast<float>(count - 1)) / float(count), 8.0f);
    float largest = 0.0f;
    for (int i = 0; i < count; ++i)
        largest = std::max(largest, std::abs(values[i]));
    bool changed = false;
    for (int i = 0; i < count; ++i)
    {
        if (i > 0)
            ImGui::SameLine(0.0f, gap);
        ImGui::SetNextItemWidth(width);
        changed |= ImGui::DragScalar(names[i], ImGuiDataType_Float, &values[i], dragSpeed(var, largest, smallest),
                                     nullptr, nullptr, format);
        markAxis(i);
    }
    return changed;
}

void vectorControl(TweakVar &var)
{
    auto value = read<FourFloats>(var);
    if (axes(var, value.f, 4, 0.002, "%.3f"))
        write(var, &value);
}

constexpr float DEGREES = 57.29577951f;

void threeControl(TweakVar &var)
{
    auto value = read<FourFloats>(var);
    if (axes(var, value.f, 3, 0.005, "%.3f"))
        write(var, &value);
}

/// Turn about y, pitch about x, roll about z, applied in the order roll, pitch, turn; degrees in the order x, y, z.
void toAngles(const FourFloats &q, float *angles)
{
    const float x = q.f[0], y = q.f[1], z = q.f[2], w = q.f[3];
    angles[0] = std::asin(std::clamp(2.0f * (w * x - y * z), -1.0f, 1.0f)) * DEGREES;
    angles[1] = std::atan2(2.0f * (x * z + w * y), 1.0f - 2.0f * (x * x + y * y)) * DEGREES;
    angles[2] = std::atan2(2.0f * (x * y + w * z), 1.0f - 2.0f * (x * x + z * z)) * DEGREES;
}

FourFloats fromAngles(const float *angles)
{
    const float half = 0.5f / DEGREES;
    const float sx = std::sin(angles[0] * half), cx = std::cos(angles[0] * half);
    const float sy = std::sin(angles[1] * half), cy = std::cos(angles[1] * half);
    const float sz = std::sin(angles[2] * half), cz = std::cos(angles[2] * half);
    return {{cy * sx * cz + sy * cx * sz, sy * cx * cz - cy * sx * sz, cy * cx * sz - sy * sx * cz,
             cy * cx * cz + sy * sx * sz}};
}

/// The angles stay as they are typed while they are edited: many angles make the same rotation.
void rotationControl(TweakVar &var)
{
    if (!var.isTyping)
        toAngles(read<FourFloats>(var), var.angles.data());
    ImGui::BeginGroup();
    const bool changed = axes(var, var.angles.data(), 3, 0.25, "%.1f\xc2\xb0");
    ImGui::EndGroup();
    var.isTyping = ImGui::IsItemActive();
    if (!changed)
        return;
    const FourFloats value = fromAngles(var.angles.data());
    write(var, &value);
}

void linkControl(TweakVar &var)
{
    const auto text = read<std::string>(var);
    if (text.empty())
        return ImGui::TextDisabled("none");
    if (ImGui::SmallButton("open") && !var.removed)
        var.pressed(var.clientData);
    ImGui::SameLine();
    ImGui::TextUnformatted(text.c_str());
}

void wholeNumberControl(TweakVar &var)
{
    if (var.choices.empty())
        return numberControl<std::int64_t>(var, ImGuiDataType_S64, 0.2, nullptr);
    // A copy: what is chosen may change the choices.
    const std::vector<std::string> choices = var.choices;
    comboControl(var, choices.size(),
                 [&choices](std::size_t i) { return std::pair(static_cast<std::int64_t>(i), choices[i]); });
}
} // namespace

void layOutValue(TweakVar &var)
{
    if (var.kind == TweakVar::LINK)
        return linkControl(var);
    if (const TweakEnum *texts = Bars::get().findEnum(var.type))
        return comboControl(var, texts->values.size(), [texts](std::size_t i) { return texts->values[i]; });
    switch (var.type)
    {
    case TW_TYPE_BOOLCPP:
        return boolControl(var);
    case TW_TYPE_INT64:
        return wholeNumberControl(var);
    case TW_TYPE_DOUBLE:
        return numberControl<double>(var, ImGuiDataType_Double, 0.002, "%.5g");
    case TW_TYPE_STDSTRING:
        return textControl(var);
    case TW_TYPE_COLOR4F:
        return colorControl(var);
    case TW_TYPE_VEC4F:
        return vectorControl(var);
    case TW_TYPE_VEC3F:
        return threeControl(var);
    case TW_TYPE_QUAT4F:
        return rotationControl(var);
    default:
        return;
    }
}

} // namespace port
