#include "catalogue/catalogue_grammar.h"

#include <QuorvaneScheduler/errors.h>

#include <cstddef>
#include <string>

namespace quorvane::catalogue {

namespace {

// A catalogue may run to tens of thousands of records, and the host assigns it
// while the user waits for the first schedule. The text is therefore read in
// place: two linear passes, no piece copied out, each cell pointed at its piece once.
//
// 1 for a tilde, 0 otherwise: summed and multiplied without branches.
unsigned isTilde(unsigned char c) { return c == static_cast<unsigned char>(kFieldSeparator) ? 1u : 0u; }

// The number of "~~" separators as a split from the left finds them. Without
// three tildes in a row every adjacent pair is a separator of its own, so a
// plain count of pairs, which the compiler turns into wide compares, is exact.
// A run of three or more needs the scan from the left: of "~~~~" it takes two
// separators, where there are three overlapping pairs.
std::size_t countSeparators(std::string_view text) {
    const auto* s = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t n = text.size();
    std::size_t pairs = 0, triples = 0;
    for (std::size_t i = 0; i + 1 < n; ++i)
        pairs += static_cast<std::size_t>(isTilde(s[i]) & isTilde(s[i + 1]));
    if (pairs != 0)
        for (std::size_t i = 0; i + 2 < n; ++i)
            triples += static_cast<std::size_t>(isTilde(s[i]) & isTilde(s[i + 1]) & isTilde(s[i + 2]));
    if (triples == 0) return pairs;

    std::size_t separators = 0;
    for (std::size_t at = text.find(kRecordSeparator); at != std::string_view::npos;
         at = text.find(kRecordSeparator, at + kRecordSeparator.size()))
        ++separators;
    return separators;
}

// The number of records, counted before anything is touched so that a string
// with too many leaves the old table standing.
int countRecords(std::string_view text) {
    if (text.empty()) return 0;
    const std::size_t separators = countSeparators(text);
    if (separators >= static_cast<std::size_t>(kMaxRecords))
        throw Overflow("more than " + std::to_string(kMaxRecords) + " records in a catalogue string");
    return static_cast<int>(separators) + 1;
}

[[noreturn]] void missingField(int row, int field) {
    throw SubscriptOutOfRange("record " + std::to_string(row) + " has no field " + std::to_string(field));
}

} // namespace

// One scan from the left does both splits at once: a record ends at the first
// "~~" after its start, and each "~" met before it ends a field. That is the
// split on "~~" first and on "~" after, because the first "~" that has another
// behind it is exactly the leftmost "~~" of the record.
void parseCatalogue(std::string_view text, int fields, StringTable& table) {
    const int rows = countRecords(text);
    if (rows == 0) throw SubscriptOutOfRange("a catalogue string with no record");
    table.reset(rows, fields, std::string(text));

    const char* const begin = text.data();
    const char* p = begin;
    const char* const end = p + text.size();
    for (int row = 0; row < rows; ++row) {
        // An empty record has no field at all, not one empty field: it is what a
        // trailing "~~" or four tildes in a row leave.
        if (p == end || (p + 1 < end && p[0] == kFieldSeparator && p[1] == kFieldSeparator)) {
            if (fields > 0) missingField(row, 0);
            p = p == end ? end : p + kRecordSeparator.size();
            continue;
        }
        int field = 0;
        for (;;) {
            const char* q = p;
            while (q != end && *q != kFieldSeparator)
                ++q;
            // Surplus fields are passed over, never stored.
            if (field < fields)
                table.setPiece(row, field, static_cast<std::size_t>(p - begin),
                               static_cast<std::size_t>(q - p));
            ++field;
            if (q == end) {
                p = end;
                break;
            }
            if (q + 1 < end && q[1] == kFieldSeparator) {
                p = q + kRecordSeparator.size();
                break;
            }
            p = q + 1;
        }
        if (field < fields) missingField(row, field);
    }
}

} // namespace quorvane::catalogue
