#include "cli/call/json_text.h"

#include <vector>

namespace velmora::cli {

namespace {

/// Builds the value from the parser's events, refusing what a plain parse would
/// quietly change.
class Builder final : public nlohmann::json_sax<Json> {
 public:
  Json take() { return std::move(root_); }

  bool null() override { return put(nullptr); }
  bool boolean(bool value) override { return put(value); }
  bool number_integer(number_integer_t value) override { return put(value); }
  bool number_unsigned(number_unsigned_t value) override {
    if (value > static_cast<number_unsigned_t>(INT64_MAX)) refuseInteger(std::to_string(value));
    return put(static_cast<std::int64_t>(value));
  }
  bool number_float(number_float_t value, const string_t& text) override {
    if (text.find_first_of(".eE") == string_t::npos) refuseInteger(text);
    return put(value);
  }
  bool string(string_t& value) override { return put(std::move(value)); }
  bool binary(binary_t&) override { return false; }

  bool start_object(std::size_t) override { return open(Json::object()); }
  bool end_object() override { return close(); }
  bool start_array(std::size_t) override { return open(Json::array()); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override {
    if (open_.back()->contains(name)) throw JsonError("\"" + name + "\" occurs twice");
    member_ = &(*open_.back())[name];
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception& error) override {
    std::string reason = error.what();
    // The library puts its own error id in front, in brackets.
    if (const auto end = reason.find("] "); end != std::string::npos) reason.erase(0, end + 2);
    throw JsonError("not valid JSON at character " + std::to_string(position) + ": " + reason);
  }

 private:
  [[noreturn]] static void refuseInteger(const std::string& text) {
    throw JsonError("the integer " + text +
                    " does not fit 64 bits; write an amount as {\"$decimal\":\"...\"}");
  }

  Json* place(Json value) {
    if (open_.empty()) {
      root_ = std::move(value);
      return &root_;
    }
    if (open_.back()->is_array()) {
      open_.back()->push_back(std::move(value));
      return &open_.back()->back();
    }
    *member_ = std::move(value);
    return member_;
  }
  bool put(Json value) {
    place(std::move(value));
    return true;
  }
  bool open(Json value) {
    if (open_.size() >= kMaxJsonDepth)
      throw JsonError("nested deeper than " + std::to_string(kMaxJsonDepth) + " levels");
    open_.push_back(place(std::move(value)));
    return true;
  }
  bool close() {
    open_.pop_back();
    return true;
  }

  Json root_;
  // The open containers. A container grows only while it is the innermost open one,
  // so the pointers to its elements stay good as long as they are needed.
  std::vector<Json*> open_;
  Json* member_ = nullptr;
};

}  // namespace

void JsonError::within(std::string_view place) {
  const bool element = placed_ && !message_.empty() && message_.front() == '[';
  message_.insert(0, std::string(place) + (!placed_ ? ": " : element ? "" : "."));
  placed_ = true;
}

Json parseJson(std::string_view text) {
  Builder builder;
  Json::sax_parse(text.begin(), text.end(), &builder);
  return builder.take();
}

std::string jsonText(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace velmora::cli
