#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace velmora::tsql {
namespace {

namespace fs = std::filesystem;

/// The front end's stages, each of which may include those before it; the files beside them
/// come last.
constexpr auto kStages =
    std::to_array<std::string_view>({"syntax/", "engine/", "values/", "binding/", "output/"});

std::ptrdiff_t stageOf(std::string_view file) {
  return std::ranges::find_if(kStages, [&](auto stage) { return file.starts_with(stage); }) -
         kStages.begin();
}

/// Which files include which, without their endings: a header and its source are one.
using Includes = std::map<std::string, std::set<std::string>>;

Includes readIncludes() {
  constexpr std::string_view mark = "#include \"platform/tsql/";
  const fs::path room = VELMORA_SOURCE_DIR "/src/platform/tsql";
  Includes includes;
  for (const auto& entry : fs::recursive_directory_iterator(room)) {
    if (!entry.is_regular_file()) continue;
    const std::string file = entry.path().lexically_relative(room).replace_extension().string();
    std::ifstream lines(entry.path());
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with(mark)) continue;
      const std::string other = line.substr(mark.size(), line.find(".h\"") - mark.size());
      if (other != file) includes[file].insert(other);
    }
  }
  return includes;
}

/// Finds a way from a file back to itself.
class CircleSearch {
 public:
  explicit CircleSearch(const Includes& includes) : includes_(includes) {}

  /// The files of the circle that `file` leads to; none when there is none.
  std::vector<std::string> from(const std::string& file) {
    const auto open = std::ranges::find(way_, file);
    if (open != way_.end()) return {open, way_.end()};
    if (!seen_.insert(file).second) return {};
    way_.push_back(file);
    if (const auto found = includes_.find(file); found != includes_.end()) {
      for (const std::string& next : found->second) {
        if (auto circle = from(next); !circle.empty()) return circle;
      }
    }
    way_.pop_back();
    return {};
  }

 private:
  const Includes& includes_;
  std::set<std::string> seen_;
  std::vector<std::string> way_;
};

TEST(Layers, IncludesFollowTheWayOfABatchWithoutCircles) {
  const Includes includes = readIncludes();
  ASSERT_TRUE(includes.contains("translate"));
  CircleSearch search(includes);
  for (const auto& [file, others] : includes) {
    for (const std::string& other : others) {
      EXPECT_LE(stageOf(other), stageOf(file)) << file << " includes " << other;
    }
    EXPECT_THAT(search.from(file), testing::IsEmpty());
  }
}

}  // namespace
}  // namespace velmora::tsql
