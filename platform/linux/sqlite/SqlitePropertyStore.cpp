#include "platform/linux/sqlite/SqlitePropertyStore.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/Backends.h"
#include "platform/TextFile.h"
#include "platform/VisionSettings.h"
#include "platform/linux/PlatformOptions.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "SqlitePropertyStore";
constexpr const char* kMachineFile = "/var/lib/productionrules/properties.db";
constexpr int kBusyLimitMs = 1000;

std::string runningBootId() {
  std::string id = readTextFile("/proc/sys/kernel/random/boot_id").value_or("");
  while (!id.empty() && id.back() == '\n') {
    id.pop_back();
  }
  return id;
}

std::string columnText(sqlite3_stmt* statement, int column) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return text == nullptr
             ? std::string()
             : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
}

void bindText(sqlite3_stmt* statement, int index, const std::string& text) {
  sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

/** Ends the read or write that a statement holds open, so that other processes go on. */
struct ResetLater {
  sqlite3_stmt* statement;
  ~ResetLater() { sqlite3_reset(statement); }
};

}  // namespace

void SqlitePropertyStore::CloseDatabase::operator()(sqlite3* database) const {
  sqlite3_close(database);
}
void SqlitePropertyStore::FinalizeStatement::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

SqlitePropertyStore::SqlitePropertyStore(const std::string& path, const std::string& bootId) : mPath(path) {
  const MutexLock lock(mMutex);
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(
      path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
  mDatabase.reset(opened);
  if (result != SQLITE_OK || !prepareFile(bootId.empty() ? runningBootId() : bootId)) {
    sayOnce("cannot be opened");
    mGet.reset();
    mSet.reset();
    mAll.reset();
    mDatabase.reset();
  }
}

SqlitePropertyStore::~SqlitePropertyStore() = default;

bool SqlitePropertyStore::prepareFile(const std::string& bootId) {
  sqlite3_busy_timeout(mDatabase.get(), kBusyLimitMs);
  if (!execute("PRAGMA journal_mode=WAL") || !execute("PRAGMA synchronous=NORMAL") ||
      !startAfterBoot(bootId)) {
    return false;
  }
  mGet = prepare("SELECT value FROM property WHERE key = ?1");
  mSet = prepare("INSERT INTO property(key, value) VALUES(?1, ?2) ON CONFLICT(key) DO UPDATE SET value = ?2");
  mAll = prepare("SELECT key, value FROM property ORDER BY key");
  return mGet && mSet && mAll;
}

bool SqlitePropertyStore::startAfterBoot(const std::string& bootId) {
  // One transaction that writes from its start, so that of two processes that start together one waits.
  bool done =
      execute("BEGIN IMMEDIATE") &&
      execute(
          "CREATE TABLE IF NOT EXISTS property(key TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID") &&
      execute("CREATE TABLE IF NOT EXISTS boot(id TEXT NOT NULL)");
  if (!done) {
    return false;
  }
  {
    const Statement known = prepare("SELECT 1 FROM boot WHERE id = ?1");
    bindText(known.get(), 1, bootId);
    if (sqlite3_step(known.get()) != SQLITE_ROW) {
      const Statement remember = prepare("INSERT INTO boot(id) VALUES(?1)");
      done = execute("DELETE FROM property WHERE substr(key, 1, 8) <> 'persist.'") &&
             execute("DELETE FROM boot");
      bindText(remember.get(), 1, bootId);
      done = done && sqlite3_step(remember.get()) == SQLITE_DONE;
    }
  }
  return done && execute("COMMIT");
}

bool SqlitePropertyStore::execute(const char* sql) {
  return sqlite3_exec(mDatabase.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

SqlitePropertyStore::Statement SqlitePropertyStore::prepare(const char* sql) const {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(mDatabase.get(), sql, -1, &statement, nullptr);
  return Statement(statement);
}

std::optional<std::string> SqlitePropertyStore::get(const std::string& key) const {
  const MutexLock lock(mMutex);
  if (!mDatabase) {
    return std::nullopt;
  }
  const ResetLater reset{mGet.get()};
  bindText(mGet.get(), 1, key);
  const int result = sqlite3_step(mGet.get());
  if (result == SQLITE_ROW) {
    return columnText(mGet.get(), 0);
  }
  if (result != SQLITE_DONE) {
    sayOnce("cannot be read");
  }
  return std::nullopt;
}

bool SqlitePropertyStore::set(const std::string& key, const std::string& value) {
  const MutexLock lock(mMutex);
  if (!mDatabase) {
    return false;
  }
  const ResetLater reset{mSet.get()};
  bindText(mSet.get(), 1, key);
  bindText(mSet.get(), 2, value);
  if (sqlite3_step(mSet.get()) != SQLITE_DONE) {
    sayOnce("cannot be written");
    return false;
  }
  return true;
}

void SqlitePropertyStore::forEach(
    const std::function<void(const std::string& key, const std::string& value)>& visit) const {
  std::vector<std::pair<std::string, std::string>> all;
  {
    const MutexLock lock(mMutex);
    if (!mDatabase) {
      return;
    }
    const ResetLater reset{mAll.get()};
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(mAll.get())) == SQLITE_ROW) {
      all.emplace_back(columnText(mAll.get(), 0), columnText(mAll.get(), 1));
    }
    if (result != SQLITE_DONE) {
      sayOnce("cannot be read");
    }
  }
  for (const auto& [key, value] : all) {
    visit(key, value);
  }
}

void SqlitePropertyStore::sayOnce(const char* what) const {
  if (std::exchange(mSaid, true)) {
    return;
  }
  PRB_LOGE(kTag, "the property file %s %s: %s", mPath.c_str(), what,
           mDatabase ? sqlite3_errmsg(mDatabase.get()) : "out of memory");
}

std::string SqlitePropertyStore::defaultPath() {
  const std::filesystem::path machineFile(kMachineFile);
  if (access(kMachineFile, W_OK) == 0 || access(machineFile.parent_path().c_str(), W_OK) == 0 ||
      geteuid() == 0) {
    return kMachineFile;
  }
  if (const char* const state = std::getenv("XDG_STATE_HOME"); state != nullptr && *state == '/') {
    return std::string(state) + "/productionrules/properties.db";
  }
  if (const char* const home = std::getenv("HOME"); home != nullptr && *home == '/') {
    return std::string(home) + "/.local/state/productionrules/properties.db";
  }
  return kMachineFile;
}

const PropertiesBackend::Maker kMakeSqliteProperties =
    [](const PlatformOptions& options) -> std::shared_ptr<PropertyStore> {
  return std::make_shared<SqlitePropertyStore>(options.properties.empty() ? SqlitePropertyStore::defaultPath()
                                                                          : options.properties);
};

}  // namespace fyn::productionrules
