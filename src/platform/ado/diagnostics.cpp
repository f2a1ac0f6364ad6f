#include "velmora/ado/diagnostics.h"

#include <mutex>
#include <utility>

namespace velmora::ado {
namespace {

struct Listener {
  std::mutex mutex;
  EngineWords show;
};

Listener& listener() {
  static Listener instance;
  return instance;
}

}  // namespace

ShownEngineWords::ShownEngineWords(EngineWords show) {
  const std::lock_guard lock(listener().mutex);
  listener().show = std::move(show);
}

ShownEngineWords::~ShownEngineWords() {
  const std::lock_guard lock(listener().mutex);
  listener().show = nullptr;
}

void tellEngineWords(std::string_view words) {
  const std::lock_guard lock(listener().mutex);
  if (listener().show) listener().show(words);
}

}  // namespace velmora::ado
