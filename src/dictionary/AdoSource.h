// A chord database in the older format, read through ADO.
#pragma once

#include <oaidl.h>

#include "dictionary/Recordset.h"
#include "platform/Win.h"

namespace melvorin {

// What is asked of an ADO recordset; a failure is thrown as AdoFailure.
class AdoCursor {
  public:
    virtual ~AdoCursor() = default;
    virtual long columns() = 0;
    virtual Text name(long column) = 0;
    // Of the current row; the caller clears the value.
    virtual VARIANT value(long column) = 0;
    virtual bool atEnd() = 0;
    virtual void next() = 0;
};

struct AdoFailure {
    HRESULT code;
};

// All rows from the current one on.
Table readTable(AdoCursor& cursor);

class AdoSource : public RowSource {
  public:
    AdoSource();
    ~AdoSource() override;
    // `connection` is an ADO connection string.
    Result<Done> open(TextView connection) override;
    Result<Table> read(TextView recordSource) override;

  private:
    struct Connection;

    bool ownsCom_ = false;
    std::unique_ptr<Connection> connection_;
};

}  // namespace melvorin
