#include "port/tweakbar/Bars.h"

#include "port/d3d9/DebugText.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace
{
int fail(const std::string &reason)
{
    port::debugText("tweak bars: %s", reason.c_str());
    return 0;
}

/// Adds a line to a bar, still without its callbacks; null where the name is taken.
port::TweakVar *addLine(TwBar *bar, const char *name, port::TweakVar::Kind kind, void *clientData)
{
    if (!bar || bar->find(name))
    {
        fail(bar ? "the bar '" + bar->name + "' has a variable '" + name + "' already" : "no bar");
        return nullptr;
    }
    auto var = std::make_unique<port::TweakVar>();
    var->name = var->label = name;
    var->kind = kind;
    var->clientData = clientData;
    bar->vars.push_back(std::move(var));
    return bar->vars.back().get();
}

/// The values of a parameter as it was given.
struct Param
{
    std::string_view name;
    TwParamValueType type;
    unsigned count;
    const void *values;

    bool isText(const char *wanted) const { return name == wanted && type == TW_PARAM_CSTRING && count == 1; }
    bool isInts(const char *wanted, unsigned n) const { return name == wanted && type == TW_PARAM_INT32 && count == n; }
    bool isDouble(const char *wanted) const { return name == wanted && type == TW_PARAM_DOUBLE && count == 1; }
    const char *text() const { return static_cast<const char *>(values); }
    const int *ints() const { return static_cast<const int *>(values); }
    double number() const { return *static_cast<const double *>(values); }
};

int setBarParam(TwBar &bar, const Param &param)
{
    if (param.isText("label"))
        bar.label = param.text();
    else if (param.isText("help"))
        bar.help = param.text();
    else if (param.isInts("visible", 1))
        bar.visible = *param.ints() != 0;
    else if (param.isInts("size", 2))
    {
        bar.width = param.ints()[0];
        bar.height = param.ints()[1];
    }
    else if (param.isInts("place", 4))
        bar.wanted = {param.ints()[0], param.ints()[1], param.ints()[2], param.ints()[3]};
    else if (param.isInts("front", 1))
        bar.front = *param.ints() != 0;
    else if (param.isInts("always", 1))
        bar.always = *param.ints() != 0;
    else if (param.isInts("plain", 1))
        bar.plain = *param.ints() != 0;
    else
        return fail("a bar has no such parameter: " + std::string(param.name));
    return 1;
}

std::vector<std::string> linesOf(const std::string &text)
{
    std::vector<std::string> lines;
    std::size_t begin = 0;
    while (begin <= text.size())
    {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

/// A switch of a variable by its name; null where there is none.
bool *findSwitch(port::TweakVar &var, std::string_view name)
{
    const std::pair<std::string_view, bool *> switches[] = {{"enabled", &var.enabled},
                                                            {"marked", &var.marked},
                                                            {"sameline", &var.sameLine},
                                                            {"live", &var.live},
                                                            {"closed", &var.closed}};
    for (const auto &[known, value] : switches)
        if (known == name)
            return value;
    return nullptr;
}

/// Where a bar, or a variable of it, was last drawn; null for what there is not.
const port::TweakPlace *placeOf(TwBar *bar, const char *varName)
{
    if (!bar || !varName)
        return bar ? &bar->place : nullptr;
    const port::TweakVar *var = bar->find(varName);
    return var ? &var->place : nullptr;
}

int setVarParam(port::TweakVar &var, const Param &param)
{
    if (bool *value = findSwitch(var, param.name); value && param.isInts(param.name.data(), 1))
        *value = *param.ints() != 0;
    else if (param.isText("label"))
        var.label = param.text();
    else if (param.isText("help"))
        var.help = param.text();
    else if (param.isText("group"))
        var.group = param.text();
    else if (param.isText("error"))
        var.error = param.text();
    else if (param.isInts("rows", 1))
        var.rows = *param.ints();
    else if (param.isText("choices"))
        var.choices = linesOf(param.text());
    else if (param.isDouble("min"))
        var.min = param.number();
    else if (param.isDouble("max"))
        var.max = param.number();
    else if (param.isDouble("step"))
        var.step = param.number();
    else
        return fail("a variable has no such parameter: " + std::string(param.name));
    return 1;
}
} // namespace

port::TweakVar *TwBar::find(const char *varName)
{
    for (const auto &var : vars)
        if (var->name == varName)
            return var.get();
    return nullptr;
}

bool TwBar::remove(const char *varName)
{
    const auto goes = [varName](const auto &var) { return !varName || var->name == varName; };
    const auto first = std::stable_partition(vars.begin(), vars.end(), std::not_fn(goes));
    const bool any = first != vars.end();
    for (auto it = first; it != vars.end(); ++it)
    {
        (*it)->removed = true;
        removed.push_back(std::move(*it));
    }
    vars.erase(first, vars.end());
    version += any;
    return any || !varName;
}

namespace port
{

Bars &Bars::get()
{
    static Bars &all = *new Bars;
    return all;
}

TwBar *Bars::add(const char *name)
{
    const auto named = [name](const auto &bar) { return !bar->deleted && bar->name == name; };
    if (std::any_of(bars.begin(), bars.end(), named))
    {
        fail(std::string("there is a bar '") + name + "' already");
        return nullptr;
    }
    auto bar = std::make_unique<TwBar>();
    bar->name = bar->label = name;
    bars.push_back(std::move(bar));
    return bars.back().get();
}

void Bars::remove(TwBar *bar)
{
    bar->deleted = true;
    bar->remove(nullptr); // whoever draws it now stops
    dropDeleted();
}

void Bars::dropDeleted()
{
    if (drawing)
        return;
    std::erase_if(bars, [](const auto &bar) { return bar->deleted; });
    for (const auto &bar : bars)
        bar->removed.clear();
}

bool Bars::show(bool all)
{
    showsAll = all;
    return std::any_of(bars.begin(), bars.end(), [this](const auto &bar) { return isShown(*bar); });
}

TwType Bars::defineEnum(const char *name, const TwEnumVal *values, unsigned count)
{
    const auto known = std::find_if(enums.begin(), enums.end(), [name](const auto &e) { return e.name == name; });
    const auto type = static_cast<TwType>(TW_TYPE_COUNT + (known - enums.begin()));
    if (known != enums.end())
        return type;
    TweakEnum &made = enums.emplace_back();
    made.name = name;
    for (unsigned i = 0; i < count; ++i)
        made.values.emplace_back(values[i].Value, values[i].Label);
    return type;
}

const TweakEnum *Bars::findEnum(TwType type) const
{
    return type < TW_TYPE_COUNT ? nullptr : &enums[static_cast<std::size_t>(type - TW_TYPE_COUNT)];
}

} // namespace port

TwBar *TwNewBar(const char *barName)
{
    return port::Bars::get().add(barName);
}

int TwDeleteBar(TwBar *bar)
{
    if (!bar)
        return fail("no bar");
    port::Bars::get().remove(bar);
    return 1;
}

int TwRemoveVar(TwBar *bar, const char *name)
{
    if (!bar || !name || !bar->remove(name))
        return fail("there is no variable to remove");
    port::Bars::get().dropDeleted();
    return 1;
}

int TwRemoveAllVars(TwBar *bar)
{
    if (!bar)
        return fail("no bar");
    bar->remove(nullptr);
    port::Bars::get().dropDeleted();
    return 1;
}

TwType TwDefineEnum(const char *name, const TwEnumVal *enumValues, unsigned int nbValues)
{
    return port::Bars::get().defineEnum(name, enumValues, nbValues);
}

int TwAddVarCB(TwBar *bar, const char *name, TwType type, TwSetVarCallback setCallback, TwGetVarCallback getCallback,
               void *clientData)
{
    port::TweakVar *var = addLine(bar, name, port::TweakVar::VALUE, clientData);
    if (!var)
        return 0;
    var->type = type;
    var->set = setCallback;
    var->get = getCallback;
    return 1;
}

int TwSetEditedCB(TwBar *bar, const char *name, TwButtonCallback edited)
{
    port::TweakVar *var = bar ? bar->find(name) : nullptr;
    if (!var)
        return fail("there is no variable to tell of");
    var->edited = edited;
    return 1;
}

int TwSetGraphHeldCB(TwBar *bar, const char *name, TwGraphHeldCallback held)
{
    port::TweakVar *var = bar ? bar->find(name) : nullptr;
    if (!var || var->kind != port::TweakVar::GRAPH)
        return fail("there is no curve to tell of");
    var->graphHeld = held;
    return 1;
}

int TwSetMenuCB(TwBar *bar, const char *name, const char *texts, TwMenuCallback chosen)
{
    port::TweakVar *var = bar ? bar->find(name) : nullptr;
    if (!var)
        return fail("there is no variable to give a menu to");
    var->menu = linesOf(texts);
    var->menuChosen = chosen;
    return 1;
}

int TwAddLinkCB(TwBar *bar, const char *name, TwGetVarCallback getCallback, TwButtonCallback pressed, void *clientData)
{
    port::TweakVar *var = addLine(bar, name, port::TweakVar::LINK, clientData);
    if (!var)
        return 0;
    var->get = getCallback;
    var->pressed = pressed;
    return 1;
}

int TwAddButton(TwBar *bar, const char *name, TwButtonCallback callback, void *clientData)
{
    port::TweakVar *var = addLine(bar, name, port::TweakVar::BUTTON, clientData);
    if (!var)
        return 0;
    var->pressed = callback;
    return 1;
}

int TwAddPicturesCB(TwBar *bar, const char *name, const TwPictureCallbacks *callbacks, void *clientData)
{
    port::TweakVar *var = addLine(bar, name, port::TweakVar::PICTURES, clientData);
    if (!var)
        return 0;
    var->pictures = *callbacks;
    return 1;
}

int TwAddGraphCB(TwBar *bar, const char *name, TwGraphCallback getCallback, void *clientData)
{
    port::TweakVar *var = addLine(bar, name, port::TweakVar::GRAPH, clientData);
    if (!var)
        return 0;
    var->graph = getCallback;
    return 1;
}

int TwAddListCB(TwBar *bar, const char *name, const TwListCallbacks *callbacks, void *clientData)
{
    port::TweakVar *var = addLine(bar, name, port::TweakVar::LIST, clientData);
    if (!var)
        return 0;
    var->list = *callbacks;
    return 1;
}

int TwSetParam(TwBar *bar, const char *varName, const char *paramName, TwParamValueType type, unsigned int count,
               const void *values)
{
    const Param param{paramName, type, count, values};
    if (!bar)
        return fail("no bar");
    if (!varName)
        return setBarParam(*bar, param);
    port::TweakVar *var = bar->find(varName);
    return var ? setVarParam(*var, param) : fail(std::string("there is no variable '") + varName + "'");
}

int TwGetParam(TwBar *bar, const char *varName, const char *paramName, TwParamValueType type, unsigned int maxCount,
               void *values)
{
    const Param param{paramName, type, maxCount, values};
    int *out = static_cast<int *>(values);
    if (bar && !varName && param.isInts("visible", 1))
        *out = bar->visible;
    else if (const port::TweakPlace *seen = placeOf(bar, varName); seen && param.isInts("place", 4))
    {
        const port::TweakPlace &at = *seen;
        const int place[] = {at.left, at.top, at.right - at.left, at.bottom - at.top};
        std::copy(std::begin(place), std::end(place), out);
    }
    else
        return fail("there is no such parameter to read: " + std::string(paramName));
    return 1;
}
