#pragma once

#include <cstddef>
#include <deque>
#include <new>
#include <string>
#include <vector>

namespace zav {

/// Most keys of a record.
constexpr int TAB_KEYS = 4;

/// One slot of a chain: a key and its record.
struct TAB_entry {
    std::string key;
    std::size_t record = 0;  ///< place of the record in order of entry; shared by all keys of a record
    int link = -1;           ///< next slot of the chain, -1 at its end
};

/// Slot of `key` in a table of `tab_size` slots: a hash by 257 modulo 35177.
int TAB_hash(int tab_size, const std::string& key);

/// Records of type T that are found by any of up to four keys, and walked in the order of their entry.
template <class T>
struct TAB_table {
    int tab_size = 0;                 ///< hash slots of each key
    int num_entry = 0;                ///< number of records
    int numkey = 0;                   ///< number of keys
    std::size_t walk = 0;             ///< record that TAB_next gives
    std::deque<T> records;            ///< in order of entry; they don't move
    std::vector<int> head[TAB_KEYS];  ///< first slot of each chain, -1 for an empty one
    std::vector<TAB_entry> slots;
};

/// Empty walk and no records.
template <class T>
void TAB_init(TAB_table<T>& tab) {
    tab = TAB_table<T>();
}

/// Makes an empty table of `tsize` slots for each of `nkey` keys. 0, or -1 for sizes that can't be or without memory.
template <class T>
int TAB_create(TAB_table<T>& tab, int tsize, int nkey) {
    TAB_init(tab);
    if (tsize < 1 || nkey < 1 || nkey > TAB_KEYS) return -1;
    try {
        for (int k = 0; k < nkey; ++k) tab.head[k].assign(static_cast<std::size_t>(tsize), -1);
    } catch (const std::bad_alloc&) {
        TAB_init(tab);
        return -1;
    }
    tab.tab_size = tsize;
    tab.numkey = nkey;
    return 0;
}

/// Hash of a key, 0 in a table without slots.
template <class T>
int TAB_key(const TAB_table<T>& tab, const std::string& key) {
    return TAB_hash(tab.tab_size, key);
}

/// Adds a record under its keys; a key that isn't given is empty. 0, or -1 without memory or in a table that wasn't
/// made.
template <class T>
int TAB_enter(TAB_table<T>& tab, const T& data, const std::vector<std::string>& keys) {
    if (tab.tab_size < 1) return -1;
    try {
        const std::size_t record = tab.records.size();
        tab.records.push_back(data);
        for (int k = 0; k < tab.numkey; ++k) {
            const std::string key = static_cast<std::size_t>(k) < keys.size() ? keys[k] : std::string();
            const int slot = static_cast<int>(tab.slots.size());
            tab.slots.push_back({key, record, -1});
            int* link = &tab.head[k][static_cast<std::size_t>(TAB_key(tab, key))];
            while (*link >= 0) link = &tab.slots[static_cast<std::size_t>(*link)].link;
            *link = slot;
        }
    } catch (const std::bad_alloc&) {
        return -1;
    }
    ++tab.num_entry;
    return 0;
}

/// Up to `max` records with that key, in order of entry. Result: their number.
template <class T>
int TAB_searches(TAB_table<T>& tab, int keynum, const std::string& key, std::vector<T*>& ptrs, int max) {
    ptrs.clear();
    if (tab.num_entry < 1 || keynum < 1 || keynum > tab.numkey) return 0;
    int slot = tab.head[keynum - 1][static_cast<std::size_t>(TAB_key(tab, key))];
    for (; slot >= 0 && static_cast<int>(ptrs.size()) < max; slot = tab.slots[static_cast<std::size_t>(slot)].link) {
        const TAB_entry& entry = tab.slots[static_cast<std::size_t>(slot)];
        if (entry.key == key) ptrs.push_back(&tab.records[entry.record]);
    }
    return static_cast<int>(ptrs.size());
}

/// The first record entered under key number `keynum`, counted from 1; null if there is none.
template <class T>
T* TAB_search(TAB_table<T>& tab, int keynum, const std::string& key) {
    std::vector<T*> found;
    return TAB_searches(tab, keynum, key, found, 1) > 0 ? found.front() : nullptr;
}

/// The next record in order of entry, null at the end.
template <class T>
T* TAB_next(TAB_table<T>& tab) {
    return tab.walk < tab.records.size() ? &tab.records[tab.walk++] : nullptr;
}

/// The record entered first, null in an empty table; TAB_next goes on from it.
template <class T>
T* TAB_first(TAB_table<T>& tab) {
    tab.walk = 0;
    return TAB_next(tab);
}

/// Frees all records; the table has to be made anew.
template <class T>
void TAB_clear(TAB_table<T>& tab) {
    TAB_init(tab);
}

}  // namespace zav
