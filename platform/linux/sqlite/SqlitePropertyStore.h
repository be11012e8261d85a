#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "platform/ErasableProperties.h"
#include "platform/Mutex.h"
#include "platform/PropertyStore.h"

struct sqlite3;
struct sqlite3_stmt;

namespace fyn::productionrules {

/**
 * Properties in a file that all processes of the machine share. A key that begins with "persist." stays; the
 * others go when the first process opens the file after a restart of the machine.
 *
 * While the file cannot be used (locked, damaged, on a full disk), which is said once in the log with the
 * fault, nothing is set and `set` fails. `refresh` tries it again, and so does any use after the file has
 * changed.
 */
class SqlitePropertyStore final : public PropertyStore, public ErasableProperties {
 public:
  /** Opens or makes `path` and its folder. `bootId` names the run of the machine, empty for the one that
   * runs. */
  explicit SqlitePropertyStore(const std::string& path, const std::string& bootId = {});
  ~SqlitePropertyStore() override;

  std::optional<std::string> get(const std::string& key) const override;
  bool set(const std::string& key, const std::string& value) override;
  bool unset(const std::string& key) override;
  void forEach(
      const std::function<void(const std::string& key, const std::string& value)>& visit) const override;
  void refresh() override;

  /**
   * The file that is used when none is given: /var/lib/productionrules/properties.db where this process may
   * write it, else one below the user's own state folder ($XDG_STATE_HOME or ~/.local/state).
   */
  static std::string defaultPath();

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };
  struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

  /** What tells one content of the file from another: number and time of change of the file and of its log.
   */
  using FileState = std::array<std::int64_t, 6>;

  /** An open file and what is asked of it. The database goes last. */
  struct Database {
    std::unique_ptr<sqlite3, CloseDatabase> handle;
    Statement get;
    Statement set;
    Statement unset;
    Statement all;
  };

  FileState fileState() const;
  void open(int busyLimitMs) const PR_REQUIRES(mMutex);
  bool isUsable() const PR_REQUIRES(mMutex);
  bool write(sqlite3_stmt* statement, std::initializer_list<std::string> values) const PR_REQUIRES(mMutex);
  void giveUp(const char* what, const std::runtime_error& fault) const PR_REQUIRES(mMutex);
  void say(const char* what, const std::runtime_error& fault) const PR_REQUIRES(mMutex);

  // These raise std::runtime_error with what SQLite says.
  static Database openFile(const std::string& path, int busyLimitMs, const std::string& bootId);
  static void startAfterBoot(sqlite3* database, const std::string& bootId);
  static Statement prepare(sqlite3* database, const char* sql);

  const std::string mPath;
  const std::string mBootId;
  mutable Mutex mMutex;
  /** Nothing while the file cannot be used; then its state at that time. */
  mutable std::optional<Database> mDatabase PR_GUARDED_BY(mMutex);
  mutable FileState mFailed PR_GUARDED_BY(mMutex) = {};
  /** What was said last; "" while all is well. */
  mutable std::string mSaid PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
