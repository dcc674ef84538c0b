// The program's own chord database, a SQLite file.
#pragma once

#include "dictionary/Recordset.h"

struct sqlite3;

namespace melvorin {

// Of the library that is linked in, "3.45.1".
Text sqliteVersion();

class SqliteSource : public RowSource {
  public:
    // `connection` is the path of the file, which is opened read-only and never created;
    // no other file appears beside it. What the file itself defines is only let read.
    Result<Done> open(TextView connection) override;
    Result<Table> read(TextView recordSource) override;

  private:
    struct Close {
        void operator()(sqlite3* database) const;
    };
    // Opens the file for reading only, `flags` being added; an SQLite code.
    int connect(const std::string& name, int flags);

    std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace melvorin
