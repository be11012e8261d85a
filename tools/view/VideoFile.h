#pragma once

#include <httplib.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace fyn::productionrules {

/** An answer, a piece at a time; nothing at its end. */
using Pieces = std::function<std::optional<std::string>()>;

/** A camera's video, of which a page reads the parts that it shows. */
class VideoFile {
 public:
  /** Raises UsageError when the file cannot be read. */
  explicit VideoFile(const std::string& path);

  /** The file's name without its folder. */
  const std::string& name() const { return mName; }
  const char* contentType() const;

  /** What is asked for, all or a range. Writes status and headers; no pieces when there is no such range. */
  Pieces answer(const httplib::Request& request, httplib::Response& response) const;

 private:
  const std::string mPath;
  const std::string mName;
  std::int64_t mSize = 0;
};

}  // namespace fyn::productionrules
