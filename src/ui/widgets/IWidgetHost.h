// IWidgetHost: what a screen is told by its widgets.
#pragma once

/// Filled in by `MenuComponent`, which lays the widgets below its entity out and paints them.
class IWidgetHost
{
public:
    virtual ~IWidgetHost() = default;

    /// Notes that a widget is no longer as it was laid out, or painted, last.
    /// @param places  whether places may have changed
    virtual void widgetChanged(bool places) = 0;
};
