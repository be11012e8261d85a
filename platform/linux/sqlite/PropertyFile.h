#pragma once

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fyn::productionrules {

/** An open file of properties, which other processes may use at the same time. Everything raises
 * std::runtime_error with what SQLite says of a fault. Used by one thread at a time. */
class PropertyFile {
 public:
  /** Keys and values. */
  using Rows = std::vector<std::pair<std::string, std::string>>;

  /** How long a use waits for other processes, in milliseconds. */
  static constexpr int kBusyLimitMs = 1000;

  /** Opens or makes `path` and its folder, which may wait up to `busyLimitMs` for other processes, and
   * forgets what is left of another run of the machine than `bootId`. */
  PropertyFile(const std::string& path, int busyLimitMs, const std::string& bootId);

  std::optional<std::string> get(const std::string& key);
  void set(const std::string& key, const std::string& value);
  void unset(const std::string& key);
  /** By key, and as far as they can be read. */
  void appendAll(Rows& rows);

 private:
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;
  class Query;

  void useWriteAheadLog(int busyLimitMs);
  void startAfterBoot(const std::string& bootId);
  void execute(const char* sql);
  Statement prepare(const char* sql);

  /** First, so that it goes last. */
  std::unique_ptr<sqlite3, Close> mDatabase;
  Statement mGet;
  Statement mSet;
  Statement mUnset;
  Statement mAll;
};

}  // namespace fyn::productionrules
