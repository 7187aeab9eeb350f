#include "catalogue/catalogue_grammar.h"

#include <QuorvaneScheduler/errors.h>

#include <cstddef>
#include <string>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// The first tilde from p on, or end. Fields are short, so this looks at sixteen
// characters at a time inline rather than paying a call for each field.
const char* nextTilde(const char* p, const char* end) {
#if defined(__SSE2__)
    const __m128i tilde = _mm_set1_epi8(kFieldSeparator);
    while (end - p >= 16) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const int mask = _mm_movemask_epi8(_mm_cmpeq_epi8(chunk, tilde));
        if (mask != 0) return p + __builtin_ctz(static_cast<unsigned>(mask));
        p += 16;
    }
#endif
    while (p != end && *p != kFieldSeparator)
        ++p;
    return p;
}

// Records that follow a record ending in "~~" at `rest`: that one more, and one
// for every separator after it.
int recordsAfter(std::string_view rest) { return static_cast<int>(countSeparators(rest)) + 1; }

void checkRecordCount(std::size_t rows) {
    if (rows > static_cast<std::size_t>(kMaxRecords))
        throw Overflow("more than " + std::to_string(kMaxRecords) + " records in a catalogue string");
}

[[noreturn]] void missingField(int row, int field) {
    throw SubscriptOutOfRange("record " + std::to_string(row) + " has no field " + std::to_string(field));
}

} // namespace

// One scan from the left does both splits at once: a record ends at the first
// "~~" after its start, and each "~" met before it ends a field. That is the
// split on "~~" first and on "~" after, because the first "~" that has another
// behind it is exactly the leftmost "~~" of the record.
//
// The cells are gathered first and the table takes them at the end, so a string
// of too many records leaves the old table standing. A record short of a field
// fails after the table has taken its new size: the rows and fields before the
// fault filled, the rest empty; the records after it are only counted.
void parseCatalogue(std::string_view text, int fields, StringTable& table) {
    if (text.empty()) throw SubscriptOutOfRange("a catalogue string with no record");
    const char* const begin = text.data();
    const char* p = begin;
    const char* const end = p + text.size();
    std::vector<StringTable::Piece> pieces;
    std::size_t rows = 0;
    int faultRow = -1, faultField = 0;
    for (bool more = true; more;) {
        const int row = static_cast<int>(rows++);
        checkRecordCount(rows);
        pieces.resize(rows * static_cast<std::size_t>(fields));
        int field = 0;
        // An empty record has no field at all, not one empty field: it is what a
        // trailing "~~" or four tildes in a row leave.
        if (p == end) {
            more = false;
        } else if (p + 1 < end && p[0] == kFieldSeparator && p[1] == kFieldSeparator) {
            p += kRecordSeparator.size();
        } else {
            for (;;) {
                const char* q = nextTilde(p, end);
                // Surplus fields are passed over, never stored.
                if (field < fields)
                    pieces[static_cast<std::size_t>(row * fields + field)] = {
                        static_cast<std::uint32_t>(p - begin), static_cast<std::uint32_t>(q - p)};
                ++field;
                if (q == end) {
                    p = end;
                    more = false;
                    break;
                }
                if (q + 1 < end && q[1] == kFieldSeparator) {
                    p = q + kRecordSeparator.size();
                    break;
                }
                p = q + 1;
            }
        }
        if (field < fields) {
            faultRow = row, faultField = field;
            if (more)
                rows += static_cast<std::size_t>(
                    recordsAfter(std::string_view(p, static_cast<std::size_t>(end - p))));
            checkRecordCount(rows);
            break;
        }
    }
    table.adopt(static_cast<int>(rows), fields, std::string(text), std::move(pieces));
    if (faultRow >= 0) missingField(faultRow, faultField);
}

} // namespace quorvane::catalogue
