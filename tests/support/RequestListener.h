// RequestListener: hears when assets are ready.
#pragma once

#include "engine/systems/RequestHandle.h"
#include "object/tree/Object.h"

#include <functional>
#include <vector>

/// An object whose callback notes the requests that it is called for.
class RequestListener : public Object
{
    KV_REFLECTED(RequestListener)
public:
    RequestListener() = default;

    /// Makes one; it lives until it is murdered.
    static RequestListener &make() { return *construct<RequestListener>(defaultAllocationCategory).lookup(); }

    /// The callback to hand to whoever will call.
    ReflectorPtr callback() const { return bind(SCS("onReady")); }
    void onReady(RequestHandle h);

    std::vector<RequestHandle> requests;
    std::function<void()> whenCalled;
};
