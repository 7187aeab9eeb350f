#pragma once
// A two-dimensional table of strings, indexed by record and field. A table that
// was never set has no cells: reading it is SubscriptOutOfRange, as is any index
// past its bounds.
//
// A catalogue table can hold hundreds of thousands of cells, rebuilt at every
// assignment while the user waits. The table therefore keeps one copy of the text
// it was read from, and each cell is a piece of it: reading a cell copies
// nothing. A cell read stays valid until the table is rebuilt; a caller that
// raises an event, in which a host may send a new catalogue, copies what it
// still needs first.

#include <QuorvaneScheduler/errors.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class StringTable {
public:
    bool isSet() const { return set_; }
    int rows() const { return rows_; }
    int fields() const { return fields_; }

    // The number of rows for a walk from the first row to the last. A table never
    // set cannot be walked: SubscriptOutOfRange, where rows() would quietly say 0.
    int walkRows() const {
        if (!set_) throw SubscriptOutOfRange("walk of a table that was never set");
        return rows_;
    }

    // Makes a table of empty cells, rows 0..rows-1 and fields 0..fields-1, that
    // keeps `text` for its cells to point into.
    void reset(int rows, int fields, std::string text = {}) {
        if (text.size() > UINT32_MAX) throw Overflow("a catalogue string of more than 4 GiB");
        set_ = true, rows_ = rows, fields_ = fields;
        text_ = std::move(text);
        cells_.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(fields), Cell{});
    }
    std::string_view at(int row, int field) const {
        const Cell c = cells_[offset(row, field)];
        return std::string_view(text_).substr(c.offset, c.length);
    }
    // Points a cell at `length` characters of the kept text from `from`.
    void setPiece(int row, int field, std::size_t from, std::size_t length) {
        Cell& c = cells_[offset(row, field)];
        c.offset = static_cast<std::uint32_t>(from);
        c.length = static_cast<std::uint32_t>(length);
    }
    // Gives a cell a text of its own, kept after the text the table was read from.
    void set(int row, int field, std::string_view value) {
        const std::size_t index = offset(row, field);
        if (text_.size() + value.size() > UINT32_MAX) throw Overflow("a catalogue table of more than 4 GiB");
        cells_[index] =
            Cell{static_cast<std::uint32_t>(text_.size()), static_cast<std::uint32_t>(value.size())};
        text_.append(value);
    }

private:
    struct Cell {
        std::uint32_t offset = 0, length = 0;
    };

    std::size_t offset(int row, int field) const {
        if (!set_) throw SubscriptOutOfRange("a catalogue table that was never assigned");
        if (row < 0 || row >= rows_ || field < 0 || field >= fields_)
            throw SubscriptOutOfRange("no cell (" + std::to_string(row) + ", " + std::to_string(field) + ")");
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(fields_) +
               static_cast<std::size_t>(field);
    }

    bool set_ = false;
    int rows_ = 0, fields_ = 0;
    std::string text_;
    std::vector<Cell> cells_;
};

} // namespace quorvane
