#include "platform/linux/sqlite/PropertyFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <stdexcept>
#include <system_error>

namespace fyn::productionrules {

namespace {

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

}  // namespace

/** One use of a statement. Its end ends the read or write that the statement holds open, so that other
 * processes go on. */
class PropertyFile::Query {
 public:
  Query(const Statement& statement, std::initializer_list<std::string> values) : mStatement(statement.get()) {
    int index = 0;
    for (const std::string& value : values) {
      sqlite3_bind_text(mStatement, ++index, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
    }
  }
  ~Query() { sqlite3_reset(mStatement); }

  /** Goes to the next row; false when there is none. */
  bool next() {
    const int result = sqlite3_step(mStatement);
    check(sqlite3_db_handle(mStatement), result);
    return result == SQLITE_ROW;
  }

  std::string text(int column) const {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(mStatement, column));
    return text == nullptr
               ? std::string()
               : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(mStatement, column)));
  }

 private:
  sqlite3_stmt* const mStatement;
};

PropertyFile::PropertyFile(const std::string& path, int busyLimitMs, const std::string& bootId) {
  const std::filesystem::path folder = std::filesystem::absolute(path).parent_path();
  std::error_code noFolder;
  std::filesystem::create_directories(folder, noFolder);
  if (noFolder) {
    throw std::runtime_error("its folder cannot be made: " + noFolder.message());
  }
  sqlite3* opened = nullptr;
  // SQLite tells it as the cause of a fault, whoever left it.
  errno = 0;
  const int result = sqlite3_open_v2(
      path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
  mDatabase.reset(opened);
  // A file that it cannot make SQLite tries to read, and tells of that alone.
  if (result == SQLITE_CANTOPEN && access(folder.c_str(), W_OK) != 0) {
    throw std::runtime_error(std::string("its folder cannot be written: ") + std::strerror(errno));
  }
  check(opened, result);
  useWriteAheadLog(busyLimitMs);
  execute("PRAGMA synchronous=NORMAL");
  startAfterBoot(bootId);
  mGet = prepare("SELECT value FROM property WHERE key = ?1");
  mSet = prepare("INSERT INTO property(key, value) VALUES(?1, ?2) ON CONFLICT(key) DO UPDATE SET value = ?2");
  mUnset = prepare("DELETE FROM property WHERE key = ?1");
  mAll = prepare("SELECT key, value FROM property ORDER BY key");
  sqlite3_busy_timeout(opened, kBusyLimitMs);
}

// Readers and writers that do not wait for one another. Of two that change a new file together SQLite turns
// one away at once, without its own waiting, as both hold what the other needs.
void PropertyFile::useWriteAheadLog(int busyLimitMs) {
  constexpr int kPauseMs = 5;
  sqlite3* const database = mDatabase.get();
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

void PropertyFile::startAfterBoot(const std::string& bootId) {
  // One transaction that writes from its start, so that of two processes that start together one waits.
  execute("BEGIN IMMEDIATE");
  execute("CREATE TABLE IF NOT EXISTS property(key TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID");
  execute("CREATE TABLE IF NOT EXISTS boot(id TEXT NOT NULL)");
  if (!Query(prepare("SELECT 1 FROM boot WHERE id = ?1"), {bootId}).next()) {
    execute("DELETE FROM property WHERE substr(key, 1, 8) <> 'persist.'");
    execute("DELETE FROM boot");
    Query(prepare("INSERT INTO boot(id) VALUES(?1)"), {bootId}).next();
  }
  execute("COMMIT");
}

void PropertyFile::execute(const char* sql) {
  check(mDatabase.get(), sqlite3_exec(mDatabase.get(), sql, nullptr, nullptr, nullptr));
}

PropertyFile::Statement PropertyFile::prepare(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  check(mDatabase.get(), sqlite3_prepare_v2(mDatabase.get(), sql, -1, &statement, nullptr));
  return Statement(statement);
}

std::optional<std::string> PropertyFile::get(const std::string& key) {
  Query query(mGet, {key});
  return query.next() ? std::optional(query.text(0)) : std::nullopt;
}

void PropertyFile::set(const std::string& key, const std::string& value) {
  Query(mSet, {key, value}).next();
}

void PropertyFile::unset(const std::string& key) {
  Query(mUnset, {key}).next();
}

void PropertyFile::appendAll(Rows& rows) {
  for (Query query(mAll, {}); query.next();) {
    rows.emplace_back(query.text(0), query.text(1));
  }
}

}  // namespace fyn::productionrules
