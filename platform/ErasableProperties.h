#pragma once

#include <string>

namespace fyn::productionrules {

/** What a property store can do beside PropertyStore when its device lets a property be taken out; not all
 * do. */
class ErasableProperties {
 public:
  virtual ~ErasableProperties() = default;

  /** Takes `key` out, so that its default holds; false when the store cannot be written. */
  virtual bool unset(const std::string& key) = 0;
};

}  // namespace fyn::productionrules
