#pragma once

namespace velmora::tsql {

/// Handlers for std::visit, one per alternative.
template <class... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace velmora::tsql
