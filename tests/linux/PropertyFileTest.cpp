#if PR_HAVE_SQLITE
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdlib>
#include <functional>
#include <memory>

#include "platform/linux/sqlite/SqlitePropertyStore.h"
#include "tests/linux/Processes.h"
#include "tests/testing/CapturedLog.h"

namespace fyn::productionrules::testing {
namespace {

using Lines = std::vector<std::string>;

Lines contentOf(const SqlitePropertyStore& store) {
  Lines lines;
  store.forEach(
      [&](const std::string& key, const std::string& value) { lines.push_back(key + "=" + value); });
  return lines;
}

TEST(PropertyFile, KeepsOnlyPersistentPropertiesOverARestartOfTheMachine) {
  ScratchFolder folder;
  const std::string path = folder.file("state/below/properties.db");
  const Lines all = {"persist.tvpr.logs=4", "persistent=no", "vendor.a=x=y \xC3\xA4"};
  {
    SqlitePropertyStore store(path, "first boot");
    EXPECT_EQ(store.get("vendor.a"), std::nullopt);
    EXPECT_TRUE(store.set("vendor.a", "old"));
    EXPECT_TRUE(store.set("vendor.a", "x=y \xC3\xA4"));
    EXPECT_TRUE(store.set("persist.tvpr.logs", "4"));
    EXPECT_TRUE(store.set("persistent", "no"));
    EXPECT_EQ(contentOf(store), all);
  }
  EXPECT_EQ(contentOf(SqlitePropertyStore(path, "first boot")), all);
  EXPECT_EQ(contentOf(SqlitePropertyStore(path, "second boot")), Lines{"persist.tvpr.logs=4"});
}

TEST(PropertyFile, IsSeenAtTheNextReadByWhoeverHasItOpen) {
  ScratchFolder folder;
  SqlitePropertyStore one(folder.file("p.db"));
  SqlitePropertyStore other(folder.file("p.db"));
  for (const char* value : {"1", "", "2"}) {
    EXPECT_TRUE(one.set("k", value));
    EXPECT_EQ(other.get("k"), value);
  }
  EXPECT_TRUE(one.unset("k"));
  EXPECT_EQ(other.get("k"), std::nullopt);
}

constexpr const char* kWriterPath = "PRB_TEST_WRITER_PATH";
constexpr const char* kWriterName = "PRB_TEST_WRITER_NAME";
constexpr int kWritesPerProcess = 50;

std::string environmentOr(const char* name, const std::string& otherwise) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : otherwise;
}

// Also run by the next test, in processes of their own on one file.
TEST(PropertyFileWriter, Writes) {
  ScratchFolder folder;
  const std::string name = environmentOr(kWriterName, "alone");
  SqlitePropertyStore store(environmentOr(kWriterPath, folder.file("p.db")));
  for (int i = 0; i < kWritesPerProcess; ++i) {
    ASSERT_TRUE(store.set(name + std::to_string(i), "x"));
    ASSERT_TRUE(store.set("shared", std::to_string(i)));
  }
}

TEST(PropertyFile, IsWrittenByManyProcessesThatStartTogether) {
  ScratchFolder folder;
  std::vector<std::unique_ptr<Process>> writers;
  for (const char* name : {"a", "b", "c", "d"}) {
    writers.push_back(std::make_unique<Process>(
        std::vector<std::string>{"/proc/self/exe", "--gtest_filter=PropertyFileWriter.Writes"},
        std::map<std::string, std::string>{{kWriterPath, folder.file("p.db")}, {kWriterName, name}}));
  }
  for (const auto& writer : writers) {
    EXPECT_EQ(writer->wait(), 0) << writer->errorText();
  }
  SqlitePropertyStore store(folder.file("p.db"));
  EXPECT_EQ(contentOf(store).size(), writers.size() * kWritesPerProcess + 1);
  EXPECT_EQ(store.get("shared"), std::to_string(kWritesPerProcess - 1));
}

/** A connection of another program, which may hold the file up. */
class Other {
 public:
  explicit Other(const std::string& path) { sqlite3_open(path.c_str(), &mDatabase); }
  ~Other() { sqlite3_close(mDatabase); }
  Other(const Other&) = delete;
  Other& operator=(const Other&) = delete;

  void run(const char* sql) { EXPECT_EQ(sqlite3_exec(mDatabase, sql, nullptr, nullptr, nullptr), SQLITE_OK); }

 private:
  sqlite3* mDatabase = nullptr;
};

TEST(PropertyFile, SaysTheFaultOnceAndIsUsedWhenItIsMended) {
  const std::string notMade = "cannot be opened: unable to open database file";
  struct Row {
    const char* name;
    std::string fault;
    std::function<void(const std::string& path)> damage;
  };
  for (const auto& [name, fault, damage] : {
           Row{"no database", "cannot be opened: file is not a database",
               [](const std::string& path) { std::ofstream(path) << std::string(5000, 'x'); }},
           Row{"a folder", notMade + " (Is a directory)",
               [](const std::string& path) { std::filesystem::create_directory(path); }},
           Row{"a loop", notMade,
               [](const std::string& path) { std::filesystem::create_symlink(path, path); }},
       }) {
    const ScratchFolder folder;
    const std::string path = folder.file("p.db");
    damage(path);
    CapturedLog log;
    SqlitePropertyStore store(path);
    const auto expectNothing = [&store] {
      EXPECT_FALSE(store.set("k", "v"));
      EXPECT_EQ(store.get("k"), std::nullopt);
      EXPECT_EQ(contentOf(store), Lines{});
    };
    expectNothing();
    store.refresh();
    expectNothing();
    const std::string said = "|SqlitePropertyStore|the property file " + path + " ";
    EXPECT_EQ(log.take(), Lines{"E" + said + fault}) << name;
    std::filesystem::remove(path);
    EXPECT_TRUE(SqlitePropertyStore(path).set("k", "v"));
    EXPECT_EQ(store.get("k"), "v") << name;
    EXPECT_EQ(log.take(), Lines{"I" + said + "can be used again"});
  }
}

TEST(PropertyFile, ThatIsReplacedIsReadAtTheNextRefresh) {
  const ScratchFolder folder;
  const std::string path = folder.file("p.db");
  SqlitePropertyStore store(path);
  EXPECT_TRUE(store.set("k", "old"));
  for (const char* file : {"p.db", "p.db-wal", "p.db-shm"}) {
    std::filesystem::remove(folder.file(file));
  }
  EXPECT_TRUE(SqlitePropertyStore(path).set("k", "new"));
  CapturedLog log;
  store.refresh();
  EXPECT_EQ(store.get("k"), "new");
  EXPECT_EQ(log.take(), Lines{"W|SqlitePropertyStore|the property file " + path +
                              " was removed or replaced and is opened anew"});
}

TEST(PropertyFile, LockedAtTheStartIsTriedAgain) {
  const ScratchFolder folder;
  const std::string path = folder.file("p.db");
  EXPECT_TRUE(SqlitePropertyStore(path).set("k", "v"));
  auto other = std::make_unique<Other>(path);
  other->run("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE");
  CapturedLog log;
  SqlitePropertyStore store(path);
  EXPECT_EQ(store.get("k"), std::nullopt);
  const std::string said = "|SqlitePropertyStore|the property file " + path + " ";
  EXPECT_EQ(log.take(), Lines{"E" + said + "cannot be opened: database is locked"});
  other.reset();
  store.refresh();
  EXPECT_EQ(store.get("k"), "v");
  EXPECT_EQ(log.take(), Lines{"I" + said + "can be used again"});
}

}  // namespace
}  // namespace fyn::productionrules::testing
#endif
