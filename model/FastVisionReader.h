#pragma once

#include <memory>
#include <string>

namespace fyn::productionrules {

class MLData;

/**
 * Reads the text of a usual vision result in one pass, without a document in between. Usual means: each key
 * stands once and has the kind that a vision pipeline writes, numbers fit, each person has an id and a head.
 * Of such a text it makes what MLData::from_json makes of its document.
 */
class FastVisionReader {
 public:
  FastVisionReader();
  ~FastVisionReader();
  FastVisionReader(const FastVisionReader&) = delete;
  FastVisionReader& operator=(const FastVisionReader&) = delete;

  /** The result; null for a text that is not usual, or no JSON at all, and on a build without this reader.
   * Logs nothing. */
  std::shared_ptr<MLData> read(const std::string& text);

  /** Whether this build has a reader that answers anything but null. */
  static bool isBuilt();

 private:
  struct Parser;

  // Keeps its memory from one text to the next.
  std::unique_ptr<Parser> mParser;
};

}  // namespace fyn::productionrules
