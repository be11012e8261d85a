#pragma once

#include <memory>
#include <string>

#include "platform/Mutex.h"
#include "platform/PropertyStore.h"

struct sqlite3;
struct sqlite3_stmt;

namespace fyn::productionrules {

/**
 * Properties in a file that all processes of the machine share. A key that begins with "persist." stays; the
 * others go when the first process opens the file after a restart of the machine.
 *
 * A file that cannot be opened, read or written is said once in the log; then nothing is set and `set` fails.
 */
class SqlitePropertyStore final : public PropertyStore {
 public:
  /** Opens or makes `path` and its folder. `bootId` names the run of the machine, empty for the one that
   * runs. */
  explicit SqlitePropertyStore(const std::string& path, const std::string& bootId = {});
  ~SqlitePropertyStore() override;

  std::optional<std::string> get(const std::string& key) const override;
  bool set(const std::string& key, const std::string& value) override;
  void forEach(
      const std::function<void(const std::string& key, const std::string& value)>& visit) const override;

  /** Whether the file could be opened. */
  bool isOpen() const { return mDatabase != nullptr; }

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

  bool prepareFile(const std::string& bootId) PR_REQUIRES(mMutex);
  bool startAfterBoot(const std::string& bootId);
  bool execute(const char* sql);
  Statement prepare(const char* sql) const;
  void sayOnce(const char* what) const PR_REQUIRES(mMutex);

  const std::string mPath;
  mutable Mutex mMutex;
  mutable bool mSaid PR_GUARDED_BY(mMutex) = false;
  std::unique_ptr<sqlite3, CloseDatabase> mDatabase;
  Statement mGet PR_GUARDED_BY(mMutex);
  Statement mSet PR_GUARDED_BY(mMutex);
  Statement mAll PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
