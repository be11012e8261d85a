#include "platform/VisionSettings.h"

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "platform/SystemEnvironment.h"

namespace fyn::productionrules {

namespace {

std::atomic<int> gLogLevel{VisionSettings::kInfoLevel};
std::atomic<int> gLogCeiling{VisionSettings::kDebugLevel};

void writeLine(LogPriority priority, const char* tag, const char* format, std::va_list arguments) {
  // Most lines fit; the rare long one (a whole document) is formatted a second time into the heap.
  std::array<char, 4096> shortLine;
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(shortLine.data(), shortLine.size(), format, arguments);
  if (length >= 0 && static_cast<std::size_t>(length) >= shortLine.size()) {
    std::string longLine(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(longLine.data(), longLine.size(), format, again);
    SystemEnvironment::log().write(priority, tag, longLine.c_str());
  } else if (length >= 0) {
    SystemEnvironment::log().write(priority, tag, shortLine.data());
  }
  va_end(again);
}

}  // namespace

void VisionSettings::setLogLevel(int level) {
  gLogLevel.store(level, std::memory_order_relaxed);
}

void VisionSettings::setLogCeiling(int level) {
  gLogCeiling.store(level, std::memory_order_relaxed);
}

bool VisionSettings::isLogged(int level) {
  return logLevel() >= level && gLogCeiling.load(std::memory_order_relaxed) >= level;
}

int VisionSettings::logLevel() {
  return gLogLevel.load(std::memory_order_relaxed);
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
