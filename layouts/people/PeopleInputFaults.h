#pragma once

#include <cstdint>
#include <set>
#include <tuple>
#include <vector>

#include "layouts/people/HeadsInView.h"
#include "model/MLData.h"

namespace fyn::productionrules {

/**
 * Says in the log whom of a vision result no picture can be made of, and why: when that begins, and not again
 * with every result until it has ended.
 */
class PeopleInputFaults {
 public:
  /** For an engine that uses the heads of one camera. `tag` is that of the log lines. */
  void report(const MLData& data, const HeadsInView& heads, const char* tag);

  /** For an engine that uses the heads of all cameras of the list. */
  void reportAllCameras(const MLData& data, const char* tag);

 private:
  enum class Kind { NotSeen, BadBox, RepeatedId, NoImage };
  /** Kind, person (-1 for all) and camera. */
  using Fault = std::tuple<Kind, std::int32_t, std::uint32_t>;
  using Faults = std::set<Fault>;

  void addRepeatedIds(const MLData& data, Faults& faults);
  static void log(const Fault& fault, const char* tag);
  void replaceBy(Faults faults, const char* tag);

  Faults mFaults;
  /** Kept from one result to the next only for its memory. */
  std::vector<std::int32_t> mIds;
};

}  // namespace fyn::productionrules
