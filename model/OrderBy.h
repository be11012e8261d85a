#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace fyn::productionrules {

/**
 * Sorts by a test "goes before" that need not be a strict weak ordering, for which std::sort is undefined:
 * some rules answer false where they cannot tell. Elements that neither test puts first keep their order.
 */
template <typename Element, typename GoesBefore>
void orderBy(std::vector<Element>& elements, GoesBefore goesBefore) {
  constexpr std::size_t kShort = 16;
  if (elements.size() > kShort) {
    // A merge sort: every answer of the test is safe. It allocates, so not for the usual short lists.
    std::stable_sort(elements.begin(), elements.end(), goesBefore);
    return;
  }
  for (std::size_t next = 1; next < elements.size(); ++next) {
    for (std::size_t place = next; place > 0 && goesBefore(elements[place], elements[place - 1]); --place) {
      std::swap(elements[place], elements[place - 1]);
    }
  }
}

}  // namespace fyn::productionrules
