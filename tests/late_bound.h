#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "velmora/com/class_table.h"
#include "velmora/com/error.h"

namespace velmora {

/// A late-bound object made of functions, in place of a sibling component. Properties
/// keep what was written to them.
class LateBound final : public com::Object<com::IDispatch> {
 public:
  using Method = std::function<collections::Variant(std::span<collections::Variant>)>;

  LateBound& method(std::string name, Method body) {
    methods_[std::move(name)] = std::move(body);
    return *this;
  }

  const com::TypeInfo& GetTypeInfo() const noexcept override { return info_; }
  collections::Variant Invoke(std::string_view name,
                              std::span<collections::Variant> arguments) override {
    const auto found = methods_.find(std::string(name));
    if (found == methods_.end())
      throw com::Error(com::error::kUnknownName, "LateBound", std::string(name));
    return found->second(arguments);
  }
  collections::Variant GetProperty(std::string_view name) override {
    return properties_[std::string(name)];
  }
  void PutProperty(std::string_view name, const collections::Variant& value) override {
    properties_[std::string(name)] = value;
  }

 private:
  com::TypeInfo info_;
  std::map<std::string, Method> methods_;
  std::map<std::string, collections::Variant> properties_;
};

/// Registers `create` under `progId` for the life of the answer.
template <class Create>
com::ScopedClass standIn(std::string progId, Create create) {
  return com::ScopedClass(com::ClassEntry{
      std::move(progId), {}, [create] { return com::Ref<com::IDispatch>(create()); }});
}

/// A message loader: what it answers for a key, and what was done with it.
struct FakeLoader {
  std::map<std::string, std::string> messages;
  int created = 0, unloaded = 0;
  std::string baseName = {}, language = {};
  std::shared_ptr<int> life = std::make_shared<int>();

  /// The translation by key; a key without one is an error, as for the suite's loader.
  com::ScopedClass install() {
    return standIn("Q8RESLOADER.Loader", [this] {
      ++created;
      auto loader = com::make<LateBound>();
      LateBound* const self = loader.get();
      loader->method("LoadString", [this, self](auto arguments) {
        baseName = self->GetProperty("ResFileBaseName").toText();
        language = self->GetProperty("LanguageID").toText();
        const auto found = messages.find(arguments[0].toText());
        if (found == messages.end())
          throw com::Error(com::error::kInvalidArgument, "Loader", arguments[0].toText());
        return collections::Variant(found->second);
      });
      // An object of the test may let go of its loader after this one has gone.
      loader->method("Unload", [this, alive = std::weak_ptr<int>(life)](auto) {
        if (!alive.expired()) ++unloaded;
        return collections::Variant();
      });
      return loader;
    });
  }
};

/// A period service whose periods are the calendar months.
inline com::ScopedClass monthlyPeriods() {
  return standIn("PeriodDate.clsPeriodDate", [] {
    auto service = com::make<LateBound>();
    service->method("GetPeriodStartEnd", [](auto arguments) {
      const int year = arguments[1].toInt32(), month = arguments[2].toInt32();
      const auto next = month == 12 ? collections::Date::ymd(year + 1, 1, 1)
                                    : collections::Date::ymd(year, month + 1, 1);
      constexpr std::int64_t day = 86'400'000'000;
      arguments[3] = collections::Date::ymd(year, month, 1);
      arguments[4] = collections::Date::fromMicroseconds(next.microseconds() - day);
      return collections::Variant();
    });
    return service;
  });
}

}  // namespace velmora
