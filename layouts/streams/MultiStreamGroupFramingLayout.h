#pragma once

#include "layouts/group/GroupFramingLayout.h"

namespace fyn::productionrules {

/** The stream of several that shows everybody. */
class MultiStreamGroupFramingLayout : public GroupFramingLayout {
 public:
  const char* getTag() const override;
};

}  // namespace fyn::productionrules
