#include "platform/VisionSettings.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "platform/ServiceState.h"

namespace fyn::productionrules {

namespace {

void writeLine(LogPriority priority, const char* tag, const char* format, std::va_list arguments) {
  // Most lines fit; the rare long one (a whole document) is formatted a second time into the heap.
  std::array<char, 4096> shortLine;
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(shortLine.data(), shortLine.size(), format, arguments);
  if (length >= 0 && static_cast<std::size_t>(length) >= shortLine.size()) {
    std::string longLine(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(longLine.data(), longLine.size(), format, again);
    ServiceState::current().log().write(priority, tag, longLine.c_str());
  } else if (length >= 0) {
    ServiceState::current().log().write(priority, tag, shortLine.data());
  }
  va_end(again);
}

}  // namespace

void VisionSettings::setLogLevel(int level) {
  ServiceState::current().setLogLevel(level);
}

bool VisionSettings::isLogged(int level) {
  return ServiceState::current().isLogged(level);
}

int VisionSettings::logLevel() {
  return ServiceState::current().logLevel();
}

#define PRB_DEFINE_LOG_FUNCTION(name, level, priority)                  \
  void VisionSettings::name(const char* tag, const char* format, ...) { \
    if (!isLogged(level)) {                                             \
      return;                                                           \
    }                                                                   \
    std::va_list arguments;                                             \
    va_start(arguments, format);                                        \
    writeLine(priority, tag, format, arguments);                        \
    va_end(arguments);                                                  \
  }

PRB_DEFINE_LOG_FUNCTION(LOGD, kDebugLevel, LogPriority::debug)
PRB_DEFINE_LOG_FUNCTION(LOGI, kInfoLevel, LogPriority::info)
PRB_DEFINE_LOG_FUNCTION(LOGW, kWarningLevel, LogPriority::warning)
PRB_DEFINE_LOG_FUNCTION(LOGE, kErrorLevel, LogPriority::error)

#undef PRB_DEFINE_LOG_FUNCTION

}  // namespace fyn::productionrules
