#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "tools/base/NewFile.h"

namespace fyn::productionrules {

/**
 * An output file by its path, or standard output for "-". What stands at the path stays there until `finish`.
 * Raises UsageError when the rules forbid it or it cannot be made.
 */
class OutputFile {
 public:
  OutputFile(const std::string& path, const OutputRules& rules, std::ostream& standardOutput);

  std::ostream& stream() { return *mStream; }
  const std::string& name() const { return mName; }

  /** Puts the file in its place already now, for whoever reads along. */
  void putInPlace();

  /** Writes out everything and puts the file in its place; raises std::runtime_error when something could not
   * be written (a full disk). */
  void finish();

 private:
  std::string mName;
  std::optional<NewFile> mFile;
  std::ostream* mStream;
};

/** Writes a document for programs into a file of its own, as an OutputFile does; nothing for "". */
void writeJsonFile(const nlohmann::ordered_json& document, const std::string& path, const OutputRules& rules,
                   std::ostream& standardOutput);

}  // namespace fyn::productionrules
