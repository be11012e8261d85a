#include "platform/linux/sqlite/SqlitePropertyStore.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "platform/Backends.h"
#include "platform/TextFile.h"
#include "platform/VisionSettings.h"
#include "platform/linux/PlatformOptions.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "SqlitePropertyStore";
constexpr const char* kMachineFile = "/var/lib/productionrules/properties.db";
/** For the dispatch thread, which must go on. */
constexpr int kRetryLimitMs = 100;

std::string runningBootId() {
  const std::string line = readTextFile("/proc/sys/kernel/random/boot_id").value_or("");
  return line.substr(0, line.find('\n'));
}

}  // namespace

SqlitePropertyStore::SqlitePropertyStore(const std::string& path, const std::string& bootId)
    : mPath(path), mBootId(bootId.empty() ? runningBootId() : bootId) {
  const MutexLock lock(mMutex);
  open(PropertyFile::kBusyLimitMs);
}

SqlitePropertyStore::FileState SqlitePropertyStore::fileState() const {
  FileState state{};
  auto* value = state.data();
  for (const std::string& path : {mPath, mPath + "-wal"}) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
      value[0] = static_cast<std::int64_t>(status.st_ino);
      value[1] = status.st_ctim.tv_sec;
      value[2] = status.st_ctim.tv_nsec;
    }
    value += 3;
  }
  return state;
}

void SqlitePropertyStore::open(int busyLimitMs) const {
  try {
    mFile.emplace(mPath, busyLimitMs, mBootId);
    mOpened = fileNumber();
    if (!std::exchange(mSaid, "").empty()) {
      PRB_LOGI(kTag, "the property file %s can be used again", mPath.c_str());
    }
  } catch (const std::runtime_error& fault) {
    giveUp("cannot be opened", fault);
  }
}

bool SqlitePropertyStore::isUsable() const {
  if (!mFile && fileState() != mFailed) {
    open(0);
  }
  return mFile.has_value();
}

void SqlitePropertyStore::refresh() {
  const MutexLock lock(mMutex);
  if (mFile && fileNumber() != mOpened) {
    mFile.reset();
    PRB_LOGW(kTag, "the property file %s was removed or replaced and is opened anew", mPath.c_str());
  }
  if (!mFile) {
    open(kRetryLimitMs);
  }
}

std::optional<std::string> SqlitePropertyStore::get(const std::string& key) const {
  const MutexLock lock(mMutex);
  try {
    if (isUsable()) {
      return mFile->get(key);
    }
  } catch (const std::runtime_error& fault) {
    giveUp("cannot be read", fault);
  }
  return std::nullopt;
}

bool SqlitePropertyStore::set(const std::string& key, const std::string& value) {
  const MutexLock lock(mMutex);
  return write([&](PropertyFile& file) { file.set(key, value); });
}

bool SqlitePropertyStore::unset(const std::string& key) {
  const MutexLock lock(mMutex);
  return write([&](PropertyFile& file) { file.unset(key); });
}

template <typename Write>
bool SqlitePropertyStore::write(Write write) {
  try {
    if (isUsable()) {
      write(*mFile);
      mSaid.clear();
      return true;
    }
  } catch (const std::runtime_error& fault) {
    // What cannot be written may still be read.
    say("cannot be written", fault);
  }
  return false;
}

void SqlitePropertyStore::forEach(
    const std::function<void(const std::string& key, const std::string& value)>& visit) const {
  PropertyFile::Rows all;
  {
    const MutexLock lock(mMutex);
    try {
      if (isUsable()) {
        mFile->appendAll(all);
      }
    } catch (const std::runtime_error& fault) {
      giveUp("cannot be read", fault);
    }
  }
  for (const auto& [key, value] : all) {
    visit(key, value);
  }
}

void SqlitePropertyStore::giveUp(const char* what, const std::runtime_error& fault) const {
  mFile.reset();
  mFailed = fileState();
  say(what, fault);
}

void SqlitePropertyStore::say(const char* what, const std::runtime_error& fault) const {
  const std::string text = std::string(what) + ": " + fault.what();
  if (text != mSaid) {
    mSaid = text;
    PRB_LOGE(kTag, "the property file %s %s", mPath.c_str(), text.c_str());
  }
}

std::string SqlitePropertyStore::defaultPath() {
  const std::filesystem::path machineFile(kMachineFile);
  if (access(kMachineFile, W_OK) == 0 || access(machineFile.parent_path().c_str(), W_OK) == 0 ||
      geteuid() == 0) {
    return kMachineFile;
  }
  for (const auto& [variable, below] :
       {std::pair("XDG_STATE_HOME", ""), std::pair("HOME", "/.local/state")}) {
    if (const char* const folder = std::getenv(variable); folder != nullptr && *folder == '/') {
      return std::string(folder) + below + "/productionrules/properties.db";
    }
  }
  return kMachineFile;
}

const PropertiesBackend::Maker kMakeSqliteProperties =
    [](const PlatformOptions& options) -> std::shared_ptr<PropertyStore> {
  return std::make_shared<SqlitePropertyStore>(options.properties.empty() ? SqlitePropertyStore::defaultPath()
                                                                          : options.properties);
};

}  // namespace fyn::productionrules
