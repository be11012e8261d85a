#pragma once

#include <functional>
#include <optional>
#include <string>

namespace fyn::productionrules {

/**
 * The device's system properties: texts by key. A key that begins with "persist." outlives a restart of the
 * device, every other lasts until it. What one process sets is visible to every process at its next read.
 * Called from any thread.
 */
class PropertyStore {
 public:
  virtual ~PropertyStore() = default;

  /** Called before the service reads its properties anew: a store that could not be used tries again, without
   * making the caller wait. */
  virtual void refresh() {}

  /** The text of `key`; nothing when it is not set. */
  virtual std::optional<std::string> get(const std::string& key) const = 0;

  /** Sets `key`; false when the store cannot be written (said once in the log by the store). */
  virtual bool set(const std::string& key, const std::string& value) = 0;

  /** Calls `visit(key, value)` for every property that is set, in ascending key order. */
  virtual void forEach(
      const std::function<void(const std::string& key, const std::string& value)>& visit) const = 0;
};

}  // namespace fyn::productionrules
