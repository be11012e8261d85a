#pragma once

#include "platform/LogLevels.h"

namespace fyn::productionrules {

/**
 * The log level of the whole service and the four functions that it gates. A line is written when the level
 * is at least: error 1, warning 2, info 3, debug 4; level 0 silences all four. The level starts at 3.
 *
 * Use the macros PRB_LOGE, PRB_LOGW, PRB_LOGI and PRB_LOGD: they test the level before any argument is built.
 */
class VisionSettings : public LogLevels {
 public:
  static void setLogLevel(int level);
  static int logLevel();

  static bool isLogged(int level);

  static void LOGD(const char* tag, const char* format, ...) __attribute__((format(printf, 2, 3)));
  static void LOGI(const char* tag, const char* format, ...) __attribute__((format(printf, 2, 3)));
  static void LOGW(const char* tag, const char* format, ...) __attribute__((format(printf, 2, 3)));
  static void LOGE(const char* tag, const char* format, ...) __attribute__((format(printf, 2, 3)));
};

}  // namespace fyn::productionrules

#define PRB_LOG_WHEN_(level, function, ...)                                                                \
  do {                                                                                                     \
    if (::fyn::productionrules::VisionSettings::isLogged(::fyn::productionrules::VisionSettings::level)) { \
      ::fyn::productionrules::VisionSettings::function(__VA_ARGS__);                                       \
    }                                                                                                      \
  } while (false)

#define PRB_LOGE(...) PRB_LOG_WHEN_(kErrorLevel, LOGE, __VA_ARGS__)
#define PRB_LOGW(...) PRB_LOG_WHEN_(kWarningLevel, LOGW, __VA_ARGS__)
#define PRB_LOGI(...) PRB_LOG_WHEN_(kInfoLevel, LOGI, __VA_ARGS__)
#define PRB_LOGD(...) PRB_LOG_WHEN_(kDebugLevel, LOGD, __VA_ARGS__)
