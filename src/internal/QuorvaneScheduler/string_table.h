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

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/errors.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class QUORVANE_EXPORT StringTable {
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
        cells_.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(fields), Piece{});
    }
    // Text equality for the walks over whole tables: cells of one column mostly
    // share their length and their start ("Category 12", "Category 13"), so the
    // last characters are compared before the rest.
    static bool same(std::string_view a, std::string_view b) {
        return a.size() == b.size() && (a.empty() || (a.back() == b.back() && a == b));
    }

    std::string_view at(int row, int field) const {
        const Piece c = cells_[offset(row, field)];
        return std::string_view(text_.data() + c.offset, c.length);
    }
    // Where a cell's text stands in the kept text.
    struct Piece {
        std::uint32_t offset = 0, length = 0;
    };
    // Takes a whole table at once: rows * fields pieces of `text`, row by row.
    void adopt(int rows, int fields, std::string text, std::vector<Piece> pieces) {
        if (text.size() > UINT32_MAX) throw Overflow("a catalogue string of more than 4 GiB");
        pieces.resize(static_cast<std::size_t>(rows) * static_cast<std::size_t>(fields));
        set_ = true, rows_ = rows, fields_ = fields;
        text_ = std::move(text);
        cells_ = std::move(pieces);
    }
    // Gives a cell a text of its own, kept after the text the table was read from.
    void set(int row, int field, std::string_view value) {
        const std::size_t index = offset(row, field);
        if (text_.size() + value.size() > UINT32_MAX) throw Overflow("a catalogue table of more than 4 GiB");
        cells_[index] =
            Piece{static_cast<std::uint32_t>(text_.size()), static_cast<std::uint32_t>(value.size())};
        text_.append(value);
    }

private:
    // One compare each for row and field; an unset table has no rows.
    std::size_t offset(int row, int field) const {
        if (static_cast<unsigned>(row) >= static_cast<unsigned>(rows_) ||
            static_cast<unsigned>(field) >= static_cast<unsigned>(fields_)) [[unlikely]]
            noCell(row, field);
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(fields_) +
               static_cast<std::size_t>(field);
    }
    [[noreturn]] void noCell(int row, int field) const {
        if (!set_) throw SubscriptOutOfRange("a catalogue table that was never assigned");
        throw SubscriptOutOfRange("no cell (" + std::to_string(row) + ", " + std::to_string(field) + ")");
    }

    bool set_ = false;
    int rows_ = 0, fields_ = 0;
    std::string text_;
    std::vector<Piece> cells_;
};

} // namespace quorvane
