/// Tables for the channels, one pixel at a time.
#pragma once

#include <array>
#include <cstdint>

#include "support/pixel_formats.h"
#include "support/random.h"

namespace pxk::test {

using ChannelTable = std::array<std::uint8_t, 256>;

struct ChannelTables {
    ChannelTable red{};
    ChannelTable green{};
    ChannelTable blue{};

    Colour operator()(Colour colour) const {
        return {red[static_cast<std::size_t>(colour.red)], green[static_cast<std::size_t>(colour.green)],
                blue[static_cast<std::size_t>(colour.blue)]};
    }
};

inline ChannelTable identityTable() {
    ChannelTable table{};
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<std::uint8_t>(i);
    return table;
}

inline ChannelTables randomTables(Random& random) {
    ChannelTables tables;
    for (ChannelTable* table : {&tables.red, &tables.green, &tables.blue}) {
        for (std::uint8_t& value : *table) value = static_cast<std::uint8_t>(random.word());
    }
    return tables;
}

}  // namespace pxk::test
