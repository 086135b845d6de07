#include "common/Dictionary.h"

#include <cmath>
#include <type_traits>
#include <utility>

#include <fmt/format.h>

#include "platform/Error.h"

namespace qz {

Dictionary::Dictionary(const Dictionary& other) {
    for (const Entry& entry : other.entries_) {
        add(entry.key, entry.item);
    }
}

Dictionary& Dictionary::operator=(Dictionary other) noexcept {
    std::swap(entries_, other.entries_);
    std::swap(places_, other.places_);
    return *this;
}

std::optional<Dictionary::Key> Dictionary::normalized(const Value& key) {
    return std::visit(
        [](const auto& content) -> std::optional<Key> {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_integral_v<Content>) {
                return static_cast<std::int64_t>(content);
            } else if constexpr (std::is_floating_point_v<Content>) {
                const double number = content;
                // Whole numbers meet the integers; 2^53 bounds those that a double tells apart.
                if (number == std::floor(number) && std::abs(number) <= 0x1p53) {
                    return static_cast<std::int64_t>(number);
                }
                return number;
            } else if constexpr (std::is_same_v<Content, std::string>) {
                return content;
            } else {
                return std::nullopt;
            }
        },
        key);
}

std::optional<Dictionary::Places::const_iterator> Dictionary::place(const Value& key) const {
    const auto normal = normalized(key);
    const auto found = normal ? places_.find(*normal) : places_.end();
    return found == places_.end() ? std::nullopt : std::optional(found);
}

void Dictionary::add(const Value& key, Value item) {
    auto normal = normalized(key);
    if (!normal) {
        throw PlatformError(fmt::format("{} can't be a key: neither a number nor a text.", toText(key)));
    }
    if (places_.contains(*normal)) {
        throw PlatformError("This key is already associated with an element of this collection");
    }
    entries_.push_back({key, std::move(item)});
    places_.emplace(std::move(*normal), std::prev(entries_.end()));
}

void Dictionary::set(const Value& key, Value item) {
    if (const auto found = place(key)) {
        (*found)->second->item = std::move(item);
    } else {
        add(key, std::move(item));
    }
}

bool Dictionary::exists(const Value& key) const {
    return place(key).has_value();
}

const Value* Dictionary::find(const Value& key) const {
    const auto found = place(key);
    return found ? &(*found)->second->item : nullptr;
}

void Dictionary::remove(const Value& key) {
    const auto found = place(key);
    if (!found) {
        throw PlatformError(fmt::format("There is no key {} to remove.", toText(key)));
    }
    entries_.erase((*found)->second);
    places_.erase(*found);
}

std::vector<Value> Dictionary::keys() const {
    std::vector<Value> all;
    all.reserve(entries_.size());
    for (const Entry& entry : entries_) {
        all.push_back(entry.key);
    }
    return all;
}

} // namespace qz
