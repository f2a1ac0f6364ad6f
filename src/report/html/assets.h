#pragma once

#include "common/embedded_text.h"

namespace velmora::report::html {

/// The page's styles.
std::span<const EmbeddedText> pageStyles();
/// The page's scripts, in the order in which they run.
std::span<const EmbeddedText> pageScripts();

}  // namespace velmora::report::html
