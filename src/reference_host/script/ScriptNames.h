#pragma once

// The automation names that a script may use, over all objects that offer some.

#include "platform/Automation.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::reference_host {

// An entry and the object that it belongs to; no entry for an unknown name.
struct ScriptTarget {
    CCmdTarget* object = nullptr;
    const DispatchEntry* entry = nullptr;

    explicit operator bool() const { return entry != nullptr; }
};

// The objects must outlive it. User-interface thread.
class ScriptNames {
public:
    explicit ScriptNames(std::span<CCmdTarget* const> objects) : m_objects(objects.begin(), objects.end()) {}

    // Without regard to case; the first object that has the name wins.
    [[nodiscard]] ScriptTarget Find(std::string_view name) const;

    // All of them, object by object in the order of their tables.
    [[nodiscard]] std::vector<ScriptTarget> All() const;

    // `unknown name "X"`, with the name that was probably meant when one is near.
    [[nodiscard]] std::string DescribeUnknown(const std::string& name) const;

private:
    [[nodiscard]] std::string Nearest(std::string_view name) const;

    std::vector<CCmdTarget*> m_objects;
};

// "NAME(short, string)" for messages.
std::string DescribeEntry(const DispatchEntry& entry);

} // namespace kalvio::reference_host
