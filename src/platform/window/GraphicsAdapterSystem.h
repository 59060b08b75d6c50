// GraphicsAdapterSystem: the Direct3D 9 object, the adapter to draw with, and its display modes.
#pragma once

#include "platform/window/ModeComparator.h"

#include "engine/systems/System.h"

#include "foundation/ErrorCode.h"
#include "port/d3d9/d3d9types.h"

#include <vector>

struct IDirect3D9;

/// Chooses the graphics adapter and lists its display modes in order of preference.
///
/// Owns the Direct3D 9 object for the whole run. The list is read when the system starts; index 0 is the best mode.
class GraphicsAdapterSystem : public System
{
    KV_REFLECTED(GraphicsAdapterSystem)
public:
    using ModeList = std::vector<DisplayMode>;
    using Direct3DFactory = IDirect3D9 *(*)(UINT sdkVersion);

    GraphicsAdapterSystem() = default;

    /// All modes of the adapter for 32-bit colour without alpha, best first.
    ///
    /// A mode that the adapter fails to tell is an assertion with the device's error, and left out.
    ModeList enumDisplayModes() const;

    UINT getAdapterID() const { return adapterID; }
    D3DDEVTYPE getDeviceType() const { return devType; }
    /// The Direct3D 9 object, borrowed; null before the start and after the shutdown.
    IDirect3D9 *getD3DPointer() const { return pD3D; }

    int getNumDisplayModes() const;
    /// Height of a mode in pixels; 0 for a number that is no mode's.
    int getDisplayModeHeight(int modeNum) const;
    /// Width of a mode in pixels; 0 for a number that is no mode's.
    int getDisplayModeWidth(int modeNum) const;
    /// Refresh rate of a mode in hertz; 0 for a number that is no mode's.
    int getDisplayModeRefreshRate(int modeNum) const;

    /// Puts another maker of the Direct3D 9 object in place for the next start; null restores the platform's.
    static void setDirect3DFactory(Direct3DFactory factory);

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override { return {}; }

private:
    void chooseAdapter();
    DisplayMode getMode(int modeNum) const;

    UINT adapterID = D3DADAPTER_DEFAULT;
    D3DDEVTYPE devType = D3DDEVTYPE_HAL;
    IDirect3D9 *pD3D = nullptr; ///< owned
    ModeList modes;             ///< as enumDisplayModes gave them at the start
};
