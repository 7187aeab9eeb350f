#pragma once
// A two-dimensional table of strings, indexed by record and field. A table that
// was never set has no cells: reading it is SubscriptOutOfRange, as is any index
// past its bounds.

#include <QuorvaneScheduler/errors.h>

#include <string>
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

    // Makes a table of empty cells; rows 0..rows-1, fields 0..fields-1.
    void reset(int rows, int fields) {
        set_ = true, rows_ = rows, fields_ = fields;
        cells_.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(fields), std::string());
    }
    const std::string& at(int row, int field) const { return cells_[offset(row, field)]; }
    std::string& at(int row, int field) { return cells_[offset(row, field)]; }
    // Fields 0 to fields() - 1 of one row, side by side, for a caller that fills
    // a whole row at once: the row is checked here, the fields are the caller's.
    std::string* rowCells(int row) { return &cells_[offset(row, 0)]; }

private:
    std::size_t offset(int row, int field) const {
        if (!set_ || row < 0 || row >= rows_ || field < 0 || field >= fields_) throw SubscriptOutOfRange();
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(fields_) +
               static_cast<std::size_t>(field);
    }

    bool set_ = false;
    int rows_ = 0, fields_ = 0;
    std::vector<std::string> cells_;
};

} // namespace quorvane
