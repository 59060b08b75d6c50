// BatchProxy: the write cursor of one batch into the instance buffer.
#pragma once

#include <cstddef>

/// Where the objects of a batch write what the draw call knows of each of them, one record after the other.
///
/// Only the scene graph makes one; drawn components get it in objectDraw.
class BatchProxy
{
public:
    /// Writes the next record. A record beyond the batch's count or size is an assertion and is not written.
    void addInstanceData(const void *data, std::size_t size);
    template <class T>
    void addInstanceData(const T &data)
    {
        addInstanceData(static_cast<const void *>(&data), sizeof(T));
    }

private:
    friend class SceneGraph;
    friend struct BatchProxyTestAccess;

    BatchProxy(void *memblock, std::size_t instanceCount, std::size_t instanceSize_)
        : position(static_cast<unsigned char *>(memblock)), instanceCountRemaining(instanceCount),
          instanceSize(instanceSize_)
    {
    }

    /// Writes zeros into the records that nobody filled, so that a draw of all of them shows nothing there.
    void clearRemaining();

    unsigned char *position;            ///< next record
    std::size_t instanceCountRemaining; ///< records that still fit
    std::size_t instanceSize;           ///< bytes from one record to the next
};
