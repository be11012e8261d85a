#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "layouts/cycle/BaseLayout.h"
#include "tests/layouts/PictureFaults.h"

namespace fyn::productionrules::testing {

/** Follows on which stream everybody is shown, for as long as the person is in view. Head ids must be person
 * ids, because group frames name heads. */
class StreamWatch {
 public:
  /** Persons who are in two streams beside stream 0, or who have changed stream while in view. */
  Faults look(const BaseLayout& engine);

  /** How many persons in view are shown by a stream. */
  std::size_t count() const { return mStreamOf.size(); }

 private:
  std::map<std::int64_t, int> mStreamOf;
};

}  // namespace fyn::productionrules::testing
