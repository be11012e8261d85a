#include "tools/view/ShadowService.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "platform/ServiceStateScope.h"
#include "platform/TextFile.h"
#include "platform/Topics.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kModeProperty = "vendor.talkertracking.flag";

/** The shadow prints nothing. */
std::ostream& nowhere() {
  static std::ostream stream(nullptr);
  return stream;
}

ReplayOptions replayOptions(DecisionListener& decisions) {
  ReplayOptions options;
  options.dumpPath = "/dev/null";
  options.standardOutput = &nowhere();
  options.decisions = &decisions;
  return options;
}

/** Finds the framing mode of a scene document's first stream without building the document. */
class ModeFinder final : public nlohmann::json_sax<nlohmann::json> {
 public:
  std::string mode;

  bool key(string_t& name) override {
    mIsMode = name == "TrackingMode";
    return true;
  }
  bool string(string_t& value) override {
    if (mIsMode) {
      mode = std::move(value);
    }
    return !std::exchange(mIsMode, false);
  }
  bool null() override { return true; }
  bool boolean(bool /*value*/) override { return true; }
  bool number_integer(number_integer_t /*value*/) override { return true; }
  bool number_unsigned(number_unsigned_t /*value*/) override { return true; }
  bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return true; }
  bool binary(binary_t& /*value*/) override { return true; }
  bool start_object(std::size_t /*size*/) override { return true; }
  bool end_object() override { return true; }
  bool start_array(std::size_t /*size*/) override { return true; }
  bool end_array() override { return true; }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::json::exception& /*error*/) override {
    return false;
  }

 private:
  bool mIsMode = false;
};

}  // namespace

ShadowService::ShadowService(LineSink& sink, ShadowSettings settings)
    : mSettings(std::move(settings)),
      mEngine(sink, [this] { return mTime; }),
      mReplay(replayOptions(mEngine), mNobody) {
  readSettings();
}

void ShadowService::readSettings() {
  KeyValues properties;
  if (mSettings.properties != nullptr) {
    mSettings.properties->forEach(
        [&](const std::string& key, const std::string& value) { properties.emplace_back(key, value); });
  }
  properties.insert(properties.end(), mSettings.ownProperties.begin(), mSettings.ownProperties.end());
  mReplay.handle({mTime, SetProperties{std::move(properties)}});
  if (mSettings.configuration.empty()) {
    return;
  }
  ReplaceConfig config;
  forEachConfigLine(readTextFile(mSettings.configuration).value_or(""),
                    [&](std::string_view key, std::string_view value, int /*line*/) {
                      config.values.emplace_back(key, value);
                    });
  mReplay.handle({mTime, std::move(config)});
}

void ShadowService::take(std::int64_t t, const std::string& topic, const std::string& message) {
  mTime = t;
  if (topic == topics::kScene) {
    takeScene(message);
  } else if (topic == topics::kTrackingMode) {
    followMode(message);
  } else if (topic == topics::kTimerDebug) {
    mEngine.leaveOutWaits();
  } else {
    if (topic == topics::kControl && message == control::kConfigChange) {
      readSettings();
    }
    deliver(topic, message);
  }
}

void ShadowService::deliver(std::string_view topic, std::string_view message) {
  mReplay.handle({mTime, BusMessage{std::string(topic), std::string(message)}});
  if (mReplay.service() != nullptr) {
    const ServiceStateScope scope(mReplay.state());
    mEngine.look(*mReplay.service());
  }
}

void ShadowService::takeScene(const std::string& message) {
  ModeFinder finder;
  nlohmann::json::sax_parse(message, &finder);
  if (!finder.mode.empty()) {
    followMode(finder.mode);
  }
}

// A service follows its configuration, so the mode goes there; the message makes it follow at once, and in
// the role of a secondary device at all.
void ShadowService::followMode(const std::string& name) {
  if (name == mMode) {
    return;
  }
  mMode = name;
  const std::string mode = std::to_string(static_cast<int>(stringToFramingMode(name)));
  mReplay.handle({mTime, SetProperties{{{kModeProperty, mode}}}});
  deliver(topics::kControl, control::kConfigChange);
  deliver(topics::kTrackingMode, name);
}

}  // namespace fyn::productionrules
