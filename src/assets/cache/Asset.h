// Asset: named external data with a status, and the listeners that wait for it.
#pragma once

#include "engine/systems/RequestHandle.h"

#include "foundation/ErrorCode.h"
#include "foundation/KVString.h"
#include "object/tree/Object.h"
#include "object/tree/ReflectorPtr.h"

#include <vector>

/// One piece of external data: a texture, a mesh, a font.
///
/// Made by an AssetLoader as its child, shared by all who ask for the same name, alive until AssetSystem shuts down.
/// The status moves once from ASSET_NOT_READY to success or a failure; a failed asset is not tried again, unless its
/// file has changed and it is reloaded.
///
/// A listener is called as callback(RequestHandle h), after the status is set: with the handle it was registered
/// with, so one callback can serve several requests. Registering with an asset that is finished already calls back
/// at once, so whoever asks must be ready for the call before the asking returns. One that keeps registering itself
/// anew from within its call is left uncalled in the end, with an error logged.
class Asset : public Object
{
    KV_REFLECTED(Asset)
public:
    /// Who wants to know.
    struct ListenerData
    {
        ReflectorPtr callback;
        RequestHandle h;
        bool oneShot; ///< dropped after its first call
    };

    Asset();

    /// Has `callback` called with `h` once the asset is finished, at once if it is.
    ///
    /// A null callback is ignored. Without `oneShot` the callback runs again at every later change of the data.
    void addListener(ReflectorPtr callback, RequestHandle h, bool oneShot = true);

    /// Stores how loading ended and calls the listeners.
    void setStatus(ErrorCode ec);

    /// ASSET_NOT_READY until loading ends, then success or the failure.
    ErrorCode getStatus() const;

    /// Whether the data come from a file, told by its designed path, or would if it were there.
    virtual bool comesFrom(const String &file) const { return false; }
    /// Takes the data anew from their file: whoever has this asset has the new ones.
    ///
    /// Where that fails, those that are there stay, and the status as well.
    /// @return why it failed, as a sentence; empty on success
    virtual String reload() { return SCS("It has no file."); }

private:
    void notify(const ListenerData &listener);
    bool isFinished() const;

    ErrorCode status;
    std::vector<ListenerData> listeners;
    int callsUnderWay = 0; ///< of listeners, one within the other
};
