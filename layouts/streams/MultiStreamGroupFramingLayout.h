#pragma once

#include "layouts/group/GroupFramingLayout.h"

namespace fyn::productionrules {

/** The stream of several that shows everybody. */
class MultiStreamGroupFramingLayout : public GroupFramingLayout {
 public:
  const char* getTag() const override;
  std::shared_ptr<Layout> createLayout(const std::shared_ptr<MLData>& mlData) override;
};

}  // namespace fyn::productionrules
