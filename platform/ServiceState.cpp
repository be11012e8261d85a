#include "platform/ServiceState.h"

#include <stdexcept>

#include "platform/MemoryPropertyStore.h"
#include "platform/StderrLog.h"
#include "platform/SteadyClock.h"

namespace fyn::productionrules {

ServiceState::ServiceState()
    : mClock(std::make_shared<SteadyClock>()),
      mLog(std::make_shared<StderrLog>()),
      mProperties(std::make_shared<MemoryPropertyStore>()),
      mFiles(std::make_shared<const TextFileReader>(readRegularFile)) {}

ServiceState& ServiceState::ofProcess() {
  static auto* const state = new std::shared_ptr<ServiceState>(std::make_shared<ServiceState>());
  return **state;
}

void ServiceState::setLog(std::shared_ptr<LogSink> log, int ceiling) {
  mLog.set(std::move(log));
  mLogCeiling.store(ceiling, std::memory_order_relaxed);
}

void ServiceState::setFiles(TextFileReader reader) {
  mFiles.set(std::make_shared<const TextFileReader>(std::move(reader)));
}

std::size_t ServiceState::newPlace() {
  static std::atomic<std::size_t> taken{0};
  const std::size_t place = taken.fetch_add(1);
  if (place >= kMostParts) {
    throw std::length_error("a service state has no place for another part");
  }
  return place;
}

void* ServiceState::make(std::size_t place, std::shared_ptr<void> (*maker)()) {
  PartPlace& part = mParts[place];
  const MutexLock lock(mMaking);
  if (part.owner == nullptr) {
    part.owner = maker();
    part.made.store(part.owner.get(), std::memory_order_release);
  }
  return part.owner.get();
}

}  // namespace fyn::productionrules
