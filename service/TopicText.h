#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fyn::productionrules {

/** The topic with "/remote" appended: the same topic as it arrives from another device. */
std::string appendRemoteToTopic(std::string_view topic);

/** The components of a topic after the first: "/cameraParameters/head/3" gives "head" and "3", "/a/b/" gives
 * "b" and "". */
std::vector<std::string> getSubTopics(const std::string& topic);

}  // namespace fyn::productionrules
