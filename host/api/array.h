#pragma once

#include <utility>

#include "api/bridge.h"

namespace torvel::api {

/// What all growing lists of the API do. Memory grows by doubling and is kept until the list ends.
template <class List, class Item>
struct Array {
    static Item*& data(List& list) { return Bridge::data(list); }
    static unsigned int& length(List& list) { return Bridge::length(list); }

    static void start(List& list) {
        data(list) = nullptr;
        length(list) = 0;
        Bridge::capacity(list) = 0;
    }

    static void reserve(List& list, unsigned int wanted) {
        unsigned int& capacity = Bridge::capacity(list);
        if (wanted <= capacity)
            return;
        const unsigned int doubled = capacity ? capacity * 2 : 4;
        const unsigned int grown = wanted > doubled ? wanted : doubled;
        Item* items = new Item[grown];
        for (unsigned int i = 0; i < length(list); ++i)
            items[i] = std::move(data(list)[i]);
        delete[] data(list);
        data(list) = items;
        capacity = grown;
    }

    static void assign(List& list, const Item* items, unsigned int count) {
        reserve(list, count);
        for (unsigned int i = 0; i < count; ++i)
            data(list)[i] = items[i];
        length(list) = count;
    }

    static void fill(List& list, unsigned int count, const Item& value) {
        reserve(list, count);
        for (unsigned int i = 0; i < count; ++i)
            data(list)[i] = value;
        length(list) = count;
    }

    static MStatus setLength(List& list, unsigned int count) {
        reserve(list, count);
        for (unsigned int i = length(list); i < count; ++i)
            data(list)[i] = Item();
        length(list) = count;
        return MStatus::kSuccess;
    }

    static MStatus append(List& list, const Item& value) {
        return insert(list, value, length(list));
    }

    static MStatus insert(List& list, const Item& value, unsigned int index) {
        if (index > length(list))
            return MStatus::kInvalidParameter;
        Item copy(value);  // the value may stand in this very list
        reserve(list, length(list) + 1);
        for (unsigned int i = length(list); i > index; --i)
            data(list)[i] = std::move(data(list)[i - 1]);
        data(list)[index] = std::move(copy);
        ++length(list);
        return MStatus::kSuccess;
    }

    static MStatus remove(List& list, unsigned int index) {
        if (index >= length(list))
            return MStatus::kInvalidParameter;
        for (unsigned int i = index + 1; i < length(list); ++i)
            data(list)[i - 1] = std::move(data(list)[i]);
        --length(list);
        return MStatus::kSuccess;
    }

    static MStatus set(List& list, const Item& value, unsigned int index) {
        if (index >= length(list))
            return MStatus::kInvalidParameter;
        data(list)[index] = value;
        return MStatus::kSuccess;
    }
};

}  // namespace torvel::api
