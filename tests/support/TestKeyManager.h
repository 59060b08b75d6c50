// TestKeyManager: a manager under any key, for components whose own manager a test cannot have.
#pragma once

#include "engine/entities/SimpleManager.h"

/// A simple manager that the coordinator does not know; its components are found under the key it is given.
class TestKeyManager : public SimpleManager
{
    KV_REFLECTED(TestKeyManager)
public:
    TestKeyManager() = default;

    void setKey(const String &val) { key = val; }
};
