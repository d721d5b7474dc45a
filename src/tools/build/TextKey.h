#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

/// For maps that are asked with pieces of pages, without making a string of each.
struct TextHash
{
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

template <typename Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;
