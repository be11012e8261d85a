#include "platform/android/AndroidLogSink.h"

#include <android/log.h>

#include <memory>

#include "platform/Backends.h"
#include "platform/LogText.h"

namespace fyn::productionrules {

static_assert(static_cast<int>(LogPriority::debug) == ANDROID_LOG_DEBUG &&
              static_cast<int>(LogPriority::info) == ANDROID_LOG_INFO &&
              static_cast<int>(LogPriority::warning) == ANDROID_LOG_WARN &&
              static_cast<int>(LogPriority::error) == ANDROID_LOG_ERROR);

void AndroidLogSink::write(LogPriority priority, const char* tag, const char* text) {
  __android_log_write(static_cast<int>(priority), tag, cleanLogText(text).c_str());
}

const LogBackend::Maker kMakeAndroidLog = [](const PlatformOptions& /*options*/) -> std::shared_ptr<LogSink> {
  return std::make_shared<AndroidLogSink>();
};

}  // namespace fyn::productionrules
