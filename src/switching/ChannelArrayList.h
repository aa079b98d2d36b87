#pragma once

// The ordered list of all channel arrays.

#include "platform/Export.h"
#include "switching/ChannelArray.h"

#include <memory>
#include <vector>

// Owns its arrays, which stay where they are while the list changes. Names compare without case. Codes are
// KvNetErrors. User-interface thread.
class KALVIO_API CChannelArrayList {
public:
    CChannelArrayList() = default;
    CChannelArrayList(CChannelArrayList&&) = default;
    CChannelArrayList& operator=(CChannelArrayList&&) = default;
    CChannelArrayList(const CChannelArrayList&) = delete;
    // Copies every array of the other list into a new one; the present ones are deleted.
    CChannelArrayList& operator=(const CChannelArrayList& other);
    virtual ~CChannelArrayList() = default;

    // The network's save flag (8 bits), the number of arrays (16 bits), the arrays. Loading sets the save
    // flag and replaces all arrays, unless the flag read is 0 or the host discards stored values: then it
    // drops them. Loads nothing from files up to version 101, revision 98. Throws CArchiveException for a
    // short or damaged archive, and has changed nothing then.
    virtual void Serialize(CArchive& archive);

    [[nodiscard]] int GetCount() const { return static_cast<int>(m_arrays.size()); }
    [[nodiscard]] CChannelArray* GetAt(int index) const; // null outside
    // Null and -1 when there is none.
    [[nodiscard]] CChannelArray* GetChannelArray(const char* name) const;
    [[nodiscard]] int GetChannelArrayIndex(const char* name) const;
    [[nodiscard]] int GetChannelArrayIndex(const CChannelArray* array) const;

    // Appends a new array and tells views HINT_ARRAY_ADDED with it. KVNET_ERR_ARRAY_EXISTS,
    // KVNET_ERR_PARAMETER without a name, KVNET_ERR_MEMORY.
    short DefineArray(const char* name, int stereo, int exclusiveOnly);
    // Inserts an array in front of the one at `index`, at the end for one outside. Views are not told.
    void InsertAt(int index, std::unique_ptr<CChannelArray> array);
    // Deletes an array and tells views HINT_ARRAY_REMOVED with the pointer, for comparison only.
    // KVNET_ERR_ARRAY_NOT_DEFINED.
    short RemoveArray(const char* name);
    short RemoveArray(const CChannelArray* array);
    // Moves an array by `offset` places: 1, or KVNET_ERR_ARRAY_INDEX when one of the places is outside. Views
    // are not told.
    int MoveArray(int index, int offset);
    void DeleteAll() { m_arrays.clear(); }

private:
    void Load(CArchive& archive);

    std::vector<std::unique_ptr<CChannelArray>> m_arrays; // none is null
};
