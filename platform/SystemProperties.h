#pragma once

#include <optional>
#include <string>

namespace fyn::productionrules {

/** Sets a property of the device; 0 on success, -1 otherwise. */
int property_set(const char* key, const char* value);

/** What the whole text of an integer property must be: a decimal integer of 32 bits. Nothing when it is not.
 */
std::optional<int> parsePropertyInt(const std::string& text);

/** 1, true, yes, on, y are true; 0, false, no, off, n are false, in any letter case. Nothing for any other.
 */
std::optional<bool> parsePropertyBool(const std::string& text);

}  // namespace fyn::productionrules

namespace fyn {

/** An integer property of the device. */
class PropertyIntItem {
 public:
  explicit PropertyIntItem(const char* key) : mKey(key) {}

  /**
   * Reads the property into `value`. False, with `value` untouched, when it is not set or its whole text is
   * not a decimal integer (a warning then names it).
   */
  bool readToArg(int& value) const;

 private:
  const char* mKey;
};

/** A boolean property of the device; the same rules with the words of parsePropertyBool. */
class PropertyBoolItem {
 public:
  explicit PropertyBoolItem(const char* key) : mKey(key) {}
  bool readToArg(bool& value) const;

 private:
  const char* mKey;
};

}  // namespace fyn
