// Writing JSON.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tavio::command_line {

// The text between quotation marks, safe in JSON and within a page: "<", ">" and "&" are escaped
// like control characters, and bytes that are not UTF-8 become U+FFFD.
std::string jsonText(std::string_view text);

// The values, each of them JSON, as an array.
std::string jsonArray(std::span<const std::string> values);

// An object, member by member; names are plain ASCII words.
//
//   JsonObject().number("id", 4).text("stock", "concert").json("size", "[600,1650]").str()
//   ->  {"id":4,"stock":"concert","size":[600,1650]}
class JsonObject {
  public:
    template <std::integral Number>
    requires(!std::same_as<Number, bool>) JsonObject& number(std::string_view name, Number value) {
        return json(name, std::to_string(value));
    }
    JsonObject& flag(std::string_view name, bool value) {
        return json(name, value ? "true" : "false");
    }
    JsonObject& text(std::string_view name, std::string_view value) {
        return json(name, jsonText(value));
    }

    // `value` is JSON already.
    JsonObject& json(std::string_view name, std::string_view value);

    std::string str() const { return members_ + '}'; }

  private:
    std::string members_ = "{";
};

}  // namespace tavio::command_line
