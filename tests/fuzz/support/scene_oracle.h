// The cameras of a scene, found in another way than the reader's: every reference is followed, nothing is
// remembered between nodes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

// For streams that the reader takes. False when they make no sense: a node refers to an object that is not
// there.
bool find_cameras(const std::vector<std::uint8_t>& class_directory, const std::vector<std::uint8_t>& scene,
                  std::vector<std::wstring>& cameras);

} // namespace fuzz
