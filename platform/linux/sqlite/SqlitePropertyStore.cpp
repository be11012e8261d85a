#include "platform/linux/sqlite/SqlitePropertyStore.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
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
/** For the dispatch thread, which must go on. */
constexpr int kRetryLimitMs = 100;

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

/** Raises std::runtime_error with the fault when `result` is one. */
void check(sqlite3* database, int result) {
  if (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE) {
    return;
  }
  std::string fault = sqlite3_errmsg(database);
  const int kind = result & 0xff;
  const int cause = sqlite3_system_errno(database);
  if (cause != 0 && (kind == SQLITE_CANTOPEN || kind == SQLITE_IOERR)) {
    fault += std::string(" (") + std::strerror(cause) + ')';
  }
  throw std::runtime_error(fault);
}

void execute(sqlite3* database, const char* sql) {
  check(database, sqlite3_exec(database, sql, nullptr, nullptr, nullptr));
}

/** Readers and writers that do not wait for one another. Of two that change a new file together SQLite turns
 * one away at once, without its own waiting, as both hold what the other needs. */
void useWriteAheadLog(sqlite3* database, int busyLimitMs) {
  constexpr int kPauseMs = 5;
  sqlite3_busy_timeout(database, 0);
  int result = SQLITE_BUSY;
  for (int waitedMs = 0; result == SQLITE_BUSY && waitedMs <= busyLimitMs; waitedMs += kPauseMs) {
    result = sqlite3_exec(database, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    if (result == SQLITE_BUSY) {
      sqlite3_sleep(kPauseMs);
    }
  }
  check(database, result);
  sqlite3_busy_timeout(database, busyLimitMs);
}

/** Whether the statement has another row. */
bool step(sqlite3_stmt* statement) {
  const int result = sqlite3_step(statement);
  check(sqlite3_db_handle(statement), result);
  return result == SQLITE_ROW;
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

SqlitePropertyStore::SqlitePropertyStore(const std::string& path, const std::string& bootId)
    : mPath(path), mBootId(bootId.empty() ? runningBootId() : bootId) {
  const MutexLock lock(mMutex);
  open(kBusyLimitMs);
}

SqlitePropertyStore::~SqlitePropertyStore() = default;

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
    Database made = openFile(mPath, busyLimitMs, mBootId);
    mDatabase = std::move(made);
    if (!std::exchange(mSaid, "").empty()) {
      PRB_LOGI(kTag, "the property file %s can be used again", mPath.c_str());
    }
  } catch (const std::runtime_error& fault) {
    giveUp("cannot be opened", fault);
  }
}

SqlitePropertyStore::Database SqlitePropertyStore::openFile(const std::string& path, int busyLimitMs,
                                                            const std::string& bootId) {
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
  Database database;
  sqlite3* opened = nullptr;
  // SQLite tells it as the cause of a fault, whoever left it.
  errno = 0;
  const int result = sqlite3_open_v2(
      path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
  database.handle.reset(opened);
  check(opened, result);
  useWriteAheadLog(opened, busyLimitMs);
  execute(opened, "PRAGMA synchronous=NORMAL");
  startAfterBoot(opened, bootId);
  database.get = prepare(opened, "SELECT value FROM property WHERE key = ?1");
  database.set = prepare(opened,
                         "INSERT INTO property(key, value) VALUES(?1, ?2) "
                         "ON CONFLICT(key) DO UPDATE SET value = ?2");
  database.unset = prepare(opened, "DELETE FROM property WHERE key = ?1");
  database.all = prepare(opened, "SELECT key, value FROM property ORDER BY key");
  sqlite3_busy_timeout(opened, kBusyLimitMs);
  return database;
}

void SqlitePropertyStore::startAfterBoot(sqlite3* database, const std::string& bootId) {
  // One transaction that writes from its start, so that of two processes that start together one waits.
  execute(database, "BEGIN IMMEDIATE");
  execute(database,
          "CREATE TABLE IF NOT EXISTS property(key TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID");
  execute(database, "CREATE TABLE IF NOT EXISTS boot(id TEXT NOT NULL)");
  const Statement known = prepare(database, "SELECT 1 FROM boot WHERE id = ?1");
  bindText(known.get(), 1, bootId);
  if (!step(known.get())) {
    execute(database, "DELETE FROM property WHERE substr(key, 1, 8) <> 'persist.'");
    execute(database, "DELETE FROM boot");
    const Statement remember = prepare(database, "INSERT INTO boot(id) VALUES(?1)");
    bindText(remember.get(), 1, bootId);
    step(remember.get());
  }
  sqlite3_reset(known.get());
  execute(database, "COMMIT");
}

SqlitePropertyStore::Statement SqlitePropertyStore::prepare(sqlite3* database, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  check(database, sqlite3_prepare_v2(database, sql, -1, &statement, nullptr));
  return Statement(statement);
}

bool SqlitePropertyStore::isUsable() const {
  if (!mDatabase && fileState() != mFailed) {
    open(0);
  }
  return mDatabase.has_value();
}

void SqlitePropertyStore::refresh() {
  const MutexLock lock(mMutex);
  if (!mDatabase) {
    open(kRetryLimitMs);
  }
}

std::optional<std::string> SqlitePropertyStore::get(const std::string& key) const {
  const MutexLock lock(mMutex);
  try {
    if (isUsable()) {
      const ResetLater reset{mDatabase->get.get()};
      bindText(reset.statement, 1, key);
      if (step(reset.statement)) {
        return columnText(reset.statement, 0);
      }
    }
  } catch (const std::runtime_error& fault) {
    giveUp("cannot be read", fault);
  }
  return std::nullopt;
}

bool SqlitePropertyStore::set(const std::string& key, const std::string& value) {
  const MutexLock lock(mMutex);
  return isUsable() && write(mDatabase->set.get(), {key, value});
}

bool SqlitePropertyStore::unset(const std::string& key) {
  const MutexLock lock(mMutex);
  return isUsable() && write(mDatabase->unset.get(), {key});
}

bool SqlitePropertyStore::write(sqlite3_stmt* statement, std::initializer_list<std::string> values) const {
  const ResetLater reset{statement};
  int index = 0;
  for (const std::string& value : values) {
    bindText(statement, ++index, value);
  }
  try {
    step(statement);
    mSaid.clear();
    return true;
  } catch (const std::runtime_error& fault) {
    // What cannot be written may still be read.
    say("cannot be written", fault);
    return false;
  }
}

void SqlitePropertyStore::forEach(
    const std::function<void(const std::string& key, const std::string& value)>& visit) const {
  std::vector<std::pair<std::string, std::string>> all;
  {
    const MutexLock lock(mMutex);
    try {
      if (isUsable()) {
        const ResetLater reset{mDatabase->all.get()};
        while (step(reset.statement)) {
          all.emplace_back(columnText(reset.statement, 0), columnText(reset.statement, 1));
        }
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
  mDatabase.reset();
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
