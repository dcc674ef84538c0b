// Rows of text with a current one, as a data control hands them out. Behind it stands a source:
// SQLite for the program's own chord database, ADO for one in the older format.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "base/Files.h"
#include "base/Text.h"

namespace melvorin {

// No value where the database holds none.
using Row = std::vector<std::optional<Text>>;

struct Table {
    std::vector<Text> fields;
    std::vector<Row> rows;  // each as long as `fields`
};

// A database that is opened for reading; nothing is ever written to it. The causes of failures
// are sentences.
class RowSource {
  public:
    virtual ~RowSource() = default;
    // `connection` is what this kind of source needs: a path or a connection string.
    virtual Result<Done> open(TextView connection) = 0;
    // Runs a record source ("Select ... from ...") and returns all its rows.
    virtual Result<Table> read(TextView recordSource) = 0;
};

// A search criterion "Field = 'text'".
struct Criterion {
    Text field;
    Text value;
};

// The text ends at the next apostrophe, wherever it stands, and nothing may follow it: there is
// no way to write an apostrophe, and nothing in a criterion is ever executed.
Result<Criterion> readCriterion(TextView criterion);

// Texts that differ only in the case of their letters are equal.
bool equalWithoutCase(TextView a, TextView b);

class Recordset {
  public:
    // Opens the source, reads it and makes its first row the current one. On failure the
    // recordset is what it was.
    Result<Done> open(std::unique_ptr<RowSource> source, TextView connection,
                      TextView recordSource);
    // Runs the record source again; the first row is the current one afterwards.
    Result<Done> refresh();
    bool isOpen() const { return source_ != nullptr; }

    std::size_t count() const { return table_.rows.size(); }
    // There is no current row: it lies behind the last, before the first, or there is no row at
    // all, and then both are true.
    bool eof() const { return current_ == count(); }
    bool bof() const { return beforeFirst_ || count() == 0; }
    // Index of the current row.
    std::optional<std::size_t> position() const;

    // Each ends at EOF or BOF where there is no such row; beyond those nothing moves.
    void moveFirst() { moveTo(0); }
    void moveLast();
    void moveNext();
    void movePrevious();
    // EOF for an index behind the last row.
    void moveTo(std::size_t row);
    // Makes the first row at or behind the current one that meets the criterion the current one;
    // true if there is one, else EOF is reached. Fails, without moving, for a criterion that
    // cannot be read or names no field.
    Result<bool> find(TextView criterion);

    // A field of the current row, its name in any case. Nothing where there is no current row, no
    // such field or no value.
    std::optional<Text> field(TextView name) const;
    // A field of any row by its number.
    const std::optional<Text>& cell(std::size_t row, std::size_t column) const {
        return table_.rows[row][column];
    }
    const std::vector<Text>& fields() const { return table_.fields; }
    // The number of a field, its name in any case.
    std::optional<std::size_t> columnOf(TextView name) const;
    // The first row from `from` on, and then from the first row on, whose text in the column is
    // this one, in any case; where there is none, the first that begins so.
    std::optional<std::size_t> rowBeginningWith(TextView text, std::size_t column,
                                                std::size_t from) const;

  private:
    std::unique_ptr<RowSource> source_;
    Text recordSource_;
    Table table_;
    std::size_t current_ = 0;
    bool beforeFirst_ = false;
};

}  // namespace melvorin
