#include "platform/SystemEnvironment.h"

#include <atomic>

#include "platform/MemoryPropertyStore.h"
#include "platform/StderrLog.h"

namespace fyn::productionrules {

namespace {

// Never destroyed: a detached thread may still log while the process ends.
SteadyClock& machineClock() {
  static auto* const instance = new SteadyClock();
  return *instance;
}

StderrLog& standardErrorLog() {
  static auto* const instance = new StderrLog();
  return *instance;
}

MemoryPropertyStore& memoryProperties() {
  static auto* const instance = new MemoryPropertyStore();
  return *instance;
}

std::atomic<Clock*> gClock{nullptr};
std::atomic<LogSink*> gLog{nullptr};
std::atomic<PropertyStore*> gProperties{nullptr};

TextFileReader& fileReader() {
  static auto* const instance = new TextFileReader(readTextFile);
  return *instance;
}

}  // namespace

Clock& SystemEnvironment::clock() {
  Clock* const installed = gClock.load(std::memory_order_acquire);
  return installed != nullptr ? *installed : machineClock();
}

LogSink& SystemEnvironment::log() {
  LogSink* const installed = gLog.load(std::memory_order_acquire);
  return installed != nullptr ? *installed : standardErrorLog();
}

PropertyStore& SystemEnvironment::properties() {
  PropertyStore* const installed = gProperties.load(std::memory_order_acquire);
  return installed != nullptr ? *installed : memoryProperties();
}

const TextFileReader& SystemEnvironment::files() {
  return fileReader();
}

void SystemEnvironment::setClock(Clock* clock) {
  gClock.store(clock, std::memory_order_release);
}
void SystemEnvironment::setLog(LogSink* log) {
  gLog.store(log, std::memory_order_release);
}
void SystemEnvironment::setProperties(PropertyStore* properties) {
  gProperties.store(properties, std::memory_order_release);
}
void SystemEnvironment::setFiles(TextFileReader reader) {
  fileReader() = std::move(reader);
}

void SystemEnvironment::reset() {
  setClock(nullptr);
  setLog(nullptr);
  setProperties(nullptr);
  setFiles(readTextFile);
}

ProcessTimes& processTimes() {
  static ProcessTimes times;
  return times;
}

}  // namespace fyn::productionrules
