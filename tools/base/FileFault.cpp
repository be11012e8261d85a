#include "tools/base/FileFault.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

void cannotOpen(const std::string& path, const char* purpose) {
  const int reason = errno;
  std::error_code ignored;
  throw UsageError(path + ": cannot be opened for " + purpose + ": " +
                   std::strerror(std::filesystem::is_directory(path, ignored) ? EISDIR : reason));
}

}  // namespace fyn::productionrules
