#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <optional>
#include <variant>
#include <vector>

#include "platform/data/Value.h"

namespace qz {

// Keys to values in the order of insertion. Numbers are one key when they are equal, whatever their width; texts are
// one key when they are equal to the letter; the number 1 and the text "1" are two keys.
class Dictionary {
public:
    Dictionary() = default;
    Dictionary(const Dictionary& other);
    Dictionary(Dictionary&&) noexcept = default;
    Dictionary& operator=(Dictionary other) noexcept;
    ~Dictionary() = default;

    // Throws PlatformError when the key is there already, or is neither a number nor a text.
    void add(const Value& key, Value item);
    // Adds or replaces; a replaced item keeps its place.
    void set(const Value& key, Value item);
    [[nodiscard]] bool exists(const Value& key) const;
    // Nothing when there is no such key; nothing is added.
    [[nodiscard]] const Value* find(const Value& key) const;
    // Throws PlatformError when there is no such key.
    void remove(const Value& key);
    [[nodiscard]] std::size_t count() const noexcept { return entries_.size(); }
    // A snapshot: removing while walking it is safe.
    [[nodiscard]] std::vector<Value> keys() const;

private:
    using Key = std::variant<double, std::int64_t, std::string>;
    struct Entry {
        Value key;
        Value item;
    };
    using Places = std::map<Key, std::list<Entry>::iterator>;

    // Nothing for what can't be a key.
    [[nodiscard]] static std::optional<Key> normalized(const Value& key);
    [[nodiscard]] std::optional<Places::const_iterator> place(const Value& key) const;

    std::list<Entry> entries_;
    Places places_;
};

} // namespace qz
