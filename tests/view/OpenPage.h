#pragma once

#include <httplib.h>

#include <atomic>
#include <string>
#include <thread>

#include "platform/Mutex.h"
#include "tests/linux/Processes.h"

namespace fyn::productionrules::testing {

/** One page that reads the live lines, on a thread of its own, until the server ends them. */
class OpenPage {
 public:
  OpenPage(int port, const httplib::Headers& headers = {}) : mClient("127.0.0.1", port) {
    mClient.set_read_timeout(60);
    mThread = std::thread([this, headers] {
      const httplib::Result result = mClient.Get(
          "/api/events", headers,
          [this](const httplib::Response& response) {
            mStatus = response.status;
            return true;
          },
          [this](const char* data, std::size_t length) {
            const MutexLock lock(mMutex);
            mText.append(data, length);
            return true;
          });
      mEnded = true;
    });
  }
  ~OpenPage() { mThread.join(); }

  bool has(const std::string& text) const {
    return eventually([&] {
      const MutexLock lock(mMutex);
      return mText.find(text) != std::string::npos;
    });
  }
  bool isAnswered() const {
    return eventually([this] { return mStatus != 0; });
  }
  std::string text() const {
    const MutexLock lock(mMutex);
    return mText;
  }
  int status() const { return mStatus; }
  bool hasEnded() const { return mEnded; }

 private:
  httplib::Client mClient;
  mutable Mutex mMutex;
  std::string mText PR_GUARDED_BY(mMutex);
  std::atomic<int> mStatus{0};
  std::atomic<bool> mEnded{false};
  std::thread mThread;
};

}  // namespace fyn::productionrules::testing
