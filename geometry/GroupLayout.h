#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/FynHead.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/**
 * Replaces the frames of a layout by one frame of the layout's type with every person that camera `camId`
 * sees. Its rectangles stay zero; GroupFrame places them. An empty pointer is logged and ignored.
 */
void constructGroupLayout(const std::vector<std::shared_ptr<FynHead>>& heads, std::shared_ptr<Layout>& layout,
                          std::uint32_t camId);

}  // namespace fyn::productionrules
