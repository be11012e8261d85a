#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "platform/ErasableProperties.h"
#include "platform/Mutex.h"
#include "platform/PropertyStore.h"
#include "platform/linux/sqlite/PropertyFile.h"

namespace fyn::productionrules {

/**
 * Properties in a file that all processes of the machine share. A key that begins with "persist." stays; the
 * others go when the first process opens the file after a restart of the machine.
 *
 * While the file cannot be used (locked, damaged, on a full disk), which is said once in the log with the
 * fault, nothing is set and `set` fails. `refresh` tries it again, and so does any use after the file has
 * changed. `refresh` also goes over to a file that has taken the place of the opened one.
 */
class SqlitePropertyStore final : public PropertyStore, public ErasableProperties {
 public:
  /** Opens or makes `path` and its folder. `bootId` names the run of the machine, empty for the one that
   * runs. */
  explicit SqlitePropertyStore(const std::string& path, const std::string& bootId = {});

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
  /** What tells one content of the file from another: number and time of change of the file and of its log.
   */
  using FileState = std::array<std::int64_t, 6>;

  FileState fileState() const;
  std::int64_t fileNumber() const { return fileState().front(); }
  void open(int busyLimitMs) const PR_REQUIRES(mMutex);
  bool isUsable() const PR_REQUIRES(mMutex);
  template <typename Write>
  bool write(Write write) PR_REQUIRES(mMutex);
  void giveUp(const char* what, const std::runtime_error& fault) const PR_REQUIRES(mMutex);
  void say(const char* what, const std::runtime_error& fault) const PR_REQUIRES(mMutex);

  const std::string mPath;
  const std::string mBootId;
  mutable Mutex mMutex;
  /** Nothing while the file cannot be used; then its state at that time. */
  mutable std::optional<PropertyFile> mFile PR_GUARDED_BY(mMutex);
  mutable FileState mFailed PR_GUARDED_BY(mMutex) = {};
  mutable std::int64_t mOpened PR_GUARDED_BY(mMutex) = 0;
  /** What was said last; "" while all is well. */
  mutable std::string mSaid PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
