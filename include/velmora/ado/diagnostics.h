#pragma once

#include <functional>
#include <string_view>

namespace velmora::ado {

/// Gets what the embedded engine said, in its own words, of each statement that fails. Errors
/// themselves never hold these words: they quote statements that nobody wrote and values
/// that not everybody may see.
using EngineWords = std::function<void(std::string_view)>;

/// Shows the engine's words to whoever runs the program while it lives; one at a time.
class ShownEngineWords {
 public:
  explicit ShownEngineWords(EngineWords show);
  ~ShownEngineWords();
  ShownEngineWords(const ShownEngineWords&) = delete;
  ShownEngineWords& operator=(const ShownEngineWords&) = delete;
};

/// Passes the words on to who wants to see them, if anybody does. Thread-safe.
void tellEngineWords(std::string_view words);

}  // namespace velmora::ado
