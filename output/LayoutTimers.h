#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/Layout.h"
#include "output/OrderedObject.h"

namespace fyn::productionrules {

/** The keys of the two halves of the debug timer document. */
inline constexpr char kCurrentLayoutKey[] = "currentLayout";
inline constexpr char kNextLayoutKey[] = "nextLayout";

/** "false" for a logical stream, "true" for one of a virtual camera: a text, as readers of layouts expect it.
 */
const char* isVirtualCameraText(const Layout& layout);

/**
 * Adds under `key` to `target` the timers of `layouts`, in milliseconds that remain at `tick`; empty
 * pointers are left out. The frame timers are written only when `key` is kCurrentLayoutKey itself, an equal
 * text will not do; else they are 0, because a pending layout is not reframed.
 */
void updateLayoutTimers(const std::vector<std::shared_ptr<Layout>>& layouts, OrderedObject& target,
                        std::uint32_t tick, const char* key);

}  // namespace fyn::productionrules
